// SPDX-License-Identifier: MIT
#include <CFile.h>

#include <QtTest>

#include <cstring>
#include <fstream>
#include <functional>

#include <sys/resource.h>
#include <unistd.h>

// How one record is written (empty: the row's bytes are put there raw) and read back.
struct Record
{
    std::function<int(CFile &)> write;
    std::function<bool(CFile &)> readBack;
};
Q_DECLARE_METATYPE(Record)

// Reading gives back `v` and returns `n`.
template<typename T>
static Record value(T v, int n)
{
    return {[v](CFile &f) { return f.Write(v); },
            [v, n](CFile &f) {
                T back {};
                return f.Read(back) == n && !std::memcmp(&back, &v, sizeof v);
            }};
}

// A string read back as `text` with the count `n`; `raw` leaves the row's bytes in the file.
static Record string(const char *text, int n, bool raw = false)
{
    const CString s(text);
    return {raw ? nullptr : std::function<int(CFile &)>([s](CFile &f) { return f.Write(s); }),
            [s, n](CFile &f) {
                CString back("old");
                return f.Read(back) == n && back == s;
            }};
}

static void row(const char *name, const Record &r, int written, const char *hex)
{
    QTest::newRow(name) << r << written << QByteArray(hex);
}

class tst_CFile : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

private slots:
    void initTestCase()
    {
        QVERIFY(m_dir.isValid());
#if !defined(__SANITIZE_ADDRESS__)
        // Address space capped at 256 MiB above what is in use: a read that believed a corrupt
        // length field would fail to allocate.
        rlimit cap;
        unsigned long long pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        QVERIFY(pages && getrlimit(RLIMIT_AS, &cap) == 0);
        cap.rlim_cur = pages * sysconf(_SC_PAGESIZE) + (256u << 20);
        QCOMPARE(setrlimit(RLIMIT_AS, &cap), 0);
#endif
    }

    void records_data()
    {
        QTest::addColumn<Record>("record");
        QTest::addColumn<int>("written");
        QTest::addColumn<QByteArray>("hex");
        row("char", value(char(-1), 1), 1, "ff");
        row("unsigned char", value((unsigned char)0xC8, 1), 1, "c8");
        row("bool", value(true, 1), 1, "01");
        row("short", value(short(-2), 2), 2, "feff");
        row("unsigned short", value((unsigned short)0xBEEF, 2), 2, "efbe");
        row("int", value(-3, 4), 4, "fdffffff");
        row("unsigned int", value(0xDEADBEEFu, 4), 4, "efbeadde");
        row("long is 4 bytes", value(-4L, 4), 4, "fcffffff");
        row("unsigned long is 4 bytes", value(0x12345678UL, 4), 4, "78563412");
        row("float", value(1.5f, 4), 4, "0000c03f");
        row("long long", value(-5LL, 8), 8, "fbffffffffffffff");
        row("unsigned long long", value(0x0123456789ABCDEFULL, 8), 8, "efcdab8967452301");
        row("double", value(2.5, 8), 8, "0000000000000440");
        row("rect", value(CRect(1, 2, 3, 4), 16), 16, "01000000020000000300000004000000");
        row("empty string", string("", 0), 0, "00000000");
        row("string", string("ab", 2), 2, "020000006162");
        row("korean is 6 bytes", string("한글", 6), 6, "06000000ed959ceab880");
        const Record fixed {
            [](CFile &f) { return f.Write(CString("abcdef"), 3) + f.Write(CString("xy"), 4); },
            nullptr};
        row("fixed width cuts and pads", fixed, 7, "61626378790000");
        // Corrupt counts: only what the file holds is read, and nothing huge is allocated.
        row("huge length, 20-byte file", string("0123456789abcdef", 0x7FFFFFF0, true), 20,
            "f0ffff7f30313233343536373839616263646566");
        row("negative length", string("", -1, true), 8, "ffffffff30313233");
        row("embedded NUL cuts", string("a", 4, true), 8, "0400000061006263");
        row("truncated length field", string("", 5, true), 1, "05");
    }

    void records()
    {
        QFETCH(Record, record);
        QFETCH(int, written);
        QFETCH(QByteArray, hex);
        CFile f;
        QVERIFY(f.Open(CString(), 0));
        QByteArray raw = QByteArray::fromHex(hex);
        QCOMPARE(record.write ? record.write(f) : f.Write(raw.data(), raw.size()), written);
        // Once opened without a name, the object stays a memory file and keeps its bytes.
        f.Close();
        const QString name = m_dir.filePath(QStringLiteral("data.bin"));
        QVERIFY(f.Open(CString(name), 1) && !QFile::exists(name));
        f.SetLength(0); // nothing in memory
        QVERIFY(f.Seek(0));
        raw.fill('\0', raw.size() + 1);
        QCOMPARE(f.Read(raw.data(), raw.size()), raw.size() - 1);
        QCOMPARE(raw.chopped(1).toHex(), hex);
        QVERIFY(f.Seek(0));
        QVERIFY(!record.readBack || record.readBack(f));
    }

    void flushReachesTheDisk()
    {
        // What Flush hands to the system is visible through a second handle before Close.
        const QString name = m_dir.filePath(QStringLiteral("flushed.bin"));
        CFile f;
        QVERIFY(f.Open(CString(name), CFile::modeWrite));
        QCOMPARE(f.Write(CString("abc")), 3);
        f.Flush();
        QFile second(name);
        QVERIFY(second.open(QIODevice::ReadOnly));
        QCOMPARE(second.readAll().toHex(), QByteArray("03000000616263"));
    }

    void openFlags_data()
    {
        QTest::addColumn<uint>("flags");
        QTest::addColumn<bool>("exists");
        QTest::addColumn<QByteArray>("after"); // empty: no file
        const QByteArray old(100, 'x'), changed("1234xx");
        // Opening for writing never truncates: the bytes after the first four stay.
        QTest::newRow("write") << uint(CFile::modeWrite) << true << changed;
        QTest::newRow("read-write keeps") << uint(CFile::modeReadWrite) << true << changed;
        QTest::newRow("create|write keeps") << uint(CFile::modeCreate | 1) << true << changed;
        QTest::newRow("read only") << uint(CFile::modeRead | CFile::typeBinary) << true << old;
        QTest::newRow("create alone is read only") << uint(CFile::modeCreate) << true << old;
        QTest::newRow("missing, read only") << 0u << false << QByteArray();
        QTest::newRow("missing, write creates") << 1u << false << QByteArray("1234\0\0", 6);
    }

    void openFlags()
    {
        QFETCH(uint, flags);
        QFETCH(bool, exists);
        QFETCH(QByteArray, after);
        QFile disk(m_dir.filePath(QStringLiteral("f.bin")));
        QVERIFY(!exists || (disk.open(QIODevice::WriteOnly) && disk.write(QByteArray(100, 'x'))));
        disk.close();
        QByteArray name = disk.fileName().toLatin1();
        CFile f;
        CString s("kept");
        const bool opened = f.Open(name.data(), flags);
        QCOMPARE(opened, exists || flags);
        if (f.Write(0x34333231) > 0)
            f.SetLength(6);
        QVERIFY(opened || (f.Read(s) == 0 && s.IsEmpty())); // a closed file reads nothing
        f.Close();
        QCOMPARE(disk.exists(), !after.isNull());
        QCOMPARE(disk.open(QIODevice::ReadOnly) ? disk.readAll() : QByteArray(), after);
        disk.close();
        DeleteFileW(name.constData());
        QVERIFY(!disk.exists());
    }
};

QTEST_APPLESS_MAIN(tst_CFile)
#include "tst_cfile.moc"
