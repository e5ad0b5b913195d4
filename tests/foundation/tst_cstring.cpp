#include <CString.h>

#include <QtTest>

#include <cstring>

class tst_CString : public QObject
{
    Q_OBJECT

private slots:
    void lengths_data();
    void lengths();
    void getAt_data();
    void getAt();
    void escape_data();
    void escape();
    void getDataPointerLifetime();
    void makeUpperLowerReturnCopies();
    void extraction_data();
    void extraction();
    void find_data();
    void find();
    void deleteInsert_data();
    void deleteInsert();
    void formatAndReplace();
    void nullAndInvalidInput();
    void makeString_data();
    void makeString();
};

void tst_CString::lengths_data()
{
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<int>("units");
    QTest::addColumn<int>("bytes");
    QTest::newRow("ascii") << QByteArray("abc") << 3 << 3;
    QTest::newRow("korean two syllables") << QByteArray("한글") << 2 << 6;
    QTest::newRow("latin-1 range") << QByteArray("é") << 1 << 2;
    QTest::newRow("astral (surrogate pair)") << QByteArray("\xF0\x9F\x98\x80") << 2 << 4;
    QTest::newRow("empty") << QByteArray() << 0 << 0;
}

void tst_CString::lengths()
{
    QFETCH(QByteArray, utf8);
    QFETCH(int, units);
    QFETCH(int, bytes);
    const CString s(utf8.constData());
    QCOMPARE(s.GetLength(false), units);
    QCOMPARE(s.GetLength(true), bytes);
    QCOMPARE(s.IsEmpty(), units == 0);
}

void tst_CString::getAt_data()
{
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("expected");
    QTest::newRow("first") << QByteArray("abcde") << 0 << int('a');
    QTest::newRow("last") << QByteArray("abcde") << 4 << int('e');
    QTest::newRow("one past the end") << QByteArray("abcde") << 5 << 0;
    QTest::newRow("empty") << QByteArray() << 0 << 0;
    QTest::newRow("negative") << QByteArray("abc") << -1 << 0;
    // UTF-8 bytes, bounded by the UTF-16 length: 한 is ED 95 9C, 글 is EA B8 80.
    QTest::newRow("korean byte 1") << QByteArray("한글") << 1 << int(char(0x95));
    QTest::newRow("korean bound") << QByteArray("한글") << 2 << 0;
}

void tst_CString::getAt()
{
    QFETCH(QByteArray, utf8);
    QFETCH(int, index);
    QFETCH(int, expected);
    QCOMPARE(int(CString(utf8.constData()).GetAt(index)), expected);
}

void tst_CString::escape_data()
{
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<QByteArray>("plain");
    QTest::addColumn<QByteArray>("escaped");
    QTest::newRow("comma cr lf") << QByteArray("a,b\rc\nd") << QByteArray("a,b\rc\nd")
                                 << QByteArray("a`b^c^d");
    QTest::newRow("crlf gives two carets")
        << QByteArray("x\r\n") << QByteArray("x\r\n") << QByteArray("x^^");
    QTest::newRow("korean untouched")
        << QByteArray("가,나") << QByteArray("가,나") << QByteArray("가`나");
    QTest::newRow("back-quote and caret stay")
        << QByteArray("`^") << QByteArray("`^") << QByteArray("`^");
}

void tst_CString::escape()
{
    QFETCH(QByteArray, utf8);
    QFETCH(QByteArray, plain);
    QFETCH(QByteArray, escaped);
    CString s(utf8.constData());
    QCOMPARE(QByteArray(s.GetData(true)), escaped);
    // The value keeps its commas and line ends.
    QCOMPARE(s.text, QString::fromUtf8(utf8));
    QCOMPARE(QByteArray(s.GetData(false)), plain);
    QCOMPARE(QByteArray(s.c_str()), plain);
}

void tst_CString::getDataPointerLifetime()
{
    CString s("abc");
    const char *p = s.GetData();
    CString copy = s; // copying does not invalidate the original's bytes
    QCOMPARE(QByteArray(p), QByteArray("abc"));
    QCOMPARE(QByteArray(copy.GetData()), QByteArray("abc"));
    s = "xyz";
    QCOMPARE(QByteArray(s.GetData()), QByteArray("xyz"));
    QVERIFY(s.bytes == QByteArray("xyz"));
}

