// SPDX-License-Identifier: MIT
#include <CString.h>

#include <QtTest>

class tst_CString : public QObject
{
    Q_OBJECT

private slots:
    void measures_data();
    void measures();
    void escape_data();
    void escape();
    void operations_data();
    void operations();
    void valueSemantics();
    void makeString_data();
    void makeString();
};

void tst_CString::measures_data()
{
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<int>("units");
    QTest::addColumn<int>("bytes");
    QTest::addColumn<int>("lastAt"); // GetAt(units - 1)
    QTest::newRow("ascii") << QByteArray("abcde") << 5 << 5 << int('e');
    // GetAt returns UTF-8 bytes (한 is ED 95 9C) but stops at the UTF-16 length.
    QTest::newRow("korean") << QByteArray("한글") << 2 << 6 << int(char(0x95));
    QTest::newRow("latin-1 range") << QByteArray("é") << 1 << 2 << int(char(0xC3));
    QTest::newRow("astral (surrogate pair)")
        << QByteArray("\xF0\x9F\x98\x80") << 2 << 4 << int(char(0x9F));
    QTest::newRow("empty") << QByteArray() << 0 << 0 << 0;
}

void tst_CString::measures()
{
    QFETCH(QByteArray, utf8);
    QFETCH(int, units);
    QFETCH(int, bytes);
    QFETCH(int, lastAt);
    const CString s(utf8.constData());
    QCOMPARE(s.GetLength(false), units);
    QCOMPARE(s.GetLength(true), bytes);
    QCOMPARE(s.IsEmpty(), units == 0);
    QCOMPARE(int(s.GetAt(units - 1)), lastAt);
    QCOMPARE(int(s.GetAt(units)), 0);
    QCOMPARE(int(s.GetAt(-1)), 0);
}

void tst_CString::escape_data()
{
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<QByteArray>("escaped");
    QTest::newRow("comma cr lf") << QByteArray("a,b\rc\nd") << QByteArray("a`b^c^d");
    QTest::newRow("crlf gives two carets") << QByteArray("x\r\n") << QByteArray("x^^");
    QTest::newRow("korean untouched") << QByteArray("가,나") << QByteArray("가`나");
    QTest::newRow("back-quote and caret stay") << QByteArray("`^") << QByteArray("`^");
}

void tst_CString::escape()
{
    QFETCH(QByteArray, utf8);
    QFETCH(QByteArray, escaped);
    CString s(utf8.constData());
    QCOMPARE(QByteArray(s.GetData(true)), escaped);
    // Only the returned bytes are escaped: the value keeps its commas and line ends.
    QCOMPARE(s.text, QString::fromUtf8(utf8));
    QCOMPARE(QByteArray(s.GetData(false)), utf8);
    QCOMPARE(QByteArray(s.c_str()), utf8);
}

// Each row's result is computed here, on a fresh string; the name says what it pins down.
void tst_CString::operations_data()
{
    QTest::addColumn<QString>("result");
    QTest::addColumn<QString>("expected");
    auto row = [](const char *name, const QString &got, const char *want) {
        QTest::newRow(name) << got << QString::fromUtf8(want);
    };
    auto num = [](int n) { return QString::number(n); };
    const CString abc("abc"), dots("a.b.c");
    auto edit = [](char op, int at, int count = 0) {
        CString s("abc");
        const int r = op == 'I' ? s.Insert(at, CString("x")) : s.Delete(at, count);
        return r == 0 ? s.text : QString(); // both always return 0
    };
    row("Left(-1)", abc.Left(-1).text, "abc");
    row("Left(0)", abc.Left(0).text, "");
    row("Right(0)", abc.Right(0).text, "");
    row("Right(100)", abc.Right(100).text, "abc");
    row("Right(-5)", abc.Right(-5).text, "abc");
    row("Mid(5,1)", abc.Mid(5, 1).text, "");
    row("Mid(1,-1)", abc.Mid(1, -1).text, "bc");
    row("Find(char, from)", num(dots.Find('.', 2)), "3");
    row("Find(text) case-sensitive", num(dots.Find(QStringLiteral("B"), 0)), "-1");
    row("ReverseFind(char, -1)", num(dots.ReverseFind('.', -1)), "3");
    row("ReverseFind(char, 2)", num(dots.ReverseFind('.', 2)), "1");
    // A char is the Latin-1 character of its byte: 0xE9 finds é.
    row("latin-1 char", num(CString("café").Find(char(0xE9))), "3");
    row("Compare case", num(CString("A").Compare(CString("a")) < 0), "1");
    row("insert beyond pads with spaces", edit('I', 5), "abc  x");
    row("insert at end", edit('I', 3), "abcx");
    row("insert at 0", edit('I', 0), "xabc");
    row("insert negative", edit('I', -1), "abc");
    row("delete middle", edit('D', 1, 1), "ac");
    row("delete past end", edit('D', 1, 99), "a");
    row("delete beyond", edit('D', 5, 1), "abc");
    row("delete negative count", edit('D', 0, -1), "abc");
}

