// CTextFile, TextStreamEx and CCheckFile.
#include "CCheckFile.h"
#include "CTextFile.h"
#include "TextStreamEx.h"
#include "VantorStrings.h"

#include <QtTest>

namespace {

/// Reads every field of the current line into a buffer of `size` bytes. A write past the buffer,
/// or a buffer not emptied by the read that finds no more fields, shows as a "<bad buffer>" field.
QStringList readFields(CTextFile &f, int size = 200)
{
    QStringList fields;
    QByteArray buffer(size + 1, '#');
    while (f.GetString(buffer.data(), size) && fields.size() < 50)
        fields << QString::fromUtf8(buffer.constData());
    if (buffer.at(size) != '#' || buffer.at(0) != '\0')
        fields << QStringLiteral("<bad buffer>");
    return fields;
}

/// The next line as "<kind>:<text>".
QString nextLine(CTextFile &f)
{
    const int kind = f.GetOneLine();
    return QString::number(kind) + QLatin1Char(':') + f.GetRemainData().text;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

} // namespace

class tst_TextFile : public QObject
{
    Q_OBJECT
    CString m_language;

private slots:
    void initTestCase() { m_language = VantorStrings::Language; }
    void cleanup() { VantorStrings::Language = m_language; }

    void lines_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QStringList>("lines"); // "<kind>:<text>" up to and excluding the end
        QTest::addColumn<int>("lineCount");
        QTest::addColumn<int>("columnCount");
        auto row = [](const char *name, const QByteArray &data, const QStringList &lines,
                      int lineCount, int columnCount) {
            QTest::newRow(name) << data << lines << lineCount << columnCount;
        };
        row("comments, sections, blank", ";comment\r\n[Section]\r\na,b,c\r\n\r\n",
            {"1:", "1:", "0:a,b,c", "0:"}, 2, 3);
        row("two line feeds end one line", "a\n\nb", {"0:a", "0:b"}, 2, 1);
        row("three line feeds", "a\n\n\nb", {"0:a", "0:", "0:b"}, 3, 1);
        row("blank first line", "\n;c\nx\n", {"0:", "1:", "0:x"}, 2, 1);
        row("no final line end", "x\r\nlast", {"0:x", "0:last"}, 2, 1);
        row("comment at the very end", "x\n;tail", {"0:x"}, 1, 1);
        row("NUL ends the text", QByteArray("a\0b\nc", 5), {"0:a"}, 1, 1);
        row("over-long line cut", QByteArray(25000, 'x') + "\nnext",
            {"0:" + QString(19999, QLatin1Char('x')), "0:next"}, 2, 1);
        row("empty", "", {}, 0, 0);
    }

    void lines()
    {
        QFETCH(QByteArray, data);
        QFETCH(QStringList, lines);
        QFETCH(int, lineCount);
        QFETCH(int, columnCount);
        CTextFile f;
        f.Set(data.data(), data.size());
        QCOMPARE(f.GetLineCount(), lineCount);
        QCOMPARE(f.GetColumnCount(), columnCount);
        QCOMPARE(f.GetPos(true), 0); // counting rewinds to the top
        QStringList got;
        for (QString line; !(line = nextLine(f)).startsWith('2') && got.size() <= lines.size();)
            got << line;
        QCOMPARE(got, lines);
        QCOMPARE(f.GetOneLine(), 2);
    }

