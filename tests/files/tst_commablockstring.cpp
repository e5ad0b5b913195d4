// CommaBlockString and StringSpliter: the field grammar and the C-style conversions.
#include "CommaBlockString.h"
#include "StringSpliter.h"

#include <QtTest>

class tst_CommaBlockString : public QObject
{
    Q_OBJECT

private slots:
    void fields_data();
    void fields();
    void getters_data();
    void getters();
    void hexWordKeepsFullValue();
    void fixedBuffer_data();
    void fixedBuffer();
    void totalRemain_data();
    void totalRemain();
    void overrideChangesEveryGetter();
    void spliter_data();
    void spliter();
};

void tst_CommaBlockString::fields_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<char>("block");
    QTest::addColumn<QStringList>("fields");

    QTest::newRow("blanks before numbers")
        << "10, 20,  30" << ',' << QStringList {"10", "20", "30"};
    QTest::newRow("empty field") << "a,,b" << ',' << QStringList {"a", "", "b"};
    QTest::newRow("leading dropped, trailing kept") << " a b ," << ',' << QStringList {"a b "};
    QTest::newRow("tabs") << "\tx\t,y" << ',' << QStringList {"x\t", "y"};
    QTest::newRow("trailing delimiter consumed") << "a," << ',' << QStringList {"a"};
    QTest::newRow("semicolon block") << "a,b;c" << ';' << QStringList {"a,b", "c"};
    QTest::newRow("CR LF gives an empty field")
        << "line1\r\nline2" << ',' << QStringList {"line1", "", "line2"};
    QTest::newRow("no block code") << "a,b;c\nd" << '\0' << QStringList {"a,b;c", "d"};
    QTest::newRow("no block code, NUL ends a field")
        << QString::fromUtf8("a\0b", 3) << '\0' << QStringList {"a", "b"};
    QTest::newRow("korean") << QString::fromUtf8("수온, 12.5") << ','
                            << QStringList {QString::fromUtf8("수온"), "12.5"};
}

void tst_CommaBlockString::fields()
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
    QVERIFY(after.IsEmpty());
    QVERIFY(s.IsEOS());
}

void tst_CommaBlockString::getters_data()
{
    QTest::addColumn<QString>("getter");
    QTest::addColumn<QString>("field");
    QTest::addColumn<QVariant>("expected");

    QTest::newRow("int sign and tail") << "int"
                                       << "  -42abc" << QVariant(-42);
    QTest::newRow("int empty") << "int"
                               << "" << QVariant(0);
    QTest::newRow("int no digits") << "int"
                                   << "x1" << QVariant(0);
    QTest::newRow("int saturates") << "int"
                                   << "99999999999" << QVariant(2147483647);
    QTest::newRow("short low 16 bits") << "short"
                                       << "70000" << QVariant(4464);
    QTest::newRow("long is 32-bit") << "long"
                                    << "3000000000" << QVariant(2147483647);
    QTest::newRow("dword not unsigned text") << "dword"
                                             << "3000000000" << QVariant(2147483647u);
    QTest::newRow("dword of -1") << "dword"
                                 << "-1" << QVariant(4294967295u);
    QTest::newRow("word low 16 bits") << "word"
                                      << "65537" << QVariant(1u);
    QTest::newRow("byte low 8 bits") << "byte"
                                     << "300" << QVariant(44u);
    QTest::newRow("char code 65") << "char"
                                  << "65" << QVariant(int('A'));
    QTest::newRow("char letter") << "char"
                                 << "A" << QVariant(0);
    QTest::newRow("char empty is space") << "char"
                                         << "" << QVariant(32);
    QTest::newRow("float leading part") << "float"
                                        << "3.5x" << QVariant(3.5);
    QTest::newRow("double exponent") << "double"
                                     << " 2.25e2" << QVariant(225.0);
    QTest::newRow("double empty") << "double"
                                  << "" << QVariant(0.0);
    QTest::newRow("bool true") << "bool"
                               << "true" << QVariant(true);
    QTest::newRow("bool TRUE") << "bool"
                               << "TRUE" << QVariant(true);
    QTest::newRow("bool True") << "bool"
                               << "True" << QVariant(false);
    QTest::newRow("bool 1") << "bool"
                            << "1" << QVariant(false);
    QTest::newRow("hex lower") << "hex"
                               << "ff" << QVariant(255u);
    QTest::newRow("hex prefix") << "hex"
                                << "0xFF" << QVariant(255u);
    QTest::newRow("hex blank inside") << "hex"
                                      << "1 F" << QVariant(31u);
    QTest::newRow("hex nine digits wrap") << "hex"
                                          << "100000000" << QVariant(0u);
    QTest::newRow("hex full") << "hex"
                              << "FFFFFFFF" << QVariant(4294967295u);
}

