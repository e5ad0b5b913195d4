// SPDX-License-Identifier: MIT
// CTextFile, TextStreamEx and CCheckFile.
#include "CCheckFile.h"
#include "CTextFile.h"
#include "CTextFile_p.h"
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

/// The fields of every data line of a file, joined by '|'; comments and sections skipped.
QStringList readFile(const QString &path)
{
    CTextFile f(path);
    QStringList lines;
    for (int kind; (kind = f.GetOneLine()) != 2;) {
        if (kind == 0)
            lines << readFields(f).join(QLatin1Char('|'));
    }
    return lines;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

/// Lets the tests see the text and the line buffer.
class TextFileView : public CTextFile
{
public:
    QByteArray text() const { return m_Data; }
    /// The line and the bytes up to the first nonzero one after its terminator ("" if none).
    QByteArray line() const
    {
        int dirty = m_nLineLength + 1;
        while (dirty < LineBufferSize && m_szLine[dirty] == 0)
            ++dirty;
        return QByteArray(m_szLine, m_nLineLength) +
            "|after:" + QByteArray(m_szLine + m_nLineLength + 1, dirty - m_nLineLength - 1) +
            (dirty < LineBufferSize ? "<left over>" : "");
    }
};

/**
 * Everything a reader sees of the text of `f`, starting from a long line set by SetOneLine:
 * for each line its kind, the data cursor and the line buffer; for each field the result, all
 * `size` bytes of the buffer and the field position.
 */
QByteArray transcript(TextFileView &f, int size)
{
    QByteArray out = f.text() + "\n";
    f.SetOneLine(CString(QByteArray(300, 'z').constData()), 301);
    QByteArray buffer(size, '#');
    for (int kind, lines = 0; (kind = f.GetOneLine()) != 2 && lines < 20; ++lines) {
        out += QByteArray::number(kind) + " at " + QByteArray::number(f.GetPos(true)) + ": " +
            f.line() + "\n";
        for (int result = 1, fields = 0; result && fields < 50; ++fields) {
            result = f.GetString(buffer.data(), size);
            out += "  " + QByteArray::number(result) + " [" + buffer.toPercentEncoding() + "] " +
                QByteArray::number(f.GetPos(false)) + "\n";
        }
    }
    return out;
}

} // namespace

class tst_TextFile : public QObject
{
    Q_OBJECT
    CString m_language;

private slots:
    void initTestCase() { m_language = VantorStrings::Language; }
    void cleanup() { VantorStrings::Language = m_language; }

