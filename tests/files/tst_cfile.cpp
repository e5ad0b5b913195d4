#include <CFile.h>

#include <QtTest>

#include <cstring>
#include <functional>

#include <sys/resource.h>
#include <unistd.h>

// One typed value: how to write it, and whether reading `count` bytes gives it back.
struct Value
{
    std::function<int(CFile &)> write;
    std::function<bool(CFile &, int count)> readBack;
};
Q_DECLARE_METATYPE(Value)

template<typename T>
static Value value(T v)
{
    return {[v](CFile &f) { return f.Write(v); },
            [v](CFile &f, int count) {
                T back {};
                return f.Read(back) == count && back == v;
            }};
}

class tst_CFile : public QObject
{
    Q_OBJECT

private slots:
    void init() { QVERIFY(m_dir.isValid()); }
    void valueEncoding_data();
    void valueEncoding();
    void openFlags_data();
    void openFlags();
    void missingAndMemoryFiles();
    void strings_data();
    void strings();
    void corruptStringLength_data();
    void corruptStringLength();
    void fixedWidthStringAndHeader();

private:
    QString path(const char *name) const { return m_dir.filePath(QLatin1String(name)); }
    void writeFile(const char *name, const QByteArray &content)
    {
        QFile disk(path(name));
        QVERIFY(disk.open(QIODevice::WriteOnly));
        disk.write(content);
    }
    QTemporaryDir m_dir;
};

void tst_CFile::valueEncoding_data()
{
    QTest::addColumn<Value>("value");
    QTest::addColumn<QByteArray>("hex");
    QTest::newRow("char") << value(char(-1)) << QByteArray("ff");
    QTest::newRow("unsigned char") << value((unsigned char)0xFE) << QByteArray("fe");
    QTest::newRow("bool") << value(true) << QByteArray("01");
    QTest::newRow("short") << value(short(-2)) << QByteArray("feff");
    QTest::newRow("unsigned short") << value((unsigned short)0xBEEF) << QByteArray("efbe");
    QTest::newRow("int") << value(-3) << QByteArray("fdffffff");
    QTest::newRow("unsigned int") << value(0xDEADBEEFu) << QByteArray("efbeadde");
    QTest::newRow("long is 4 bytes") << value(-4L) << QByteArray("fcffffff");
    QTest::newRow("unsigned long is 4 bytes") << value(0x12345678UL) << QByteArray("78563412");
    QTest::newRow("float") << value(1.5f) << QByteArray("0000c03f");
    QTest::newRow("long long") << value(-5LL) << QByteArray("fbffffffffffffff");
    QTest::newRow("unsigned long long")
        << value(0x0102030405060708ULL) << QByteArray("0807060504030201");
    QTest::newRow("double") << value(2.5) << QByteArray("0000000000000440");
    CRect rect;
    rect.SetRect(1, 2, 3, 4);
    const Value rectValue {[rect](CFile &f) { return f.Write(rect); },
                           [](CFile &f, int count) {
                               CRect back;
                               return f.Read(back) == count && back.left == 1 && back.top == 2 &&
                                   back.right == 3 && back.bottom == 4;
                           }};
    QTest::newRow("rect") << rectValue << QByteArray("01000000020000000300000004000000");
}

void tst_CFile::valueEncoding()
{
    QFETCH(Value, value);
    QFETCH(QByteArray, hex);
    const QByteArray expected = QByteArray::fromHex(hex);
    CFile f;
    QVERIFY(f.Open(CString(), 0));
    QCOMPARE(value.write(f), expected.size());
    QVERIFY(f.Seek(0));
    QByteArray raw(expected.size() + 1, '\0');
    QCOMPARE(f.Read(raw.data(), raw.size()), expected.size());
    QCOMPARE(raw.left(expected.size()).toHex(), hex);
    QVERIFY(f.Seek(0));
    QVERIFY(value.readBack(f, expected.size()));
}

void tst_CFile::openFlags_data()
{
    QTest::addColumn<uint>("flags");
    QTest::addColumn<bool>("writable");
    QTest::newRow("write") << uint(CFile::modeWrite) << true;
    QTest::newRow("read-write") << uint(CFile::modeReadWrite) << true;
    QTest::newRow("create|write does not truncate")
        << uint(CFile::modeCreate | CFile::modeWrite) << true;
    QTest::newRow("read only") << uint(CFile::modeRead | CFile::typeBinary) << false;
    QTest::newRow("create alone is read only") << uint(CFile::modeCreate) << false;
}

void tst_CFile::openFlags()
{
    QFETCH(uint, flags);
    QFETCH(bool, writable);
    const QByteArray original(100, 'x');
    writeFile("existing.bin", original);
    CFile f;
    QByteArray name = path("existing.bin").toLatin1();
    QVERIFY(f.Open(name.data(), flags));
    QCOMPARE(f.Write(0x34333231) > 0, writable);
    f.Close();
    QFile disk(path("existing.bin"));
    QVERIFY(disk.open(QIODevice::ReadOnly));
    QCOMPARE(disk.readAll(), writable ? QByteArray("1234") + original.mid(4) : original);
}