void tst_CommaBlockString::getters()
{
    QFETCH(QString, getter);
    QFETCH(QString, field);
    QFETCH(QVariant, expected);

    CommaBlockString s;
    s.Set(CString(field + QStringLiteral(",next")));
    QVariant got;
    if (getter == QLatin1String("int")) {
        int v = -7;
        s.GetInt(v);
        got = v;
    } else if (getter == QLatin1String("short")) {
        short v = 0;
        s.GetInt(v);
        got = int(v);
    } else if (getter == QLatin1String("long")) {
        long v = 0;
        s.GetLong(v);
        got = int(v);
        QCOMPARE(qlonglong(v), qlonglong(got.toInt()));
    } else if (getter == QLatin1String("dword")) {
        unsigned long v = 0;
        s.GetDWORD(v);
        got = uint(v);
        QCOMPARE(qulonglong(v), qulonglong(got.toUInt()));
    } else if (getter == QLatin1String("word")) {
        unsigned short v = 0;
        s.GetWORD(v);
        got = uint(v);
    } else if (getter == QLatin1String("byte")) {
        unsigned char v = 0;
        s.GetBYTE(v);
        got = uint(v);
    } else if (getter == QLatin1String("char")) {
        char v = 'z';
        s.GetChar(v);
        got = int(v);
    } else if (getter == QLatin1String("float")) {
        got = double(s.GetFloat());
    } else if (getter == QLatin1String("double")) {
        got = s.GetDouble();
    } else if (getter == QLatin1String("bool")) {
        got = s.GetBool();
    } else if (getter == QLatin1String("hex")) {
        unsigned int v = 0;
        const unsigned int returned = s.GetHexDWORD(v);
        QCOMPARE(returned, v);
        got = v;
    }
    QCOMPARE(got, expected);
    // Exactly one field was consumed.
    QCOMPARE(s.GetString().text, QStringLiteral("next"));
}

void tst_CommaBlockString::hexWordKeepsFullValue()
{
    CommaBlockString s;
    s.Set(CString("12345,1FF"));
    unsigned short w = 0;
    QCOMPARE(s.GetHexWORD(w), 0x12345u);
    QCOMPARE(w, quint16(0x2345));
    unsigned char b = 0;
    QCOMPARE(s.GetHexBYTE(b), 0x1FFu);
    QCOMPARE(b, quint8(0xFF));
}

void tst_CommaBlockString::fixedBuffer_data()
{
    QTest::addColumn<QString>("field");
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("fits") << "abc" << 4 << QByteArray("abc");
    QTest::newRow("one too long is dropped, not cut") << "abcd" << 4 << QByteArray("");
    QTest::newRow("korean counts bytes") << QString::fromUtf8("수온") << 6 << QByteArray("");
    QTest::newRow("korean fits") << QString::fromUtf8("수온") << 7 << QByteArray("수온");
}

void tst_CommaBlockString::fixedBuffer()
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

void tst_CommaBlockString::totalRemain_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("rest");

    QTest::newRow("after one field") << "a,b,c"
                                     << "b,c";
    QTest::newRow("blanks skipped, line breaks kept") << "a, \t b\r\nc"
                                                      << "b\r\nc";
    QTest::newRow("nothing left") << "a,"
                                  << "";
}

void tst_CommaBlockString::totalRemain()
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

void tst_CommaBlockString::overrideChangesEveryGetter()
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
    unsigned int hex = 0;
    s.GetHexDWORD(hex);
    QCOMPARE(hex, 7u);
}

void tst_CommaBlockString::spliter_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<QStringList>("items");

    QTest::newRow("plain") << "a,b,cd"
                           << "," << QStringList {"a", "b", "cd"};
    QTest::newRow("one-character tail dropped") << "a,b,c"
                                                << "," << QStringList {"a", "b"};
    QTest::newRow("trailing separator") << "a,b,"
                                        << "," << QStringList {"a", "b"};
    QTest::newRow("long separator advances one") << "a::b"
                                                 << "::" << QStringList {"a", ":b"};
    QTest::newRow("no separator") << "ab"
                                  << "," << QStringList {"ab"};
    QTest::newRow("case-sensitive") << "XaYAZ"
                                    << "a" << QStringList {"X", "YAZ"};
    QTest::newRow("empty text") << ""
                                << "," << QStringList();
    QTest::newRow("empty separator") << "abc"
                                     << "" << QStringList();
}

void tst_CommaBlockString::spliter()
{
    QFETCH(QString, text);
    QFETCH(QString, separator);
    QFETCH(QStringList, items);

    QCOMPARE(StringSpliter::Execute(text, separator), items);
}

QTEST_APPLESS_MAIN(tst_CommaBlockString)
#include "tst_commablockstring.moc"
