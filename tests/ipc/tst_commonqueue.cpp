#include <CCommonQueue.h>
#include <PrintMessage.h>

#include "ipctest.h"
#include "queuerecord.h"

#include <QThread>
#include <QtTest>

#include <algorithm>
#include <cstring>
#include <vector>

static qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

// The block read at the byte offsets other processes rely on, not through the queue's structs.
struct Raw
{
    char *b;
    int size;
    template<typename T>
    T at(qint64 offset) const
    {
        T v;
        std::memcpy(&v, b + offset, sizeof v);
        return v;
    }
    qint64 slot(int i) const { return 8 + qint64(i) * (size + 12); }
    int start() const { return at<qint32>(0); }
    int end() const { return at<qint32>(4); }
    int status(int i) const { return at<quint8>(slot(i)); }
    int retries(int i) const { return at<quint8>(slot(i) + 1); }
    int timeOut(int i) const { return at<quint16>(slot(i) + 2); }
    qint64 expiry(int i) const { return at<qint64>(slot(i) + 4); }
    char *data(int i) const { return b + slot(i) + 12; }
    void expire(int i, qint64 fromNow = -1000) const
    {
        const qint64 when = now() + fromNow;
        std::memcpy(b + slot(i) + 4, &when, 8);
    }
};

// QCOMPARE on char pointers compares the strings; these compare the addresses.
static const void *addr(const char *p)
{
    return p;
}

static Raw raw(CCommonQueue &q, int size)
{
    return Raw {reinterpret_cast<char *>(q.GetQueue()), size};
}

static QStringList g_printed;
static void capturePrint(CString text)
{
    g_printed << text.text;
}

class tst_CommonQueue : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(IpcTest::useOwnTempDir(m_tmp)); }
    void cleanup();

    void layout_data();
    void layout();
    void addHeader_data();
    void addHeader();
    void ring_data();
    void ring();
    void retryCycle_data();
    void retryCycle();
    void statusSearch_data();
    void statusSearch();
    void trimming_data();
    void trimming();
    void positions_data();
    void positions();
    void badGeometry_data();
    void badGeometry();
    void printMemPos();
    void eightThreadsLoseNothing();
    void acrossProcesses_data();
    void acrossProcesses();
    void addWaitsForSegmentLock();
    void secondInitKeepsLiveQueue();

private:
    QTemporaryDir m_tmp;
    QByteArray m_key = "vantor-tst-queue";
};

void tst_CommonQueue::cleanup()
{
    IpcTest::removeSegment(QString::fromLatin1(m_key));
}

void tst_CommonQueue::layout_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("named");
    QTest::newRow("1-byte records") << 1 << 3 << false;
    QTest::newRow("odd size, no padding") << 13 << 7 << false;
    QTest::newRow("64-byte records, shared") << 64 << 5 << true;
    QTest::newRow("log-sized records") << 2048 << 4 << false;
}

void tst_CommonQueue::layout()
{
    QFETCH(int, size);
    QFETCH(int, count);
    QFETCH(bool, named);
    CCommonQueue q(size, named ? m_key.constData() : "", 0, count, 1);
    QVERIFY(q.Init());
    QUEUEMEM *block = q.GetQueue();
    QVERIFY(block);
    if (named)
        QCOMPARE(q.size(), count * (size + 12) + 8);
    QCOMPARE(q.GetMem(block), reinterpret_cast<char *>(block) + 8);
    const Raw r = raw(q, size);
    QCOMPARE(q.GetCount(), 0);
    QVERIFY(!q.Get(-1, 0, 0, nullptr));

    std::vector<char> record(static_cast<size_t>(size));
    for (int i = 0; i < count - 1; ++i) {
        QueueRecord::fill(record.data(), size, 1, i);
        int pos = -1, pos2 = -1;
        QVERIFY(q.Add(record.data(), &pos, 1000, 1, &pos2));
        QCOMPARE(pos, i);
        QCOMPARE(pos2, i);
        QCOMPARE(r.end(), i + 1);
        QCOMPARE(r.status(i), 1);
        QVERIFY(std::memcmp(r.data(i), record.data(), size_t(size)) == 0);
    }
    QCOMPARE(r.status(count - 1), 0); // nothing written past the data size
    for (int i = 0; i < count - 1; ++i) {
        int pos = -1;
        QCOMPARE(addr(q.Get(-1, 0, 0, &pos)), addr(r.data(i)));
        QCOMPARE(pos, i);
    }
}