void tst_CString::operations()
{
    QFETCH(QString, result);
    QFETCH(QString, expected);
    QCOMPARE(result, expected);
}

void tst_CString::valueSemantics()
{
    CString s("abc");
    const char *p = s.GetData();
    const CString copy = s; // copying does not invalidate the original's bytes
    QCOMPARE(QByteArray(p), QByteArray("abc"));
    QCOMPARE(QByteArray(copy.GetData()), QByteArray("abc"));

    // MakeUpper and MakeLower return copies and leave the string as it was.
    CString m("MiXed");
    QCOMPARE(m.MakeUpper().text, QStringLiteral("MIXED"));
    QCOMPARE(m.MakeLower().text, QStringLiteral("mixed"));
    QCOMPARE(m.text, QStringLiteral("MiXed"));

    const CString r = s.Format("%s:%03d|%5.2f", "온도", 7, 3.14159);
    QCOMPARE(s.text, QString::fromUtf8("온도:007| 3.14"));
    QCOMPARE(r.text, s.text);
    s.Format(CString("%d-%s"), 12, "가");
    QCOMPARE(QByteArray(s.GetData()), QByteArray("12-가")); // converted afresh, not cached

    CString t("a-b-a");
    QCOMPARE(t.Replace("a", "가").text, QString::fromUtf8("가-b-가"));
    t.Empty();
    QVERIFY(t.IsEmpty());

    const char *null = nullptr;
    QVERIFY(CString(null).IsEmpty());
    s = null;
    QVERIFY(s.IsEmpty());
    // Invalid UTF-8 decodes with a replacement character, never crashes.
    QVERIFY(CString("\xFF\xFE").text.contains(QChar::ReplacementCharacter));
}

void tst_CString::makeString_data()
{
    QTest::addColumn<QByteArray>("src");
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("escape");
    QTest::addColumn<QByteArray>("expected");
    QTest::newRow("trailing spaces trimmed") << QByteArray("ab  ") << 4 << 0 << QByteArray("ab");
    QTest::newRow("all spaces kept, cut") << QByteArray("    ") << 4 << 0 << QByteArray("   ");
    QTest::newRow("inner spaces and commas kept")
        << QByteArray("a, b c ") << 16 << 0 << QByteArray("a, b c");
    QTest::newRow("double-byte fits")
        << QByteArray("a\xB0\xA1") << 4 << 0 << QByteArray("a\xB0\xA1");
    QTest::newRow("double-byte cut whole") << QByteArray("a\xB0\xA1") << 3 << 0 << QByteArray("a");
    QTest::newRow("space after double-byte")
        << QByteArray("\xB0\xA1 ") << 16 << 0 << QByteArray("\xB0\xA1");
    QTest::newRow("dangling lead byte") << QByteArray("ab\xB0") << 16 << 0 << QByteArray("ab");
    QTest::newRow("long text cut at size-1")
        << QByteArray("abcdefgh") << 4 << 0 << QByteArray("abc");
    QTest::newRow("size 1") << QByteArray("abc") << 1 << 0 << QByteArray("");
    QTest::newRow("escape") << QByteArray("a,b\r\nc") << 16 << 1 << QByteArray("a`b^^c");
    // A valid UTF-8 sequence is one character, kept or cut whole.
    QTest::newRow("utf-8 syllable fits") << QByteArray("a가") << 5 << 0 << QByteArray("a가");
    QTest::newRow("utf-8 syllable cut whole") << QByteArray("a가") << 4 << 0 << QByteArray("a");
    QTest::newRow("utf-8 two-byte letter, comma escaped")
        << QByteArray("é,") << 4 << 1 << QByteArray("é`");
    // E0 80 is an overlong form, not UTF-8: a pair, and the 80 after it another one.
    QTest::newRow("overlong form is a pair")
        << QByteArray("a\xE0\x80\x80") << 4 << 0 << QByteArray("a\xE0\x80");
    // C7 D1 is not UTF-8 (D1 is no continuation byte): a double-byte pair.
    QTest::newRow("double-byte with a utf-8-like lead") << QByteArray("a\xC7\xD1"
                                                                      "b")
                                                        << 3 << 0 << QByteArray("a");
    // Spaces end the text only when nothing but a character that does not fit follows them.
    QTest::newRow("spaces before a cut letter stay")
        << QByteArray("x  yz") << 4 << 0 << QByteArray("x  ");
    QTest::newRow("spaces before a cut syllable go")
        << QByteArray("x  가") << 6 << 0 << QByteArray("x");
}

void tst_CString::makeString()
{
    QFETCH(QByteArray, src);
    QFETCH(int, size);
    QFETCH(int, escape);
    QFETCH(QByteArray, expected);
    QByteArray dest(64, '#');
    MakeString(dest.data(), src.data(), size, escape);
    QCOMPARE(QByteArray(dest.constData()), expected);
    QCOMPARE(dest.at(size), '#'); // nothing beyond the buffer's size is written
}

QTEST_APPLESS_MAIN(tst_CString)
#include "tst_cstring.moc"
