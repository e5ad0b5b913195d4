// SPDX-License-Identifier: MIT
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

/// Counts the fields read through the overridable GetString.
struct Counting : CommaBlockString
{
    int GetString(CString &field) override
    {
        ++calls;
        return CommaBlockString::GetString(field);
    }
    using CommaBlockString::GetString;
    int calls = 0;
};

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
        QTest::addColumn<QString>("rest"); // GetStringTotalRemain after the first field
        auto row = [](const char *name, const QString &text, const QStringList &fields,
                      const QString &rest,
                      char block = ',') { QTest::newRow(name) << text << block << fields << rest; };
        row("blanks before numbers", "10, 20,  30", {"10", "20", "30"}, "20,  30");
        row("empty field", "a,,b", {"a", "", "b"}, ",b");
        row("leading dropped, trailing kept, last delimiter consumed", " a b ,", {"a b "}, "");
        row("semicolon block", "a,b;c", {"a,b", "c"}, "c", ';');
        row("space block: a second space is an empty field", "a  b\t", {"a", "", "b\t"}, "b\t",
            ' ');
        row("CR LF gives an empty field; rest keeps breaks", "a, \t b\r\nc", {"a", "b", "", "c"},
            "b\r\nc");
        row("no block code: breaks and NUL end a field", QString::fromUtf8("a,b;c\nd\0e", 9),
            {"a,b;c", "d", "e"}, QString::fromUtf8("d\0e", 3), '\0');
        row("korean", QString::fromUtf8("수온, 12.5"), {QString::fromUtf8("수온"), "12.5"}, "12.5");
    }

    void fields()
    {
        QFETCH(QString, text);
        QFETCH(char, block);
        QFETCH(QStringList, fields);
        QFETCH(QString, rest);
        CommaBlockString s;
        s.SetBlockCode(block);
        QCOMPARE(s.Set(CString(text)), text.size());
        QStringList got;
        while (!s.IsEOS() && got.size() <= fields.size())
            got << s.GetString().text;
        QCOMPARE(got, fields);
        CString after("x"); // past the end: empty fields, position unchanged
        QCOMPARE(s.GetString(after), text.size());
        QVERIFY(after.IsEmpty() && s.IsEOS());
        s.Set(CString(text));
        s.Skip();
        QCOMPARE(s.GetStringTotalRemain(after), text.size());
        QCOMPARE(after.text, rest);
    }

    void getters()
    {
        // Every getter in turn over one line. Each takes exactly one field, through the virtual
        // GetString, so that an override changes the grammar of all of them.
        Counting s;
        s.Set(CString(
            "  -42abc,,x1,99999999999,-99999999999,70000,3000000000,3000000000,-1,65537,300,65,A,,"
            "3.5x, 2.25e2,,true,TRUE,True,1,ff,0xFF,1 F,100000000,FFFFFFFF,next"));
        QStringList got; // the values of each getter, comma-separated
        auto read = [&got](int fields, auto getter) {
            QStringList values;
            while (fields-- > 0)
                values << getter();
            got << values.join(',');
        };
        read(5, [&] { return take<int>(s, &S::GetInt, -7); });         // saturating both ways
        read(1, [&] { return take<short>(s, &S::GetInt, short(0)); }); // low 16 bits
        read(1, [&] { return take(s, &S::GetLong, 0L); }); // 32 bits whatever the width of long
        read(2, [&] { return take<unsigned long>(s, &S::GetDWORD, 0UL); });
        read(1, [&] { return take(s, &S::GetWORD, ushort(0)); });
        read(1, [&] { return take(s, &S::GetBYTE, uchar(0)); });
        read(3, [&] { return take(s, &S::GetChar, 'z'); }); // a code; empty is a space
        read(1, [&] { return QString::number(s.GetFloat()); });
        read(2, [&] { return QString::number(s.GetDouble()); });
        read(4, [&] { return QString::number(s.GetBool()); });
        read(5, [&] { return take(s, &S::GetHexDWORD, 0u); });
        QCOMPARE(got,
                 QStringList({"-42,0,0,2147483647,-2147483648", "4464", "2147483647",
                              "2147483647,4294967295", "1", "44", "65,0,32", "3.5", "225,0",
                              "1,1,0,0", "255,255,31,0,4294967295"}));
        QCOMPARE(s.calls, 26);
        QCOMPARE(s.GetString().text, QStringLiteral("next"));
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

    void fixedBufferDropsWhatDoesNotFit()
    {
        // The terminator needs room too; Korean counts its UTF-8 bytes.
        CommaBlockString s;
        s.Set(CString("abc,abcd,수온,수온,x"));
        QByteArray got;
        for (const int size : {4, 4, 6, 7}) {
            QByteArray buffer(size + 1, '#');
            s.GetString(buffer.data(), size);
            QCOMPARE(buffer.at(size), '#'); // nothing written beyond the given size
            got += QByteArray(buffer.constData()) + '|';
        }
        QCOMPARE(got, QByteArray("abc|||수온|"));
        QCOMPARE(s.GetString().text, QStringLiteral("x"));
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
        row("two-character tail kept", "a,b,cd", ",", {"a", "b", "cd"});
        row("one-character tail dropped", "a,b,c", ",", {"a", "b"});
        row("trailing separator", "a,b,", ",", {"a", "b"});
        row("long separator advances one", "a::b", "::", {"a", ":b"});
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