void tst_CommonQueue::addHeader_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("timeOut");
    QTest::addColumn<int>("retry");
    QTest::addColumn<int>("retriesLeft");
    QTest::addColumn<int>("timeOutField");
    QTest::newRow("retry 0 keeps none") << 1 << 1000 << 0 << 0 << 1000;
    QTest::newRow("retry 1 keeps none") << 1 << 1000 << 1 << 0 << 1000;
    QTest::newRow("retry 3 keeps 2") << 1 << 1000 << 3 << 2 << 1000;
    QTest::newRow("retry 300 kept to 8 bits") << 1 << 1000 << 300 << 43 << 1000;
    QTest::newRow("mode 2 always 1") << 2 << 1000 << 0 << 1 << 1000;
    QTest::newRow("mode 5 behaves as 1") << 5 << 1000 << 3 << 2 << 1000;
    QTest::newRow("70000 ms kept to 16 bits") << 1 << 70000 << 1 << 0 << 4464;
}

void tst_CommonQueue::addHeader()
{
    QFETCH(int, mode);
    QFETCH(int, timeOut);
    QFETCH(int, retry);
    QFETCH(int, retriesLeft);
    QFETCH(int, timeOutField);
    CCommonQueue q(8, "", mode, 4, 1);
    char data[8] = {};
    const qint64 before = now();
    QVERIFY(q.Add(data, nullptr, timeOut, retry, nullptr));
    const qint64 after = now();
    const Raw r = raw(q, 8);
    QCOMPARE(r.status(0), 1);
    QCOMPARE(r.retries(0), retriesLeft);
    QCOMPARE(r.timeOut(0), timeOutField);
    // The first expiry takes the whole time-out, not its 16 bits.
    QVERIFY(r.expiry(0) >= before + timeOut && r.expiry(0) <= after + timeOut);
}

void tst_CommonQueue::ring_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("script"); // A adds the next record, G takes one
    QTest::addColumn<int>("countAfter");
    QTest::addColumn<QList<int>>("taken"); // by G, then by draining
    QTest::newRow("first in, first out") << 4 << "AAA" << 3 << QList<int> {0, 1, 2};
    QTest::newRow("N adds read as empty") << 4 << "AAAA" << 0 << QList<int> {};
    QTest::newRow("N+1 adds overwrite the oldest") << 4 << "AAAAA" << 1 << QList<int> {4};
    QTest::newRow("wraps round") << 3 << "AAGGAA" << 2 << QList<int> {0, 1, 2, 3};
}

void tst_CommonQueue::ring()
{
    QFETCH(int, count);
    QFETCH(QString, script);
    QFETCH(int, countAfter);
    QFETCH(QList<int>, taken);
    CCommonQueue q(16, "", 0, count, 1);
    char record[16];
    QList<int> got;
    int next = 0;
    auto take = [&]() {
        std::int32_t src, seq;
        const char *d = q.Get(-1, 0, 0, nullptr);
        if (d)
            got << (QueueRecord::check(d, 16, src, seq) ? seq : -1);
        return d != nullptr;
    };
    for (QChar c : script) {
        if (c == QLatin1Char('A')) {
            QueueRecord::fill(record, 16, 1, next++);
            QVERIFY(q.Add(record, nullptr, 1000, 1, nullptr));
        } else {
            take();
        }
    }
    QCOMPARE(q.GetCount(), countAfter);
    while (take()) { }
    QCOMPARE(got, taken);
}

void tst_CommonQueue::retryCycle_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("retry");
    QTest::addColumn<int>("timeOut");
    QTest::addColumn<int>("rearms"); // -1: without end
    QTest::addColumn<int>("rearmDelay");
    QTest::newRow("retry 1: no second chance") << 1 << 1 << 500 << 0 << 500;
    QTest::newRow("retry 3: two re-arms") << 1 << 3 << 500 << 2 << 500;
    QTest::newRow("re-arms with the 16-bit time-out") << 1 << 2 << 70000 << 1 << 4464;
    QTest::newRow("time-out 0 re-arms for 1 ms") << 1 << 3 << 0 << 2 << 1;
    QTest::newRow("mode 2 re-arms without end") << 2 << 1 << 500 << -1 << 500;
}

