// CommaBlockString and StringSpliter: the field grammar and the C-style conversions.
#include "CommaBlockString.h"
#include "StringSpliter.h"

#include <QtTest>

namespace {

using S = CommaBlockString;

/// Reads one field through `getter` into a variable that starts as `value`, and prints it.
template<typename R, typename T>
QString take(S &s, R (S::*getter)(T &), T value)
{
    (s.*getter)(value);
    return QString::number(value);
}

} // namespace

class tst_CommaBlockString : public QObject
{
    Q_OBJECT

private slots:
    void fields_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<char>("block");
        QTest::addColumn<QStringList>("fields");
        auto row = [](const char *name, const QString &text, const QStringList &fields,
                      char block = ',') { QTest::newRow(name) << text << block << fields; };
        row("blanks before numbers", "10, 20,  30", {"10", "20", "30"});
        row("empty field", "a,,b", {"a", "", "b"});
        row("leading dropped, trailing kept", " a b ,", {"a b "});
        row("tabs", "\tx\t,y", {"x\t", "y"});
        row("trailing delimiter consumed", "a,", {"a"});
        row("semicolon block", "a,b;c", {"a,b", "c"}, ';');
        row("CR LF gives an empty field", "line1\r\nline2", {"line1", "", "line2"});
        row("no block code", "a,b;c\nd", {"a,b;c", "d"}, '\0');
        row("no block code, NUL ends a field", QString::fromUtf8("a\0b", 3), {"a", "b"}, '\0');
        row("korean", QString::fromUtf8("수온, 12.5"), {QString::fromUtf8("수온"), "12.5"});
    }

    void fields()
    {
        QFETCH(QString, text);
        QFETCH(char, block);
        QFETCH(QStringList, fields);
        CommaBlockString s;
        s.SetBlockCode(block);
        QCOMPARE(s.Set(CString(text)), text.size());
        QStringList got;
        while (!s.IsEOS() && got.size() <= fields.size())
            got << s.GetString().text;
        QCOMPARE(got, fields);
        // Past the end: empty fields, position unchanged.
        CString after("x");
        QCOMPARE(s.GetString(after), text.size());
        QVERIFY(after.IsEmpty() && s.IsEOS());
    }

    void getters_data()
    {
        QTest::addColumn<QString>("getter");
        QTest::addColumn<QString>("fields");
        QTest::addColumn<QStringList>("values"); // one per field, in order
        auto row = [](const char *getter, const char *fields, const QStringList &values) {
            QTest::newRow(qPrintable(getter + QStringLiteral(": ") + fields))
                << QString(getter) << QString(fields) << values;
        };
        row("int", "  -42abc,,x1,99999999999", {"-42", "0", "0", "2147483647"});
        row("short", "70000", {"4464"});           // low 16 bits
        row("long", "3000000000", {"2147483647"}); // 32 bits whatever the width of long
        row("dword", "3000000000,-1", {"2147483647", "4294967295"});
        row("word", "65537", {"1"});
        row("byte", "300", {"44"});
        row("char", "65,A,", {"65", "0", "32"}); // a code, not a letter; empty is a space
        row("float", "3.5x", {"3.5"});
        row("double", " 2.25e2,", {"225", "0"});
        row("bool", "true,TRUE,True,1", {"1", "1", "0", "0"});
        row("hex", "ff,0xFF,1 F,100000000,FFFFFFFF", {"255", "255", "31", "0", "4294967295"});
    }

    void getters()
    {
        QFETCH(QString, getter);
        QFETCH(QString, fields);
        QFETCH(QStringList, values);
        const QHash<QString, QString (*)(S &)> read {
            {"int", [](S &s) { return take<int>(s, &S::GetInt, -7); }},
            {"short", [](S &s) { return take<short>(s, &S::GetInt, short(0)); }},
            {"long", [](S &s) { return take(s, &S::GetLong, 0L); }},
            {"dword", [](S &s) { return take<unsigned long>(s, &S::GetDWORD, 0UL); }},
            {"word", [](S &s) { return take(s, &S::GetWORD, ushort(0)); }},
            {"byte", [](S &s) { return take(s, &S::GetBYTE, uchar(0)); }},
            {"char", [](S &s) { return take(s, &S::GetChar, 'z'); }},
            {"float", [](S &s) { return QString::number(s.GetFloat()); }},
            {"double", [](S &s) { return QString::number(s.GetDouble()); }},
            {"bool", [](S &s) { return QString::number(s.GetBool()); }},
            {"hex", [](S &s) { return take(s, &S::GetHexDWORD, 0u); }}};
        CommaBlockString s;
        s.Set(CString(fields + QStringLiteral(",next")));
        QStringList got;
        while (got.size() < values.size())
            got << read.value(getter)(s);
        QCOMPARE(got, values);
        QCOMPARE(s.GetString().text, QStringLiteral("next")); // exactly one field each
    }

    void hexReturnsFullValue()
    {
        CommaBlockString s;
        s.Set(CString("12345,1FF,FFFFFFFF"));
        unsigned short w = 0;
        unsigned char b = 0;
        unsigned int d = 0;
        QCOMPARE(QVector<uint>({s.GetHexWORD(w), w, s.GetHexBYTE(b), b, s.GetHexDWORD(d), d}),
                 QVector<uint>({0x12345, 0x2345, 0x1FF, 0xFF, 0xFFFFFFFF, 0xFFFFFFFF}));
    }

    void fixedBuffer_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<int>("size");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("fits") << "abc" << 4 << QByteArray("abc");
        QTest::newRow("one too long is dropped, not cut") << "abcd" << 4 << QByteArray("");
        QTest::newRow("korean counts bytes") << QString::fromUtf8("수온") << 6 << QByteArray("");
        QTest::newRow("korean fits") << QString::fromUtf8("수온") << 7 << QByteArray("수온");
    }

    void fixedBuffer()
    {
        QFETCH(QString, field);
        QFETCH(int, size);
        QFETCH(QByteArray, expected);
        CommaBlockString s;
        s.Set(CString(field + QStringLiteral(",x")));
        QByteArray buffer(size + 1, '#');
        s.GetString(buffer.data(), size);
        QCOMPARE(QByteArray(buffer.constData()), expected);
        QCOMPARE(buffer.at(size), '#'); // nothing written beyond the given size
        QCOMPARE(s.GetString().text, QStringLiteral("x"));
    }

    void totalRemain_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("rest");
        QTest::newRow("after one field") << "a,b,c" << QStringLiteral("b,c");
        QTest::newRow("blanks skipped, line breaks kept")
            << "a, \t b\r\nc" << QStringLiteral("b\r\nc");
        QTest::newRow("nothing left") << "a," << QString();
    }

    void totalRemain()
    {
        QFETCH(QString, text);
        QFETCH(QString, rest);
        CommaBlockString s;
        s.Set(CString(text));
        s.Skip();
        CString got("old");
        s.GetStringTotalRemain(got);
        QCOMPARE(got.text, rest);
        QVERIFY(s.IsEOS());
    }

    void overrideChangesEveryGetter()
    {
        // A derived grammar that reads every field as "7".
        struct Sevens : CommaBlockString
        {
            int GetString(CString &field) override
            {
                CommaBlockString::GetString(field);
                field = "7";
                return m_nPos;
            }
        } s;
        s.Set(CString("a,b,c"));
        QCOMPARE(s.GetInt(), 7);
        QCOMPARE(s.GetDouble(), 7.0);
        QCOMPARE(take(s, &S::GetHexDWORD, 0u), QStringLiteral("7"));
    }

    void spliter_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("separator");
        QTest::addColumn<QStringList>("items");
        auto row = [](const char *name, const char *text, const char *separator,
                      const QStringList &items) {
            QTest::newRow(name) << QString(text) << QString(separator) << items;
        };
        row("plain", "a,b,cd", ",", {"a", "b", "cd"});
        row("one-character tail dropped", "a,b,c", ",", {"a", "b"});
        row("trailing separator", "a,b,", ",", {"a", "b"});
        row("long separator advances one", "a::b", "::", {"a", ":b"});
        row("no separator", "ab", ",", {"ab"});
        row("case-sensitive", "XaYAZ", "a", {"X", "YAZ"});
        row("empty text", "", ",", {});
        row("empty separator", "abc", "", {});
    }

    void spliter()
    {
        QFETCH(QString, text);
        QFETCH(QString, separator);
        QFETCH(QStringList, items);
        QCOMPARE(StringSpliter::Execute(text, separator), items);
    }
};

QTEST_APPLESS_MAIN(tst_CommaBlockString)
#include "tst_commablockstring.moc"
