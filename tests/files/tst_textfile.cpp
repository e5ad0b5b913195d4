// CTextFile, TextStreamEx and CCheckFile.
#include "CCheckFile.h"
#include "CTextFile.h"
#include "TextStreamEx.h"
#include "VantorStrings.h"

#include <QtTest>

#include <cstring>
#include <memory>

namespace {

/// Reads every field of the current line into a roomy buffer.
QStringList readFields(CTextFile &f)
{
    QStringList fields;
    char buffer[200];
    while (f.GetString(buffer, sizeof buffer) && fields.size() < 50)
        fields << QString::fromUtf8(buffer);
    return fields;
}

/// Sets the library's language for the lifetime of the object.
struct LanguageScope
{
    explicit LanguageScope(const char *language)
        : saved(VantorStrings::Language)
    {
        VantorStrings::Language = language;
    }
    ~LanguageScope() { VantorStrings::Language = saved; }
    CString saved;
};

} // namespace

class tst_TextFile : public QObject
{
    Q_OBJECT

private slots:
    void lines_data();
    void lines();
    void lineAndColumnCount();
    void overLongLine();
    void fields_data();
    void fields();
    void overLongField();
    void numbers_data();
    void numbers();
    void setOneLine_data();
    void setOneLine();
    void columnCountOfText_data();
    void columnCountOfText();
    void makeString_data();
    void makeString();
    void csvRoundTrip();
    void decodesByLanguage_data();
    void decodesByLanguage();
    void openFileKeepsState();
    void checkFileTime();
    void checkFolderCount();
};

void tst_TextFile::lines_data()
{
    QTest::addColumn<QByteArray>("data");
    QTest::addColumn<QStringList>("lines"); // "<kind>:<text>" up to and excluding the end

    QTest::newRow("comments, sections, blank")
        << QByteArray(";comment\r\n[Section]\r\na,b,c\r\n\r\n")
        << QStringList {"1:", "1:", "0:a,b,c", "0:"};
    QTest::newRow("two line feeds end one line")
        << QByteArray("a\n\nb") << QStringList {"0:a", "0:b"};
    QTest::newRow("three line feeds") << QByteArray("a\n\n\nb") << QStringList {"0:a", "0:", "0:b"};
    QTest::newRow("blank first line") << QByteArray("\n;c\nx\n") << QStringList {"0:", "1:", "0:x"};
    QTest::newRow("no final line end") << QByteArray("x\r\nlast") << QStringList {"0:x", "0:last"};
    QTest::newRow("comment at the very end") << QByteArray("x\n;tail") << QStringList {"0:x"};
    QTest::newRow("NUL ends the text") << QByteArray("a\0b\nc", 5) << QStringList {"0:a"};
}

void tst_TextFile::lines()
{
    QFETCH(QByteArray, data);
    QFETCH(QStringList, lines);

    CTextFile f;
    f.Set(data.data(), data.size());
    QStringList got;
    int kind;
    while ((kind = f.GetOneLine()) != 2 && got.size() <= lines.size())
        got << QStringLiteral("%1:%2").arg(kind).arg(f.GetRemainData().text);
    QCOMPARE(got, lines);
    QCOMPARE(f.GetOneLine(), 2);
}

void tst_TextFile::lineAndColumnCount()
{
    QByteArray data(";comment\r\n[Section]\r\na,b,c\r\n\r\n");
    CTextFile f;
    f.Set(data.data(), data.size());
    QCOMPARE(f.GetLineCount(), 2);
    QCOMPARE(f.GetPos(true), 0);
    QCOMPARE(f.GetColumnCount(), 3);
    QCOMPARE(f.GetPos(true), 0);
    QCOMPARE(f.GetOneLine(), 1); // reading starts again at the top

    char empty[] = "";
    f.Set(empty, 0);
    QCOMPARE(f.GetLineCount(), 0);
    QCOMPARE(f.GetColumnCount(), 0);
}

void tst_TextFile::overLongLine()
{
    QByteArray data(25000, 'x');
    data += "\nnext";
    CTextFile f;
    f.Set(data.data(), data.size());
    QCOMPARE(f.GetOneLine(), 0);
    QCOMPARE(f.GetRemainData().text.size(), 19999);
    QCOMPARE(f.GetOneLine(), 0);
    QCOMPARE(f.GetRemainData().text, QStringLiteral("next"));
}