// The cycle of a job table: hand out, mark sent, let the answer time out, hand out again.
void tst_CommonQueue::retryCycle()
{
    QFETCH(int, mode);
    QFETCH(int, retry);
    QFETCH(int, timeOut);
    QFETCH(int, rearms);
    QFETCH(int, rearmDelay);
    CCommonQueue q(8, "", mode, 4, 1);
    char data[8] = {};
    int pos = -1;
    QVERIFY(q.Add(data, &pos, timeOut, retry, nullptr));
    const Raw r = raw(q, 8);
    for (int round = 0; round < (rearms < 0 ? 6 : rearms + 1); ++round) {
        if (rearmDelay < 100)
            r.expire(pos, 60000); // a 1-ms re-arm must not run out before it is handed out
        int got = -1;
        QCOMPARE(addr(q.Get(-1, 1, 0, &got)), addr(r.data(pos)));
        QCOMPARE(got, pos);
        QVERIFY(q.SetStatus(pos, 2, 1));
        if (timeOut > 100)
            QVERIFY(!q.Get(-1, 1, 0, nullptr)); // still waiting: nothing is ready
        r.expire(pos);
        const int retriesBefore = r.retries(pos);
        const qint64 before = now();
        const char *again = q.Get(-1, 1, 0, nullptr);
        const qint64 after = now();
        if (round == rearms) {
            QVERIFY2(!again, "spent retries: the record is freed, not handed out");
            QCOMPARE(r.status(pos), 0);
            return;
        }
        QCOMPARE(addr(again), addr(r.data(pos)));
        QCOMPARE(r.status(pos), 1);
        QCOMPARE(r.retries(pos), mode == 2 ? 1 : retriesBefore - 1);
        QVERIFY(r.expiry(pos) >= before + rearmDelay && r.expiry(pos) <= after + rearmDelay);
        QCOMPARE(r.start(), 0); // a found record stays where it is
    }
    QCOMPARE(rearms, -1);
}

void tst_CommonQueue::statusSearch_data()
{
    QTest::addColumn<int>("pos");
    QTest::addColumn<int>("absolute");
    QTest::addColumn<int>("wanted");
    QTest::addColumn<int>("slot"); // -1: nothing
    QTest::addColumn<int>("status0After");
    // Slot 0: status 2, expired, 1 retry left. Slot 1: status 3, expired, no retries left.
    // Slot 2: status 3. Slot 3: status 1. StartPos 0, EndPos 4, 6 slots.
    QTest::newRow("search for 3 re-arms nothing") << -1 << 0 << 3 << 2 << 2;
    QTest::newRow("search for 1 re-arms") << -1 << 0 << 1 << 0 << 1;
    QTest::newRow("own status is found, not re-armed") << 0 << 0 << 2 << 0 << 2;
    QTest::newRow("relative, wrapped once") << 9 << 0 << 1 << 3 << 2;
}

void tst_CommonQueue::statusSearch()
{
    QFETCH(int, pos);
    QFETCH(int, absolute);
    QFETCH(int, wanted);
    QFETCH(int, slot);
    QFETCH(int, status0After);
    CCommonQueue q(8, "", 1, 6, 1);
    char data[8] = {};
    const int retries[] = {2, 1, 1, 1};
    const int statuses[] = {2, 3, 3, 1};
    for (int i = 0; i < 4; ++i)
        QVERIFY(q.Add(data, nullptr, 10000, retries[i], nullptr) && q.SetStatus(i, statuses[i], 1));
    const Raw r = raw(q, 8);
    r.expire(0);
    r.expire(1);
    int got = -1;
    const char *d = q.Get(pos, wanted, absolute, &got);
    QCOMPARE(addr(d), addr(slot < 0 ? nullptr : r.data(slot)));
    QCOMPARE(got, slot);
    QCOMPARE(r.status(0), status0After);
    if (pos < 0 && wanted == 3)
        QCOMPARE(r.status(1), 0); // no retries left: freed on the way
}

void tst_CommonQueue::trimming_data()
{
    QTest::addColumn<QList<int>>("statuses"); // of the records before the call
    QTest::addColumn<int>("freed");           // absolute slot then set to 0
    QTest::addColumn<int>("startAfter");
    QTest::newRow("past following free records") << QList<int> {2, 0, 0, 2, 1} << 0 << 3;
    QTest::newRow("a busy first record holds back") << QList<int> {2, 2, 0, 0, 1} << 1 << 0;
    QTest::newRow("stops at EndPos") << QList<int> {2, 0, 0, 0} << 0 << 4;
}