void tst_CFile::missingAndMemoryFiles()
{
    QByteArray name = path("missing.bin").toLatin1();
    CFile disk;
    QVERIFY(!disk.Open(name.data(), 0));
    CString s("kept");
    QCOMPARE(disk.Read(s), 0);
    QVERIFY(s.IsEmpty());
    QVERIFY(disk.Open(name.data(), 1)); // created
    disk.Write(1LL);
    disk.SetLength(0);
    QCOMPARE(disk.Size(), qint64(0));

    // Once opened without a name, an object stays a memory file and keeps its bytes.
    CFile mem;
    QVERIFY(mem.Open(CString(""), 0));
    QCOMPARE(mem.Write(CString("abc")), 3);
    mem.Close();
    QVERIFY(mem.Open(CString(path("data.bin")), 1));
    QVERIFY(!QFile::exists(path("data.bin")));
    mem.SetLength(0);
    QCOMPARE(mem.Size(), qint64(7));
    QCOMPARE(mem.Read(s), 3);
    QCOMPARE(s.text, QStringLiteral("abc"));

    DeleteFileW(name.constData());
    QVERIFY(!QFile::exists(path("missing.bin")));
}

void tst_CFile::strings_data()
{
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<QByteArray>("hex");
    QTest::newRow("empty") << QByteArray() << QByteArray("00000000");
    QTest::newRow("ascii") << QByteArray("ab") << QByteArray("020000006162");
    QTest::newRow("korean is 6 bytes") << QByteArray("한글") << QByteArray("06000000ed959ceab880");
}

void tst_CFile::strings()
{
    QFETCH(QByteArray, utf8);
    QFETCH(QByteArray, hex);
    CFile f;
    QVERIFY(f.Open(CString(), 0));
    QCOMPARE(f.Write(CString(utf8.constData())), utf8.size());
    QVERIFY(f.Seek(0));
    QByteArray raw(int(f.Size()), '\0');
    f.Read(raw.data(), raw.size());
    QCOMPARE(raw.toHex(), hex);
    QVERIFY(f.Seek(0));
    CString back("old");
    QCOMPARE(f.Read(back), utf8.size());
    QCOMPARE(back.text, QString::fromUtf8(utf8));
}

void tst_CFile::corruptStringLength_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("returned");
    QTest::addColumn<QString>("text");
    const QByteArray tail("0123456789abcdef");
    QTest::newRow("huge length, 20-byte file")
        << QByteArray::fromHex("f0ffff7f") + tail << 0x7FFFFFF0 << QString::fromLatin1(tail);
    QTest::newRow("negative length") << QByteArray::fromHex("ffffffff") + tail << -1 << QString();
    QTest::newRow("embedded NUL cuts")
        << QByteArray::fromHex("0400000061006263") << 4 << QStringLiteral("a");
    QTest::newRow("truncated length field") << QByteArray::fromHex("05") << 5 << QString();
}

void tst_CFile::corruptStringLength()
{
    QFETCH(QByteArray, content);
    QFETCH(int, returned);
    QFETCH(QString, text);
    writeFile("corrupt.bin", content);
    CFile f;
    QVERIFY(f.Open(CString(path("corrupt.bin")), 0));
    CString s("old");
#if !defined(__SANITIZE_ADDRESS__)
    // With the address space capped at 256 MiB above what is in use, a read that believed the
    // length field would fail to allocate.
    rlimit saved;
    QCOMPARE(getrlimit(RLIMIT_AS, &saved), 0);
    QFile statm(QStringLiteral("/proc/self/statm"));
    QVERIFY(statm.open(QIODevice::ReadOnly));
    rlimit capped = saved;
    capped.rlim_cur =
        statm.readAll().split(' ').value(0).toULongLong() * sysconf(_SC_PAGESIZE) + (256u << 20);
    QCOMPARE(setrlimit(RLIMIT_AS, &capped), 0);
#endif
    const int n = f.Read(s);
#if !defined(__SANITIZE_ADDRESS__)
    setrlimit(RLIMIT_AS, &saved);
#endif
    QCOMPARE(n, returned);
    QCOMPARE(s.text, text);
}

void tst_CFile::fixedWidthStringAndHeader()
{
    CFile f;
    QVERIFY(f.Open(CString(), 0));
    QCOMPARE(f.Write(CString("abcdef"), 3), 3);
    QCOMPARE(f.Write(CString("xy"), 4), 4); // padded with NULs
    FILEHEADER h;
    std::memset(&h, 0xAA, sizeof h);
    InitFileHeader(&h);
    QCOMPARE(f.Write(&h, sizeof h), 16);
    QVERIFY(f.Seek(0));
    QByteArray raw(int(f.Size()), '\0');
    f.Read(raw.data(), raw.size());
    QCOMPARE(raw.toHex(),
             QByteArray("6162637879000031"
                        "2e3000000000000000000000000000"));
}

QTEST_APPLESS_MAIN(tst_CFile)
#include "tst_cfile.moc"