void tst_TextFile::fields_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<char>("divide");
    QTest::addColumn<QStringList>("fields");

    QTest::newRow("empty field") << QByteArray("a,,b") << ',' << QStringList {"a", "", "b"};
    QTest::newRow("back-quote is a comma") << QByteArray("`x") << ',' << QStringList {",x"};
    QTest::newRow("back-quote caret") << QByteArray("`^") << ',' << QStringList {"^"};
    QTest::newRow("double back-quote") << QByteArray("a``b") << ',' << QStringList {"a`b"};
    QTest::newRow("caret is LF") << QByteArray("a^b") << ',' << QStringList {"a\nb"};
    QTest::newRow("two carets are CR LF") << QByteArray("a^^b") << ',' << QStringList {"a\r\nb"};
    QTest::newRow("spreadsheet text cell")
        << QByteArray("=\"0123\",x") << ',' << QStringList {"0123", "x"};
    QTest::newRow("other equals signs stay")
        << QByteArray("a=b,c=") << ',' << QStringList {"a=b", "c="};
    QTest::newRow("quotes read as spaces")
        << QByteArray("\"q\",r\"s") << ',' << QStringList {"q", "r s"};
    QTest::newRow("trimmed") << QByteArray("  lead,\ttrail  ") << ','
                             << QStringList {"lead", "trail"};
    QTest::newRow("blanks after last delimiter") << QByteArray("a,  ") << ',' << QStringList {"a"};
    QTest::newRow("space divide, runs are one")
        << QByteArray("a   b  c") << ' ' << QStringList {"a", "b", "c"};
    QTest::newRow("semicolon divide") << QByteArray("1,5;2") << ';' << QStringList {"1,5", "2"};
}

void tst_TextFile::fields()
{
    QFETCH(QByteArray, line);
    QFETCH(char, divide);
    QFETCH(QStringList, fields);

    CTextFile f;
    f.SetDivideChar(divide);
    f.SetOneLine(CString(line.constData()), line.size() + 1);
    QCOMPARE(readFields(f), fields);
    char buffer[8] = "junk";
    QCOMPARE(f.GetString(buffer, sizeof buffer), 0);
    QCOMPARE(buffer[0], '\0');
}

void tst_TextFile::overLongField()
{
    CTextFile f;
    f.SetOneLine(CString("abcdef,g"), 9);
    char buffer[4];
    QCOMPARE(f.GetString(buffer, sizeof buffer), 1);
    QCOMPARE(QByteArray(buffer), QByteArray("abc"));
    QCOMPARE(f.GetString(buffer, sizeof buffer), 1);
    QCOMPARE(QByteArray(buffer), QByteArray("g"));
}

void tst_TextFile::numbers_data()
{
    QTest::addColumn<QString>("getter");
    QTest::addColumn<QByteArray>("field");
    QTest::addColumn<double>("expected");

    QTest::newRow("int sees 8 digits") << "int" << QByteArray("123456789012") << 12345678.0;
    QTest::newRow("int empty") << "int" << QByteArray("") << 0.0;
    QTest::newRow("char is a number") << "char" << QByteArray("65") << 65.0;
    QTest::newRow("long") << "long" << QByteArray("-1234567890123") << -1234567890123.0;
    QTest::newRow("float") << "float" << QByteArray("2.5") << 2.5;
    QTest::newRow("DI word and bit") << "di" << QByteArray("123A") << 1978.0;
    QTest::newRow("DI leading zeros") << "di" << QByteArray("0021") << 33.0;
    QTest::newRow("DI short field") << "di" << QByteArray("21") << 336.0;
    QTest::newRow("DI lower-case bit counts 0") << "di" << QByteArray("123a") << 1968.0;
    QTest::newRow("DI empty") << "di" << QByteArray("") << 0.0;
}

void tst_TextFile::numbers()
{
    QFETCH(QString, getter);
    QFETCH(QByteArray, field);
    QFETCH(double, expected);

    CTextFile f;
    const QByteArray line = field + ",9";
    f.SetOneLine(CString(line.constData()), line.size() + 1);
    double got = -1;
    if (getter == QLatin1String("int")) {
        int v = -1;
        f.GetInt(&v);
        got = v;
    } else if (getter == QLatin1String("char")) {
        char v = 0;
        f.GetChar(&v);
        got = v;
    } else if (getter == QLatin1String("long")) {
        long v = 0;
        f.GetLong(&v);
        got = double(v);
    } else if (getter == QLatin1String("float")) {
        float v = 0;
        f.GetFloat(&v);
        got = v;
    } else if (getter == QLatin1String("di")) {
        unsigned int v = 99;
        f.GetAddressDI(&v);
        got = v;
    }
    QCOMPARE(got, expected);
    int next = 0;
    QCOMPARE(f.GetInt(&next), 1);
    QCOMPARE(next, 9);
}

void tst_TextFile::setOneLine_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("length");

    QTest::newRow("count includes the terminator") << QByteArray("abc") << 3 << 2;
    QTest::newRow("whole") << QByteArray("abc") << 4 << 3;
    QTest::newRow("beyond the text") << QByteArray("abc") << 100000 << 3;
    QTest::newRow("zero") << QByteArray("abc") << 0 << 0;
    QTest::newRow("negative") << QByteArray("abc") << -5 << 0;
    QTest::newRow("beyond the line buffer") << QByteArray(30000, 'y') << 30001 << 19999;
}