void tst_CommonQueue::trimming()
{
    QFETCH(QList<int>, statuses);
    QFETCH(int, freed);
    QFETCH(int, startAfter);
    CCommonQueue q(8, "", 1, 8, 1);
    char data[8] = {};
    for (int i = 0; i < statuses.size(); ++i)
        QVERIFY(q.Add(data, nullptr, 10000, 1, nullptr));
    QVERIFY(q.SetStatus(0, 2, 1));
    for (int i = statuses.size() - 1; i >= 0; --i)
        QVERIFY(q.SetStatus(i, statuses[i], 1));
    QCOMPARE(raw(q, 8).start(), 0);
    QVERIFY(q.SetStatus(freed, 0, 1));
    QCOMPARE(raw(q, 8).start(), startAfter);
}

void tst_CommonQueue::positions_data()
{
    QTest::addColumn<int>("start");
    QTest::addColumn<int>("pos");
    QTest::addColumn<int>("absolute");
    QTest::addColumn<int>("slot"); // -1: refused
    // 4 slots; the start is set with Delete.
    QTest::newRow("relative, wrapped") << 2 << 3 << 0 << 1;
    QTest::newRow("relative, twice the count") << 0 << 8 << 0 << -1;
    QTest::newRow("absolute count wraps to 0") << 1 << 4 << 1 << 0;
    QTest::newRow("negative") << 0 << -1 << 1 << -1;
}

void tst_CommonQueue::positions()
{
    QFETCH(int, start);
    QFETCH(int, pos);
    QFETCH(int, absolute);
    QFETCH(int, slot);
    CCommonQueue q(8, "", 1, 4, 1);
    char data[8] = {};
    for (int i = 0; i < 4; ++i)
        QVERIFY(q.Add(data, nullptr, 10000, 1, nullptr) && q.SetStatus(i, 10 + i, 1));
    QVERIFY(q.Delete(start));
    int status = -1;
    QCOMPARE(q.GetStatus(pos, status, absolute), slot >= 0 ? TRUE : FALSE);
    QCOMPARE(status, slot >= 0 ? 10 + slot : -1);
    QCOMPARE(q.SetStatus(pos, 0x1FE, absolute), slot >= 0 ? TRUE : FALSE);
    if (slot >= 0)
        QCOMPARE(raw(q, 8).status(slot), 0xFE);

    // Emptying keeps every record byte.
    const QByteArray before(raw(q, 8).data(0) - 12, 4 * 20);
    QVERIFY(start % 2 ? q.DeleteAll() : q.Delete(-1));
    QCOMPARE(raw(q, 8).start(), 0);
    QCOMPARE(raw(q, 8).end(), 0);
    QCOMPARE(QByteArray(raw(q, 8).data(0) - 12, 4 * 20), before);
}

void tst_CommonQueue::badGeometry_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("count");
    QTest::newRow("no slots") << 8 << 0;
    QTest::newRow("negative data size") << -20 << 4;
    QTest::newRow("beyond 2 GiB") << 1 << 0x7fffffff;
}

void tst_CommonQueue::badGeometry()
{
    QFETCH(int, size);
    QFETCH(int, count);
    CCommonQueue q(size, "", 1, count, 1);
    char data[16] = {};
    QCOMPARE(q.Add(data, nullptr, 1000, 1, nullptr), FALSE);
    QVERIFY(!q.Get(-1, 1, 0, nullptr));
    // A segment of a smaller queue under the same key is not written past its end.
    QSharedMemory other(QString::fromLatin1(m_key));
    QVERIFY(other.create(64));
    CCommonQueue named(64, m_key.constData(), 0, 10, 1);
    QCOMPARE(named.Add(data, nullptr, 1000, 1, nullptr), FALSE);
}

void tst_CommonQueue::printMemPos()
{
    CCommonQueue q(8, "", 0, 10, 1);
    char data[8] = {};
    for (int i = 0; i < 7; ++i)
        q.Add(data, nullptr, 1000, 1, nullptr);
    q.Delete(3);
    const int flag = ExternPrintMessageFlag;
    ExternPrintMessageFlag = 1;
    SetPrintMessageFunction(capturePrint);
    q.PrintMemPos();
    SetPrintMessageFunction(nullptr);
    ExternPrintMessageFlag = flag;
    QCOMPARE(g_printed, QStringList {QStringLiteral("StartPos = 3, EndPos = 7\r\n")});
}