void tst_CString::makeUpperLowerReturnCopies()
{
    CString s("MiXed");
    const CString up = s.MakeUpper();
    const CString low = s.MakeLower();
    QCOMPARE(s.text, QStringLiteral("MiXed"));
    QCOMPARE(up.text, QStringLiteral("MIXED"));
    QCOMPARE(low.text, QStringLiteral("mixed"));
    s = s.MakeUpper();
    QCOMPARE(s.text, QStringLiteral("MIXED"));
}

void tst_CString::extraction_data()
{
    QTest::addColumn<QString>("op");
    QTest::addColumn<int>("a");
    QTest::addColumn<int>("b");
    QTest::addColumn<QString>("expected");
    QTest::newRow("Left(-1)") << "L" << -1 << 0 << "abc";
    QTest::newRow("Left(0)") << "L" << 0 << 0 << "";
    QTest::newRow("Left(2)") << "L" << 2 << 0 << "ab";
    QTest::newRow("Left(3)") << "L" << 3 << 0 << "abc";
    QTest::newRow("Right(100)") << "R" << 100 << 0 << "abc";
    QTest::newRow("Right(-5)") << "R" << -5 << 0 << "abc";
    QTest::newRow("Right(1)") << "R" << 1 << 0 << "c";
    QTest::newRow("Mid(5,1)") << "M" << 5 << 1 << "";
    QTest::newRow("Mid(1,-1)") << "M" << 1 << -1 << "bc";
    QTest::newRow("Mid(1,1)") << "M" << 1 << 1 << "b";
    QTest::newRow("Mid(1,100)") << "M" << 1 << 100 << "bc";
}

void tst_CString::extraction()
{
    QFETCH(QString, op);
    QFETCH(int, a);
    QFETCH(int, b);
    QFETCH(QString, expected);
    const CString s("abc");
    CString r = op == QLatin1String("L") ? s.Left(a)
        : op == QLatin1String("R")       ? s.Right(a)
                                         : s.Mid(a, b);
    QCOMPARE(r.text, expected);
    QCOMPARE(s.text, QStringLiteral("abc"));
}

void tst_CString::find_data()
{
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("expected");
    const CString s("a.b.c");
    QTest::newRow("Find(char)") << s.Find('.') << 1;
    QTest::newRow("Find(char, from)") << s.Find('.', 2) << 3;
    QTest::newRow("Find(char) missing") << s.Find('x') << -1;
    QTest::newRow("Find(text, 0)") << s.Find(QStringLiteral("b."), 0) << 2;
    QTest::newRow("Find(text) case-sensitive") << s.Find(QStringLiteral("B"), 0) << -1;
    QTest::newRow("ReverseFind(char, -1)") << s.ReverseFind('.', -1) << 3;
    QTest::newRow("ReverseFind(char, 2)") << s.ReverseFind('.', 2) << 1;
    QTest::newRow("ReverseFind(text)") << s.ReverseFind(QStringLiteral("a"), -1) << 0;
    // A char is the Latin-1 character of its byte: 0xE9 finds é.
    QTest::newRow("latin-1 char") << CString("café").Find(char(0xE9)) << 3;
    QTest::newRow("Compare equal") << CString("x").Compare(CString("x")) << 0;
    QTest::newRow("Compare less") << int(CString("A").Compare(CString("a")) < 0) << 1;
}

void tst_CString::find()
{
    QFETCH(int, result);
    QFETCH(int, expected);
    QCOMPARE(result, expected);
}

void tst_CString::deleteInsert_data()
{
    QTest::addColumn<QString>("op");
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("expected");
    QTest::newRow("insert beyond pads with spaces") << "I" << 5 << 0 << "abc  x";
    QTest::newRow("insert at end") << "I" << 3 << 0 << "abcx";
    QTest::newRow("insert at 0") << "I" << 0 << 0 << "xabc";
    QTest::newRow("insert negative") << "I" << -1 << 0 << "abc";
    QTest::newRow("delete middle") << "D" << 1 << 1 << "ac";
    QTest::newRow("delete past end") << "D" << 1 << 99 << "a";
    QTest::newRow("delete beyond") << "D" << 5 << 1 << "abc";
    QTest::newRow("delete negative count") << "D" << 0 << -1 << "abc";
}