void tst_TextFile::setOneLine()
{
    QFETCH(QByteArray, text);
    QFETCH(int, count);
    QFETCH(int, length);

    CTextFile f;
    f.SetOneLine(CString("old,line"), 9);
    f.Skip();
    f.SetOneLine(CString(text.constData()), count);
    QCOMPARE(f.GetPos(false), 0);
    QCOMPARE(f.GetRemainData().text.size(), length);
}

void tst_TextFile::columnCountOfText_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("columns");

    QTest::newRow("empty") << QByteArray("") << 1;
    QTest::newRow("three") << QByteArray("a,b,c") << 3;
    QTest::newRow("korean") << QByteArray("가,나,다") << 3;
    QTest::newRow("ends inside a character") << QByteArray("a,\xEA\xB0") << 2;
    QTest::newRow("lead byte last") << QByteArray("a,b,\xEA") << 3;
}

void tst_TextFile::columnCountOfText()
{
    QFETCH(QByteArray, text);
    QFETCH(int, columns);

    // An exact-size heap copy, so that a read past the terminator is caught under ASan.
    std::unique_ptr<char[]> exact(new char[size_t(text.size()) + 1]);
    std::memcpy(exact.get(), text.constData(), size_t(text.size()) + 1);
    CTextFile f;
    QCOMPARE(f.GetColumnCount(exact.get()), columns);
}

void tst_TextFile::makeString_data()
{
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("escape");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("escaped") << QByteArray("a,b\r\nc") << 20 << true << QByteArray("a`b^^c");
    QTest::newRow("not escaped") << QByteArray("a,b\nc") << 20 << false << QByteArray("a,b\nc");
    QTest::newRow("trailing spaces cut") << QByteArray("ab   ") << 20 << true << QByteArray("ab");
    QTest::newRow("cut at size - 1") << QByteArray("abcdef") << 4 << true << QByteArray("abc");
    QTest::newRow("character cut whole") << QByteArray("a수") << 4 << true << QByteArray("a");
    QTest::newRow("character fits") << QByteArray("a수") << 5 << true << QByteArray("a수");
    QTest::newRow("comma after korean") << QByteArray("수,x") << 20 << true << QByteArray("수`x");
    QTest::newRow("escape chars left alone")
        << QByteArray("x`^") << 20 << true << QByteArray("x`^");
}

void tst_TextFile::makeString()
{
    QFETCH(QByteArray, source);
    QFETCH(int, size);
    QFETCH(bool, escape);
    QFETCH(QByteArray, expected);

    QByteArray dest(size + 1, '#');
    CTextFile::MakeString(dest.data(), source.data(), size, escape);
    QCOMPARE(QByteArray(dest.constData()), expected);
    QCOMPARE(dest.at(size), '#');

    const CString quoted = CTextFile::MakeString(source.data(), size, escape, true);
    QCOMPARE(quoted.text, QString::fromUtf8("=\"" + expected + "\""));
}

void tst_TextFile::csvRoundTrip()
{
    LanguageScope korean("Korean");
    const QStringList cells {QStringLiteral("plain"),
                             QStringLiteral("a,b,c"),
                             QStringLiteral("two\r\nlines"),
                             QStringLiteral("one\nline"),
                             QStringLiteral("0123"),
                             QString::fromUtf8("수온, 12.5℃"),
                             QString(),
                             QStringLiteral("last")};
    QCOMPARE(CTextFile::MakeString(CString("a,b")).text, QStringLiteral("=\"a`b\""));

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("table.csv"));
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Text));
        TextStreamEx out(&file);
        out << "; written cell by cell\n[Readings]\n";
        for (int row = 0; row < 2; ++row) {
            QStringList line;
            for (const QString &cell : cells)
                line << CTextFile::MakeString(CString(cell)).text;
            out << line.join(QLatin1Char(',')) << "\r\n";
        }
    }

    CTextFile f(path);
    QCOMPARE(f.GetLineCount(), 2);
    QCOMPARE(f.GetColumnCount(), cells.size());
    for (int row = 0; row < 2; ++row) {
        while (f.GetOneLine() == 1) { }
        QCOMPARE(readFields(f), cells);
    }
    QCOMPARE(f.GetOneLine(), 2);
}

void tst_TextFile::decodesByLanguage_data()
{
    QTest::addColumn<QByteArray>("language");
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<QString>("text");

    QTest::newRow("korean") << QByteArray("Korean") << QByteArray("EUC-KR")
                            << QString::fromUtf8("온도,습도\n23.5,45\n");
    QTest::newRow("chinese") << QByteArray("Chinese") << QByteArray("GB18030")
                             << QString::fromUtf8("温度,湿度\n23.5,45\n");
}