// The message log's use: one private locked ring, many threads adding, one taking.
void tst_CommonQueue::eightThreadsLoseNothing()
{
    const int threads = 8, perThread = 5000, size = 2048, count = 10000;
    CCommonQueue q(size, "", 0, count, 1);
    std::vector<std::unique_ptr<QThread>> adders;
    for (int t = 0; t < threads; ++t) {
        adders.emplace_back(QThread::create([&q, t]() {
            std::vector<char> record(size);
            for (int i = 0; i < perThread; ++i) {
                while (q.GetCount() >= count - 4 * threads) // a full ring overwrites
                    QThread::yieldCurrentThread();
                QueueRecord::fill(record.data(), size, t, i);
                q.Add(record.data(), nullptr, 10000, 1, nullptr);
            }
        }));
        adders.back()->start();
    }
    std::vector<int> next(threads, 0);
    int total = 0, bad = 0;
    for (bool more = true; more;) {
        more = std::any_of(adders.begin(), adders.end(), [](auto &t) { return !t->isFinished(); });
        while (const char *d = q.Get(-1, 0, 0, nullptr)) {
            std::int32_t src, seq;
            if (!QueueRecord::check(d, size, src, seq) || src < 0 || src >= threads ||
                seq != next[size_t(src)]++)
                ++bad;
            ++total;
        }
        QThread::yieldCurrentThread();
    }
    QCOMPARE(bad, 0);
    QCOMPARE(total, threads * perThread);
}

void tst_CommonQueue::acrossProcesses_data()
{
    QTest::addColumn<QString>("peerDoes");
    QTest::addColumn<int>("size");
    // 64 slots: the ring wraps many times.
    QTest::newRow("peer adds 64-byte records") << "add" << 64;
    QTest::newRow("peer takes 2048-byte records") << "take" << 2048;
}

void tst_CommonQueue::acrossProcesses()
{
    QFETCH(QString, peerDoes);
    QFETCH(int, size);
    const int count = 64, n = 3000;
    CCommonQueue q(size, m_key.constData(), 0, count, 1);
    q.Init();
    auto peer = IpcTest::startPeer({peerDoes, QString::fromLatin1(m_key), QString::number(size),
                                    QString::number(count), QString::number(n)});
    QCOMPARE(IpcTest::readLine(*peer), QByteArray("READY"));
    std::vector<char> record(static_cast<size_t>(size));
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < n && !timer.hasExpired(60000);) {
        const char *d = nullptr;
        if (peerDoes == QLatin1String("take") && q.GetCount() < count - 8) {
            QueueRecord::fill(record.data(), size, 2, i++);
            QVERIFY(q.Add(record.data(), nullptr, 10000, 1, nullptr));
        } else if (peerDoes == QLatin1String("add") && (d = q.Get(-1, 0, 0, nullptr))) {
            std::int32_t src, seq;
            QVERIFY(QueueRecord::check(d, size, src, seq));
            QCOMPARE(seq, i++);
        } else {
            QThread::yieldCurrentThread();
        }
    }
    QCOMPARE(IpcTest::finish(*peer), QByteArray("DONE 3000"));
    QCOMPARE(peer->exitCode(), 0);
}

void tst_CommonQueue::addWaitsForSegmentLock()
{
    CCommonQueue q(64, m_key.constData(), 0, 64, 1);
    q.Init();
    auto peer =
        IpcTest::startPeer({QStringLiteral("add"), QString::fromLatin1(m_key), QStringLiteral("64"),
                            QStringLiteral("64"), QStringLiteral("10"), QStringLiteral("wait")});
    QCOMPARE(IpcTest::readLine(*peer), QByteArray("READY"));
    // While this process holds the segment lock, the peer's Add must not get in.
    QVERIFY(q.lock());
    peer->write("go\n");
    QVERIFY(!peer->waitForFinished(500));
    QCOMPARE(raw(q, 64).end(), 0);
    QVERIFY(q.unlock());
    QCOMPARE(IpcTest::finish(*peer), QByteArray("DONE 10"));
    QCOMPARE(q.GetCount(), 10);
}

void tst_CommonQueue::secondInitKeepsLiveQueue()
{
    CCommonQueue q(32, m_key.constData(), 0, 16, 1);
    QVERIFY(q.Init());
    char record[32];
    for (int i = 0; i < 3; ++i) {
        QueueRecord::fill(record, 32, 2, i);
        QVERIFY(q.Add(record, nullptr, 1000, 1, nullptr));
    }
    auto peer = IpcTest::startPeer({QStringLiteral("init"), QString::fromLatin1(m_key),
                                    QStringLiteral("32"), QStringLiteral("16")});
    QCOMPARE(IpcTest::finish(*peer), QByteArray("COUNT 3 FIRST 0 WHOLE 1"));
    QCOMPARE(raw(q, 32).start(), 1); // the peer took the first record
    QCOMPARE(q.GetCount(), 2);
}

QTEST_GUILESS_MAIN(tst_CommonQueue)
#include "tst_commonqueue.moc"