    void fields_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QStringList>("fields");
        QTest::addColumn<char>("divide");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("count"); // for SetOneLine; -1: the whole line
        auto row = [](const char *name, const QByteArray &line, const QStringList &fields,
                      char divide = ',', int size = 200, int count = -1) {
            QTest::newRow(name) << line << fields << divide << size << count;
        };
        row("empty field", "a,,b", {"a", "", "b"});
        row("back-quote escapes", "`x,`^,a``b", {",x", "^", "a`b"});
        row("caret is LF", "a^b", {"a\nb"});
        row("two carets are CR LF", "a^^b", {"a\r\nb"});
        row("spreadsheet text cell", "=\"0123\",x", {"0123", "x"});
        row("other equals signs stay", "a=b,c=", {"a=b", "c="});
        row("quotes read as spaces", "\"q\",r\"s", {"q", "r s"});
        row("trimmed", "  lead,\ttrail  ", {"lead", "trail"});
        row("blanks after last delimiter", "a,  ", {"a"});
        row("space divide, runs are one", "a   b  c", {"a", "b", "c"}, ' ');
        row("semicolon divide", "1,5;2", {"1,5", "2"}, ';');
        row("over-long field cut", "abcdef,g", {"abc", "g"}, ',', 4);
        // SetOneLine's count includes the terminator and is clamped to the text and the buffer.
        row("count cuts the line", "abc", {"ab"}, ',', 200, 3);
        row("count beyond the text", "abc", {"abc"}, ',', 200, 100000);
        row("zero count", "abc", {}, ',', 200, 0);
        row("negative count", "abc", {}, ',', 200, -5);
        row("count beyond the line buffer", QByteArray(30000, 'y'),
            {QString(19999, QLatin1Char('y'))}, ',', 30000, 30001);
    }

    void fields()
    {
        QFETCH(QByteArray, line);
        QFETCH(QStringList, fields);
        QFETCH(char, divide);
        QFETCH(int, size);
        QFETCH(int, count);
        CTextFile f;
        f.SetDivideChar(divide);
        f.SetOneLine(CString("old,line"), 9);
        f.Skip(); // a new line starts at its first field
        f.SetOneLine(CString(line.constData()), count == -1 ? line.size() + 1 : count);
        QCOMPARE(readFields(f, size), fields);
    }

    void numbers()
    {
        // Each getter takes exactly one field, so the values line up only if none skips one.
        const char line[] = "123456789012,,65,-1234567890123,2.5,123A,0021,21,123a,,9";
        CTextFile f;
        f.SetOneLine(CString(line), sizeof line);
        auto take = [&f](auto getter, auto value) {
            (f.*getter)(&value);
            return QString::number(value);
        };
        QStringList got;
        got << take(&CTextFile::GetInt, -1) << take(&CTextFile::GetInt, -1)
            << take(&CTextFile::GetChar, char(0)) << take(&CTextFile::GetLong, 0L)
            << take(&CTextFile::GetFloat, 0.f);
        // A DI address is word × 16 + hex bit, a short field all word; lower case counts 0.
        for (int i = 0; i < 5; ++i)
            got << take(&CTextFile::GetAddressDI, 99u);
        QCOMPARE(got << take(&CTextFile::GetInt, -1),
                 QStringList({"12345678", "0", "65", "-1234567890123", "2.5", "1978", "33", "336",
                              "1968", "0", "9"})); // int sees 8 digits
    }

    void columnCountOfText_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("columns");
        QTest::newRow("empty") << QByteArray("") << 1;
        QTest::newRow("korean") << QByteArray("가,나,다") << 3;
        QTest::newRow("ends inside a character") << QByteArray("a,\xEA\xB0") << 2;
        QTest::newRow("lead byte last") << QByteArray("a,b,\xEA") << 3;
    }

    void columnCountOfText()
    {
        QFETCH(QByteArray, text);
        QFETCH(int, columns);
        // An exact-size heap copy, so that a read past the terminator is caught under ASan.
        QScopedArrayPointer<char> exact(qstrdup(text.constData()));
        QCOMPARE(CTextFile().GetColumnCount(exact.get()), columns);
    }

    void makeString_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("escape");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("escaped") << QByteArray("a,b\r\nc") << 20 << true << QByteArray("a`b^^c");
        QTest::newRow("not escaped") << QByteArray("a,b\nc") << 20 << false << QByteArray("a,b\nc");
        QTest::newRow("trailing spaces cut")
            << QByteArray("ab   ") << 20 << true << QByteArray("ab");
        QTest::newRow("cut at size - 1") << QByteArray("abcdef") << 4 << true << QByteArray("abc");
        QTest::newRow("character cut whole") << QByteArray("a수") << 4 << true << QByteArray("a");
        QTest::newRow("character fits") << QByteArray("a수") << 5 << true << QByteArray("a수");
        QTest::newRow("escape chars left alone")
            << QByteArray("x`^") << 20 << true << QByteArray("x`^");
    }

    void makeString()
    {
        QFETCH(QByteArray, source);
        QFETCH(int, size);
        QFETCH(bool, escape);
        QFETCH(QByteArray, expected);
        QByteArray dest(size + 1, '#');
        CTextFile::MakeString(dest.data(), source.data(), size, escape);
        QCOMPARE(QByteArray(dest.constData()), expected);
        QCOMPARE(dest.at(size), '#');
        QCOMPARE(CTextFile::MakeString(source.data(), size, escape, true).text,
                 QString::fromUtf8("=\"" + expected + "\""));
    }

    void csvRoundTrip()
    {
        VantorStrings::Language = "Korean";
        const QStringList cells {"plain",     "a,b,c", "two\r\nlines",
                                 "one\nline", "0123",  QString::fromUtf8("수온, 12.5℃"),
                                 QString(),   "last"};
        QCOMPARE(CTextFile::MakeString(CString("a,b")).text, QStringLiteral("=\"a`b\""));
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("table.csv"));
        {
            QFile file(path);
            QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Text));
            QStringList line;
            for (const QString &cell : cells)
                line << CTextFile::MakeString(CString(cell)).text;
            const QString row = line.join(QLatin1Char(',')) + QStringLiteral("\r\n");
            TextStreamEx(&file) << "; written cell by cell\n[Readings]\n" << row << row;
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

    void decodesByLanguage_data()
    {
        QTest::addColumn<QByteArray>("language");
        QTest::addColumn<QString>("encoding");
        QTest::addColumn<QString>("text");
        QTest::newRow("korean") << QByteArray("Korean") << "EUC-KR"
                                << QString::fromUtf8("온도,습도\n23.5,45");
        QTest::newRow("chinese") << QByteArray("Chinese") << "GB18030"
                                 << QString::fromUtf8("温度,湿度\n23.5,45");
    }

    void decodesByLanguage()
    {
        QFETCH(QByteArray, language);
        QFETCH(QString, encoding);
        QFETCH(QString, text);
        // iconv, not Qt, produces the file's bytes.
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("encoded.csv"));
        QProcess iconv;
        iconv.setStandardOutputFile(path);
        iconv.start(QStringLiteral("iconv"), {"-f", "UTF-8", "-t", encoding});
        if (!iconv.waitForStarted())
            QSKIP("iconv is not installed");
        iconv.write(text.toUtf8());
        iconv.closeWriteChannel();
        QVERIFY(iconv.waitForFinished());
        QCOMPARE(iconv.exitCode(), 0);

        auto read = [&path](const char *language) {
            VantorStrings::Language = language;
            CTextFile f(path);
            QStringList lines;
            while (f.GetOneLine() == 0)
                lines << readFields(f).join(QLatin1Char(','));
            return lines;
        };
        const QStringList expected = text.split(QLatin1Char('\n'));
        QCOMPARE(read(language.constData()), expected);
        QVERIFY(read("English").value(0) != expected.first());
    }

    void openFileKeepsState()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("t.txt"));
        writeFile(path, "one\ntwo\nthree\n");
        CTextFile f;
        QCOMPARE(f.OpenFile(path), 1);
        QCOMPARE(nextLine(f), QStringLiteral("0:one"));
        QCOMPARE(f.OpenFile(dir.filePath(QStringLiteral("missing.txt"))), 0);
        QCOMPARE(nextLine(f), QStringLiteral("0:two")); // the old text, from where it was
        QCOMPARE(f.OpenFile(path), 1);
        QCOMPARE(nextLine(f), QStringLiteral("0:three")); // deliberately keeps the old position
        f.Reset();
        QCOMPARE(nextLine(f), QStringLiteral("0:one"));
        f.DeleteTextFile();
        QCOMPARE(f.GetOneLine(), 2);
    }

    void checkFile()
    {
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("watched.txt"));
        writeFile(path, "");
        const QDateTime base = QFileInfo(path).lastModified();
        auto touch = [&](int seconds) {
            QFile f(path);
            QVERIFY(f.open(QIODevice::ReadWrite));
            QVERIFY(f.setFileTime(base.addSecs(seconds), QFileDevice::FileModificationTime));
        };
        // Two checks in a row, as first * 10 + second.
        auto twice = [](CCheckFile &c) {
            const int first = c.IsChanged();
            return first * 10 + c.IsChanged();
        };

        CCheckFile check;
        check.SetInfo(path.toUtf8().constData(), 0, 0);
        QCOMPARE(check.GetFileTime(), base.toMSecsSinceEpoch());
        QCOMPARE(check.IsChanged(), 0); // the starting point is the time at SetInfo
        touch(10);
        QCOMPARE(twice(check), 10);
        QVERIFY(QFile::remove(path));
        QCOMPARE(check.GetFileTime(), qint64(0));
        QCOMPARE(twice(check), 10); // a vanished file counts once

        // Within the interval nothing is looked at; the first call always looks.
        writeFile(path, "");
        CCheckFile slow;
        slow.SetInfo(CString(path), 0, 100);
        touch(20);
        QCOMPARE(slow.IsChanged(), 1);
        touch(30);
        QCOMPARE(slow.IsChanged(), 0);

        // A folder counts its record (.dat) entries, files and folders alike.
        writeFile(dir.filePath(QStringLiteral("a.dat")), "");
        CCheckFile folder;
        folder.SetInfo(CString(dir.path()), 1, 0);
        QCOMPARE(twice(folder), 10); // one record file against the initial 0
        writeFile(dir.filePath(QStringLiteral("b.txt")), "");
        QCOMPARE(folder.IsChanged(), 0);
        QVERIFY(QDir(dir.path()).mkdir(QStringLiteral("2026.dat")));
        QCOMPARE(folder.IsChanged(), 1);
    }
};

QTEST_GUILESS_MAIN(tst_TextFile)
#include "tst_textfile.moc"