void tst_TextFile::decodesByLanguage()
{
    QFETCH(QByteArray, language);
    QFETCH(QByteArray, encoding);
    QFETCH(QString, text);

    // iconv, not Qt, produces the file's bytes.
    QProcess iconv;
    iconv.start(QStringLiteral("iconv"),
                {QStringLiteral("-f"), QStringLiteral("UTF-8"), QStringLiteral("-t"),
                 QString::fromLatin1(encoding)});
    if (!iconv.waitForStarted())
        QSKIP("iconv is not installed");
    iconv.write(text.toUtf8());
    iconv.closeWriteChannel();
    QVERIFY(iconv.waitForFinished());
    QCOMPARE(iconv.exitCode(), 0);
    const QByteArray encoded = iconv.readAllStandardOutput();
    QVERIFY(encoded != text.toUtf8());

    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("encoded.csv"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(encoded);
    file.close();

    const QStringList header = text.section(QLatin1Char('\n'), 0, 0).split(QLatin1Char(','));
    {
        LanguageScope scope(language.constData());
        CTextFile f(path);
        QCOMPARE(f.GetOneLine(), 0);
        QCOMPARE(readFields(f), header);
        QCOMPARE(f.GetOneLine(), 0);
        QCOMPARE(readFields(f), QStringList({"23.5", "45"}));
    }
    {
        LanguageScope scope("English");
        CTextFile f(path);
        QCOMPARE(f.GetOneLine(), 0);
        QVERIFY(readFields(f) != header);
    }
}

void tst_TextFile::openFileKeepsState()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("t.txt"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("one\ntwo\nthree\n");
    file.close();

    CTextFile f;
    QCOMPARE(f.OpenFile(path), 1);
    QCOMPARE(f.GetOneLine(), 0);
    QCOMPARE(f.OpenFile(dir.filePath(QStringLiteral("missing.txt"))), 0);
    QCOMPARE(f.GetOneLine(), 0); // the old text, from where it was
    QCOMPARE(f.GetRemainData().text, QStringLiteral("two"));
    QCOMPARE(f.OpenFile(path), 1); // deliberately continues at the old position
    QCOMPARE(f.GetOneLine(), 0);
    QCOMPARE(f.GetRemainData().text, QStringLiteral("three"));
    f.Reset();
    QCOMPARE(f.GetOneLine(), 0);
    QCOMPARE(f.GetRemainData().text, QStringLiteral("one"));
    f.DeleteTextFile();
    QCOMPARE(f.GetOneLine(), 2);
}

void tst_TextFile::checkFileTime()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("watched.txt"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    const QDateTime base = QFileInfo(path).lastModified();
    auto touch = [&](int seconds) {
        QFile f(path);
        QVERIFY(f.open(QIODevice::ReadWrite));
        QVERIFY(f.setFileTime(base.addSecs(seconds), QFileDevice::FileModificationTime));
    };

    CCheckFile check;
    check.SetInfo(path.toUtf8().constData(), 0, 0);
    QCOMPARE(check.GetFileTime(), base.toMSecsSinceEpoch());
    QCOMPARE(check.IsChanged(), 0); // the starting point is the time at SetInfo
    touch(10);
    QCOMPARE(check.IsChanged(), 1);
    QCOMPARE(check.IsChanged(), 0);
    QVERIFY(QFile::remove(path));
    QCOMPARE(check.GetFileTime(), qint64(0));
    QCOMPARE(check.IsChanged(), 1); // a vanished file counts once
    QCOMPARE(check.IsChanged(), 0);

    // Within the interval nothing is looked at.
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    CCheckFile slow;
    slow.SetInfo(CString(path), 0, 100);
    touch(20);
    QCOMPARE(slow.IsChanged(), 1); // the first call always looks
    touch(30);
    QCOMPARE(slow.IsChanged(), 0);
}

void tst_TextFile::checkFolderCount()
{
    QTemporaryDir dir;
    QVERIFY(dir.isValid());
    const QDir folder(dir.path());
    auto make = [&](const char *name) {
        QFile f(folder.filePath(QString::fromLatin1(name)));
        QVERIFY(f.open(QIODevice::WriteOnly));
    };
    make("a.dat");
    make("notes.txt");

    CCheckFile check;
    check.SetInfo(CString(dir.path()), 1, 0);
    QCOMPARE(check.IsChanged(), 1); // one record file against the initial 0
    QCOMPARE(check.IsChanged(), 0);
    make("b.txt");
    QCOMPARE(check.IsChanged(), 0);
    QVERIFY(folder.mkdir(QStringLiteral("2026.dat")));
    QCOMPARE(check.IsChanged(), 1);
}

QTEST_GUILESS_MAIN(tst_TextFile)
#include "tst_textfile.moc"