void tst_CString::deleteInsert()
{
    QFETCH(QString, op);
    QFETCH(int, index);
    QFETCH(int, count);
    QFETCH(QString, expected);
    CString s("abc");
    const int r = op == QLatin1String("I") ? s.Insert(index, CString("x")) : s.Delete(index, count);
    QCOMPARE(r, 0);
    QCOMPARE(s.text, expected);
}

void tst_CString::formatAndReplace()
{
    CString s;
    const CString r = s.Format("%s:%03d|%5.2f", "온도", 7, 3.14159);
    QCOMPARE(s.text, QString::fromUtf8("온도:007| 3.14"));
    QCOMPARE(r.text, s.text);
    CString fmt("%d-%s");
    s.Format(fmt, 12, "가");
    QCOMPARE(s.text, QString::fromUtf8("12-가"));

    CString t("a-b-a");
    QCOMPARE(t.Replace("a", "가").text, QString::fromUtf8("가-b-가"));
    QCOMPARE(t.Replace(QLatin1Char('-'), QLatin1Char('+')).text, QString::fromUtf8("가+b+가"));
    QCOMPARE(t.Remove(QLatin1Char('+')).text, QString::fromUtf8("가b가"));
    QCOMPARE(t.text, QString::fromUtf8("가b가"));

    CString e("abc");
    e.Empty();
    QVERIFY(e.IsEmpty());
}

void tst_CString::nullAndInvalidInput()
{
    const char *null = nullptr;
    QVERIFY(CString(null).IsEmpty());
    CString s("x");
    s = null;
    QVERIFY(s.IsEmpty());
    // Invalid UTF-8 decodes with a replacement character, never crashes.
    CString bad("\xFF\xFE");
    QVERIFY(bad.GetLength() >= 1);
    QVERIFY(bad.text.contains(QChar::ReplacementCharacter));
}

void tst_CString::makeString_data()
{
    QTest::addColumn<QByteArray>("src");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("escape");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("trailing spaces trimmed") << QByteArray("ab  ") << 4 << 0 << QByteArray("ab");
    QTest::newRow("all spaces kept, cut") << QByteArray("    ") << 4 << 0 << QByteArray("   ");
    QTest::newRow("double-byte fits")
        << QByteArray("a\xB0\xA1") << 4 << 0 << QByteArray("a\xB0\xA1");
    QTest::newRow("double-byte cut whole") << QByteArray("a\xB0\xA1") << 3 << 0 << QByteArray("a");
    QTest::newRow("short text copied") << QByteArray("abc") << 10 << 0 << QByteArray("abc");
    QTest::newRow("long text cut at size-1")
        << QByteArray("abcdefgh") << 4 << 0 << QByteArray("abc");
    QTest::newRow("escape") << QByteArray("a,b\r\nc") << 16 << 1 << QByteArray("a`b^^c");
    QTest::newRow("no escape") << QByteArray("a,b") << 16 << 0 << QByteArray("a,b");
    QTest::newRow("inner spaces kept") << QByteArray("a b c ") << 16 << 0 << QByteArray("a b c");
    QTest::newRow("space after double-byte")
        << QByteArray("\xB0\xA1 ") << 16 << 0 << QByteArray("\xB0\xA1");
    QTest::newRow("size 1") << QByteArray("abc") << 1 << 0 << QByteArray("");
    QTest::newRow("dangling lead byte") << QByteArray("ab\xB0") << 16 << 0 << QByteArray("ab");
}

void tst_CString::makeString()
{
    QFETCH(QByteArray, src);
    QFETCH(int, size);
    QFETCH(int, escape);
    QFETCH(QByteArray, expected);
    QByteArray dest(64, '#');
    QByteArray source = src;
    MakeString(dest.data(), source.data(), size, escape);
    QCOMPARE(QByteArray(dest.constData()), expected);
    QVERIFY(int(std::strlen(dest.constData())) <= size - 1);
    // Nothing beyond the buffer's size is written.
    QCOMPARE(dest.at(size), '#');
}

QTEST_APPLESS_MAIN(tst_CString)
#include "tst_cstring.moc"