    void read_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<QStringList>("lines"); // "<kind>:<fields joined by |>" up to the end
        QTest::addColumn<int>("lineCount");
        QTest::addColumn<int>("columnCount"); // -1: not looked at
        QTest::addColumn<char>("divide");
        QTest::addColumn<int>("size"); // of the field buffer
        auto row = [](const char *name, const QByteArray &data, const QStringList &lines,
                      int lineCount, int columnCount, char divide = ',', int size = 200) {
            QTest::newRow(name) << data << lines << lineCount << columnCount << divide << size;
        };
        row("comments, sections, blank", ";comment\r\n[Section]\r\na,b,c\r\n\r\n",
            {"1:", "1:", "0:a|b|c", "0:"}, 2, 3);
        row("a pair of line feeds is one end", "a\n\n\nb", {"0:a", "0:", "0:b"}, 3, 1);
        row("blank first line", "\n;c\nx\n", {"0:", "1:", "0:x"}, 2, 1);
        row("comment at the very end", "x\n;tail", {"0:x"}, 1, 1);
        row("NUL ends the text", QByteArray("a\0b\nc", 5), {"0:a"}, 1, 1);
        row("NUL ends a long line", QByteArray("abcdefg,\0ijklmnopq\nr", 20), {"0:abcdefg"}, 1, 2);
        row("over-long line cut", QByteArray(25000, 'x') + "\nnext",
            {"0:" + QString(19999, QLatin1Char('x')), "0:next"}, 2, 1, ',', 30000);
        row("empty", "", {}, 0, 0);
        row("back-quote escapes, empty field", "`x,,`^,a``b", {"0:,x||^|a`b"}, 1, 4);
        row("caret is LF, two are CR LF", "a^b^^c", {"0:a\nb\r\nc"}, 1, 1);
        row("spreadsheet text cell; other equals signs stay", "=\"0123\",a=b,c=", {"0:0123|a=b|c="},
            1, 3);
        row("quotes read as spaces", "\"q\",r\"s", {"0:q|r s"}, 1, 2);
        row("trimmed, blanks after last delimiter", "  lead,\ttrail  ,  ", {"0:lead|trail"}, 1, -1);
        row("space divide, runs are one", "a   b  c", {"0:a|b|c"}, 1, -1, ' ');
        row("over-long field cut", "abcdef,g", {"0:abc|g"}, 1, 2, ',', 4);
        // Cuts keep characters whole: a UTF-8 sequence, or a double-byte pair (B0 A1).
        row("field cut before a syllable", "a가나,b", {"0:a가|b"}, 1, 2, ',', 6);
        row("line cut before a syllable", QByteArray(19998, 'x') + "가\nnext",
            {"0:" + QString(19998, QLatin1Char('x')), "0:next"}, 2, 1, ',', 30000);
        row("double-byte pairs are two bytes", "\xB0\xA1,ab\xB0\xA1,c",
            {"0:" + QString::fromUtf8("\xB0\xA1") + "|ab|c"}, 1, 3, ',', 4);
    }

    void read()
    {
        QFETCH(QByteArray, data);
        QFETCH(QStringList, lines);
        QFETCH(int, lineCount);
        QFETCH(int, columnCount);
        QFETCH(char, divide);
        QFETCH(int, size);
        CTextFile f;
        f.SetDivideChar(divide);
        f.Set(data.data(), data.size());
        QCOMPARE(f.GetLineCount(), lineCount);
        if (columnCount >= 0)
            QCOMPARE(f.GetColumnCount(), columnCount);
        QCOMPARE(f.GetPos(true), 0); // counting rewinds to the top
        QStringList got;
        for (int kind; (kind = f.GetOneLine()) != 2 && got.size() <= lines.size();)
            got << QString::number(kind) + QLatin1Char(':') + readFields(f, size).join('|');
        QCOMPARE(got, lines);
    }

    void shortcutsAgree_data()
    {
        QTest::addColumn<QByteArray>("data");
        QTest::addColumn<char>("divide");
        QTest::addColumn<int>("size"); // of the field buffer
        const QByteArray x19997(19997, 'x');
        auto row = [](const char *name, const QByteArray &data, char divide = ',', int size = 8) {
            QTest::newRow(name) << data << divide << size;
        };
        // Fields at the edge of the buffer: a lead byte before the divide char reaches one byte
        // beyond the field, a character the divide char continues up to three.
        row("fields of 5 to 8 bytes", "abcde,abcdef,abcdefg,abcdefgh,x");
        row("lead byte at the field's end", "abcde\xB0,abcd\xB0,abcdef\xB0");
        row("syllable at the field's end", "abcd가,abc가,ab가,a가나");
        row("divide char inside a UTF-8 sequence", "ab\xF0\x9F\x98\x80,abc\xEA\xB0\x80", '\x9F', 6);
        row("double-byte divide char", "\xB0\xA1\xB0x\xB0\xB0", '\xB0', 4);
        row("buffers of 1 to 3 bytes", "a,bc,,d", ',', 2);
        row("blanks around fields", " \t a b  ,\t,  ,x\t , y");
        row("space divide", "  a  b \tc ", ' ');
        row("escapes as the last byte of a field", "ab`,ab^,ab=,ab\",x=\"y\",`^,``,a`");
        row("escape as the last byte of the line", "abc,de`");
        row("caret divide with escapes", "a`^b^c``^", '^');
        row("quote divide after an equals sign", "a=\"b=\"=", '"');
        // Lines at the edge of the line buffer.
        row("line of 19998, 19999 and 20000 bytes",
            x19997 + "a\n" + x19997 + "ab\n" + x19997 + "abc\n", ',', 30000);
        row("lead byte ends a line of 19999 bytes", x19997 + "a\xB0\nnext", ',', 30000);
        row("syllable crosses the end of the buffer", x19997 + "가\n", ',', 30000);
        // Line ends, as the text stream translates them in a file.
        row("CR LF, lone CR, CR CR LF, LF LF", "a,b\r\nc\rd\r\r\ne\n\nf\r");
        row("last line without a line end", "a,b\nlast,line");
        row("NUL inside a long line", QByteArray("abc\0defghijklmnop\nq", 19));
        row("comments, sections and blank lines", ";c,d\r\n[s]\n\r\n\nx,y\n;end");
        row("only a line end", "\r\n");
        row("Korean text in UTF-8", "온도,습도\r\n23.5,45\r\n");
        row("Korean text after ASCII lines", "a,b\r\nc,d\r\ne,f\r\n온도,x\r\n");
        row("double-byte text", "\xBF\xC2\xB5\xB5,\xBD\xC0\xB5\xB5\r\n1,2");
    }

    void shortcutsAgree()
    {
        // The shortcuts (a file taken as it is, lines and fields copied in one piece) give what
        // the text stream and the character-by-character reading give.
        QFETCH(QByteArray, data);
        QFETCH(char, divide);
        QFETCH(int, size);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("table.csv"));
        writeFile(path, data);
        for (const char *language : {"Korean", "English"}) {
            VantorStrings::Language = language;
            // Read from memory, then from the file in blocks of 2 and 7 bytes and in the
            // default blocks, with the shortcuts on and off.
            for (const int block : {-1, 2, 7, 0}) {
                QByteArray seen[2]; // [shortcuts on]
                for (int on = 0; on < 2; ++on) {
                    VantorPrivate::setTextFileShortcuts(on);
                    VantorPrivate::setTextFileReadBlock(block);
                    TextFileView f;
                    f.SetDivideChar(divide);
                    if (block < 0)
                        f.Set(data.data(), data.size());
                    else
                        QVERIFY(f.OpenFile(path));
                    seen[on] = transcript(f, size);
                }
                VantorPrivate::setTextFileShortcuts(true);
                VantorPrivate::setTextFileReadBlock(0);
                QVERIFY2(!seen[1].contains("<left over>"), seen[1]);
                QCOMPARE(seen[1], seen[0]);
            }
        }
    }

    void setOneLineCount()
    {
        // The count includes the terminator and is clamped to the text and to the line buffer;
        // each new line starts at its first field.
        CTextFile f;
        QStringList got;
        for (const int count : {3, 100000, 0, -5}) {
            f.SetOneLine(CString("abc"), count);
            got << readFields(f).join('|');
        }
        f.SetOneLine(CString(QByteArray(30000, 'y').constData()), 30001);
        QCOMPARE(got << readFields(f, 30000).join('|'),
                 QStringList({"ab", "abc", "", "", QString(19999, QLatin1Char('y'))}));
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

    void columnCountOfText()
    {
        QVector<int> got;
        for (const char *text :
             {"", "가,나,다", "a,\xEA\xB0", "a,b,\xEA", "é,b", "\xB0\xA1,b", ",a"}) {
            // An exact-size heap copy, so that a read past the terminator is caught under ASan.
            QScopedArrayPointer<char> exact(qstrdup(text));
            got << CTextFile().GetColumnCount(exact.get());
        }
        // "a,\xEA\xB0" and "a,b,\xEA" end inside a character.
        QCOMPARE(got, QVector<int>({1, 3, 2, 3, 2, 2, 2}));
    }

    void makeString_data()
    {
        QTest::addColumn<QByteArray>("source");
        QTest::addColumn<int>("size");
        QTest::addColumn<bool>("escape");
        QTest::addColumn<QByteArray>("expected");
        QTest::newRow("escaped, trailing spaces cut, ` and ^ left alone")
            << QByteArray("x`^,b\r\nc  ") << 20 << true << QByteArray("x`^`b^^c");
        QTest::newRow("cut at size - 1") << QByteArray("abcdef") << 4 << true << QByteArray("abc");
        QTest::newRow("character cut whole") << QByteArray("a수") << 4 << true << QByteArray("a");
        QTest::newRow("double-byte pair fits")
            << QByteArray("a\xB0\xA1") << 4 << false << QByteArray("a\xB0\xA1");
        QTest::newRow("double-byte pair cut whole")
            << QByteArray("a\xB0\xA1") << 3 << false << QByteArray("a");
        // Unlike the free MakeString, a cell loses every space at its end.
        QTest::newRow("all spaces go") << QByteArray("   ") << 4 << false << QByteArray("");
        QTest::newRow("spaces before a cut letter go")
            << QByteArray("x  yz") << 4 << false << QByteArray("x");
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
        QCOMPARE(readFile(path), QStringList({cells.join('|'), cells.join('|')}));
    }

    void decodesByLanguage()
    {
        QTemporaryDir dir; // iconv, not Qt, produces the file's bytes
        const QString utf8 = dir.filePath("utf8.csv"), path = dir.filePath("encoded.csv");
        const char *cases[][3] = {{"Korean", "EUC-KR", "온도,습도\n23.5,45"},
                                  {"Chinese", "GB18030", "温度,湿度\n23.5,45"}};
        for (const auto &c : cases) {
            writeFile(utf8, c[2]);
            const int exitCode =
                QProcess::execute("iconv", {"-f", "UTF-8", "-t", c[1], "-o", path, utf8});
            if (exitCode == -2)
                QSKIP("iconv is not installed");
            QCOMPARE(exitCode, 0);
            VantorStrings::Language = c[0];
            const QStringList expected = QString::fromUtf8(c[2]).replace(',', '|').split('\n');
            QCOMPARE(readFile(path), expected);
            VantorStrings::Language = "English";
            QVERIFY(readFile(path).value(0) != expected.first());
        }
    }

    void streamBytesByLanguage_data()
    {
        QTest::addColumn<QString>("language");
        QTest::addColumn<QString>("encoding"); // iconv's name for the bytes on disk
        QTest::addColumn<QString>("text");
        // Thousands of repeats with an odd byte count each: characters straddle every buffer
        // boundary of the stream and of anything between it and the file.
        QTest::newRow("Korean, EUC-KR")
            << "Korean"
            << "EUC-KR" << QString::fromUtf8("a온도,습도;\n").repeated(4000);
        QTest::newRow("Chinese, GB18030 with four-byte characters")
            << "Chinese"
            << "GB18030" << QString::fromUtf8("温度😀,湿度;\n").repeated(4000);
        QTest::newRow("English, UTF-8") << "English"
                                        << "UTF-8" << QString::fromUtf8("é온😀,\n").repeated(4000);
    }
    void streamBytesByLanguage()
    {
        QFETCH(QString, language);
        QFETCH(QString, encoding);
        QFETCH(QString, text);
        QTemporaryDir dir; // iconv, not Qt, says what the bytes must be
        const QString utf8 = dir.filePath("utf8.txt"), expected = dir.filePath("expected.txt");
        writeFile(utf8, text.toUtf8());
        const int exitCode =
            QProcess::execute("iconv", {"-f", "UTF-8", "-t", encoding, "-o", expected, utf8});
        if (exitCode == -2)
            QSKIP("iconv is not installed");
        QCOMPARE(exitCode, 0);

        VantorStrings::Language = language.toLatin1();
        const QString path = dir.filePath("written.txt");
        {
            QFile file(path);
            TextStreamEx out(&file); // made before the file is opened, as ported code may do
            QVERIFY(file.open(QIODevice::WriteOnly));
            out << text; // the stream alone must get every byte to the file
        }
        QFile written(path), want(expected);
        QVERIFY(written.open(QIODevice::ReadOnly) && want.open(QIODevice::ReadOnly));
        QVERIFY(written.readAll() == want.readAll());

        QFile file(expected);
        QVERIFY(file.open(QIODevice::ReadOnly));
        TextStreamEx in(&file);
        const QString head = in.read(7);
        QCOMPARE(head + in.readAll(), text);
        QVERIFY(in.atEnd());
    }

    void byteOrderMarkWinsOverLanguage_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        const QString text = QString::fromUtf8("온도,23.5");
        QTest::newRow("UTF-8") << QByteArray("\xEF\xBB\xBF") + text.toUtf8();
        QByteArray utf16("\xFF\xFE");
        for (QChar c : text)
            utf16 += char(c.unicode() & 0xFF) + QByteArray(1, char(c.unicode() >> 8));
        QTest::newRow("UTF-16LE") << utf16;
    }
    void byteOrderMarkWinsOverLanguage()
    {
        QFETCH(QByteArray, bytes);
        QTemporaryDir dir;
        const QString path = dir.filePath(QStringLiteral("marked.csv"));
        writeFile(path, bytes);
        VantorStrings::Language = "Korean";
        QCOMPARE(readFile(path), QStringList(QString::fromUtf8("온도|23.5")));
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
        QCOMPARE(check.IsChanged(), 0); // the starting point is the time at SetInfo
        touch(10);
        QCOMPARE(twice(check), 10);
        QVERIFY(QFile::remove(path));
        QCOMPARE(twice(check), 10); // a vanished file counts once

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
