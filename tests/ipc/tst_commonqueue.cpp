#include <CCommonQueue.h>
#include <PrintMessage.h>

#include "ipctest.h"
#include "queuerecord.h"

#include <QtTest>

#include <algorithm>
#include <vector>

static const auto now = [] { return QDateTime::currentMSecsSinceEpoch(); };
// QCOMPARE on char pointers compares the strings; this compares the addresses.
static const auto addr = [](const char *p) -> const void * { return p; };

// The block read at the byte offsets other processes rely on, not through the queue's structs.
struct Raw
{
    CCommonQueue &q;
    int size;
    char *b() const { return reinterpret_cast<char *>(q.GetQueue()); }
    qint64 slot(int i) const { return 8 + qint64(i) * (size + 12); }
    int start() const { return qFromUnaligned<qint32>(b()); }
    int end() const { return qFromUnaligned<qint32>(b() + 4); }
    int status(int i) const { return qFromUnaligned<quint8>(b() + slot(i)); }
    int retries(int i) const { return qFromUnaligned<quint8>(b() + slot(i) + 1); }
    int timeOut(int i) const { return qFromUnaligned<quint16>(b() + slot(i) + 2); }
    qint64 expiry(int i) const { return qFromUnaligned<qint64>(b() + slot(i) + 4); }
    const void *data(int i) const { return b() + slot(i) + 12; }
    void expire(int i, qint64 in = -1000) const { qToUnaligned(now() + in, b() + slot(i) + 4); }
};

class tst_CommonQueue : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(IpcTest::useOwnTempDir(m_tmp)); }
    void cleanup() { IpcTest::removeSegment(QString::fromLatin1(m_key)); }

    void ring_data();
    void ring();
    void jobCycle_data();
    void jobCycle();
    void lookup_data();
    void lookup();
    void trimming_data();
    void trimming();
    void badGeometry_data();
    void badGeometry();
    void eightThreadsLoseNothing();
    void acrossProcesses_data();
    void acrossProcesses();

private:
    QTemporaryDir m_tmp;
    QByteArray m_key = "vantor-tst-queue";
};

void tst_CommonQueue::ring_data()
{
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("count");
    QTest::addColumn<QString>("script");   // A adds the next record, G takes one
    QTest::addColumn<QList<int>>("taken"); // by G, then by draining
    QTest::newRow("1-byte records") << 1 << 3 << "AA" << QList<int> {0, 1};
    QTest::newRow("odd size, no padding") << 13 << 7 << "AAAAAA" << QList<int> {0, 1, 2, 3, 4, 5};
    QTest::newRow("64-byte records") << 64 << 5 << "AAAA" << QList<int> {0, 1, 2, 3};
    QTest::newRow("log-sized records") << 2048 << 4 << "AAA" << QList<int> {0, 1, 2};
    QTest::newRow("N adds read as empty") << 16 << 4 << "AAAA" << QList<int> {};
    QTest::newRow("N+1 adds overwrite the oldest") << 16 << 4 << "AAAAA" << QList<int> {4};
    QTest::newRow("wraps round") << 16 << 3 << "AAGGAA" << QList<int> {0, 1, 2, 3};
}

void tst_CommonQueue::ring()
{
    QFETCH(int, size);
    QFETCH(int, count);
    QFETCH(QString, script);
    QFETCH(QList<int>, taken);
    CCommonQueue q(size, "", 0, count, 1);
    const Raw r {q, size};
    QCOMPARE(q.GetMem(q.GetQueue()), r.b() + 8);
    QList<QByteArray> added;
    QList<int> got;
    auto take = [&]() {
        int pos = -1;
        const char *d = q.Get(-1, 0, 0, &pos);
        if (d) // which record came back, found by its bytes; -2 when not read in place
            got << (addr(d) == r.data(pos) ? added.indexOf(QByteArray(d, size)) : -2);
        return d != nullptr;
    };
    for (QChar c : script) {
        if (c == QLatin1Char('G')) {
            take();
            continue;
        }
        QByteArray record(size, '\0');
        QueueRecord::fill(record.data(), size, 1, added.size());
        const int slot = added.size() % count;
        int pos = -1, pos2 = -1;
        QVERIFY(q.Add(record.data(), &pos, 1000, 1, &pos2));
        QCOMPARE(pos, slot);
        QCOMPARE(pos2, slot);
        QCOMPARE(r.end(), (slot + 1) % count);
        QCOMPARE(r.status(slot), 1);
        QCOMPARE(QByteArray(r.b() + r.slot(slot) + 12, size), record);
        added << record;
    }
    if (added.size() < count)
        QCOMPARE(r.status(count - 1), 0); // nothing written past the data size
    QCOMPARE(q.GetCount(), taken.size() - got.size());
    while (take()) { }
    QCOMPARE(got, taken);
}

void tst_CommonQueue::jobCycle_data()
{
    QTest::addColumn<int>("mode");
    QTest::addColumn<int>("timeOut");
    QTest::addColumn<int>("retry");
    QTest::addColumn<int>("retriesLeft"); // after Add; each time-out spends one, in mode 2 none
    QTest::addColumn<int>("timeOutField");
    QTest::newRow("retry 0 keeps none") << 1 << 500 << 0 << 0 << 500;
    QTest::newRow("retry 1: no second chance") << 1 << 500 << 1 << 0 << 500;
    QTest::newRow("retry 3: two re-arms") << 1 << 500 << 3 << 2 << 500;
    QTest::newRow("retry 300 kept to 8 bits") << 1 << 500 << 300 << 43 << 500;
    QTest::newRow("mode 5 behaves as 1") << 5 << 500 << 3 << 2 << 500;
    QTest::newRow("70000 ms kept to 16 bits") << 1 << 70000 << 2 << 1 << 4464;
    QTest::newRow("time-out 0 re-arms for 1 ms") << 1 << 0 << 3 << 2 << 0;
    QTest::newRow("mode 2 keeps 1, re-arms without end") << 2 << 500 << 0 << 1 << 500;
}

// The cycle of a job table: hand out, mark sent, let the answer time out, hand out again.
void tst_CommonQueue::jobCycle()
{
    QFETCH(int, mode);
    QFETCH(int, timeOut);
    QFETCH(int, retry);
    QFETCH(int, retriesLeft);
    QFETCH(int, timeOutField);
    CCommonQueue q(8, "", mode, 4, 1);
    char data[8] = {};
    const qint64 added = now();
    QVERIFY(q.Add(data, nullptr, timeOut, retry, nullptr));
    const Raw r {q, 8};
    QCOMPARE(r.status(0), 1);
    QCOMPARE(r.retries(0), retriesLeft);
    QCOMPARE(r.timeOut(0), timeOutField);
    // The first expiry takes the whole time-out, not its 16 bits.
    QVERIFY(r.expiry(0) >= added + timeOut && r.expiry(0) <= now() + timeOut);
    const int rounds = mode == 2 ? 6 : retriesLeft + 1, delay = timeOutField ? timeOutField : 1;
    for (int round = 0; round < rounds; ++round) {
        if (timeOut < 100)
            r.expire(0, 60000); // a 1-ms re-arm must not run out before it is handed out
        QCOMPARE(addr(q.Get(-1, 1, 0, nullptr)), r.data(0));
        QVERIFY(q.SetStatus(0, 2, 1));
        if (timeOut > 100)
            QVERIFY(!q.Get(-1, 1, 0, nullptr)); // still waiting: nothing is ready
        r.expire(0);
        const qint64 before = now();
        // Spent retries: the record is freed, not handed out again.
        const bool spent = mode != 2 && round == rounds - 1;
        QCOMPARE(addr(q.Get(-1, 1, 0, nullptr)), spent ? nullptr : r.data(0));
        QCOMPARE(r.status(0), spent ? 0 : 1);
        QCOMPARE(r.retries(0), mode == 2 ? 1 : std::max(retriesLeft - round - 1, 0));
        QVERIFY(spent || (r.expiry(0) >= before + delay && r.expiry(0) <= now() + delay));
        QCOMPARE(r.start(), 0); // a found record stays where it is
    }
}

void tst_CommonQueue::lookup_data()
{
    QTest::addColumn<int>("pos");
    QTest::addColumn<int>("absolute");
    QTest::addColumn<int>("wanted");
    QTest::addColumn<int>("found"); // slot Get returns, -1: none
    QTest::addColumn<int>("at");    // slot GetStatus and SetStatus reach, -1: refused
    QTest::addColumn<int>("status1After");
    // StartPos 1, EndPos 5, 6 slots. Slot 0: status 1. Slot 1: status 2, expired, 1 retry left.
    // Slot 2: status 3, expired, no retries left. Slot 3: status 3. Slot 4: status 1.
    QTest::newRow("search for 3 re-arms nothing") << -1 << 0 << 3 << 3 << 0 << 2;
    QTest::newRow("search for 1 re-arms") << -1 << 0 << 1 << 1 << 0 << 1;
    QTest::newRow("negative position refused, search re-arms") << -1 << 1 << 4 << -1 << -1 << 1;
    QTest::newRow("own status is found, not re-armed") << 0 << 0 << 2 << 1 << 1 << 2;
    QTest::newRow("relative to StartPos, wrapped once") << 9 << 0 << 1 << 4 << 4 << 2;
    QTest::newRow("relative, twice the count") << 12 << 0 << 1 << -1 << -1 << 2;
    QTest::newRow("absolute count wraps to 0") << 6 << 1 << 1 << 0 << 0 << 2;
}

void tst_CommonQueue::lookup()
{
    QFETCH(int, pos);
    QFETCH(int, absolute);
    QFETCH(int, wanted);
    QFETCH(int, found);
    QFETCH(int, at);
    QFETCH(int, status1After);
    CCommonQueue q(8, "", 1, 6, 1);
    char data[8] = {};
    const int retries[] = {1, 2, 1, 1, 1}, statuses[] = {1, 2, 3, 3, 1};
    for (int i = 0; i < 5; ++i)
        QVERIFY(q.Add(data, nullptr, 10000, retries[i], nullptr) && q.SetStatus(i, statuses[i], 1));
    QVERIFY(q.Delete(1));
    const Raw r {q, 8};
    r.expire(1);
    r.expire(2);
    int status = -1, got = -1;
    QCOMPARE(q.GetStatus(pos, status, absolute), at >= 0 ? TRUE : FALSE);
    QCOMPARE(status, at >= 0 ? statuses[at] : -1);
    QCOMPARE(addr(q.Get(pos, wanted, absolute, &got)), found < 0 ? nullptr : r.data(found));
    QCOMPARE(got, found);
    QCOMPARE(r.status(1), status1After);
    if (pos < 0 && found != 1)
        QCOMPARE(r.status(2), 0); // passed on the way with no retries left: freed
    QCOMPARE(q.SetStatus(pos, 0x1FE, absolute), at >= 0 ? TRUE : FALSE);
    if (at >= 0)
        QCOMPARE(r.status(at), 0xFE);
    const QByteArray bytes(r.b() + 8, 6 * 20);
    QVERIFY(found % 2 ? q.DeleteAll() : q.Delete(-1));
    QCOMPARE(r.start(), 0);
    QCOMPARE(r.end(), 0);
    QCOMPARE(QByteArray(r.b() + 8, 6 * 20), bytes); // emptying keeps every record byte
}

void tst_CommonQueue::trimming_data()
{
    QTest::addColumn<QList<int>>("statuses"); // of the records before the call
    QTest::addColumn<int>("freed");           // absolute slot then set to 0
    QTest::addColumn<QString>("positions");   // as PrintMemPos logs them after
    QTest::newRow("past following free records")
        << QList<int> {2, 0, 0, 2, 1} << 0 << "StartPos = 3, EndPos = 5";
    QTest::newRow("a busy first record holds back")
        << QList<int> {2, 2, 0, 0, 1} << 1 << "StartPos = 0, EndPos = 5";
    QTest::newRow("stops at EndPos") << QList<int> {2, 0, 0, 0} << 0 << "StartPos = 4, EndPos = 4";
}

void tst_CommonQueue::trimming()
{
    QFETCH(QList<int>, statuses);
    QFETCH(int, freed);
    QFETCH(QString, positions);
    CCommonQueue q(8, "", 1, 8, 1);
    char data[8] = {};
    for (int i = 0; i < statuses.size(); ++i) // the busy first record holds them all
        QVERIFY(q.Add(data, nullptr, 10000, 1, nullptr) && q.SetStatus(i, statuses[i], 1));
    QVERIFY(q.SetStatus(freed, 0, 1));
    static QStringList printed;
    printed.clear();
    SetPrintMessageFunction([](CString text) { printed << text.text; });
    q.PrintMemPos();
    SetPrintMessageFunction(nullptr);
    QCOMPARE(printed, QStringList {positions + QLatin1String("\r\n")});
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
    for (bool more = true; more; QThread::yieldCurrentThread()) {
        more = std::any_of(adders.begin(), adders.end(), [](auto &t) { return !t->isFinished(); });
        for (const char *d; (d = q.Get(-1, 0, 0, nullptr)); ++total) {
            std::int32_t src, seq;
            bad += !QueueRecord::check(d, size, src, seq) || src < 0 || src >= threads ||
                seq != next[size_t(src)]++;
        }
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

// The peer calls Init() as well: a second process's Init() must leave a live queue alone.
void tst_CommonQueue::acrossProcesses()
{
    QFETCH(QString, peerDoes);
    QFETCH(int, size);
    const int count = 64, n = 3000;
    const bool peerAdds = peerDoes == QLatin1String("add");
    CCommonQueue q(size, m_key.constData(), 0, count, 1);
    QVERIFY(q.Init());
    QCOMPARE(q.size(), count * (size + 12) + 8);
    std::vector<char> record(static_cast<size_t>(size));
    int i = 0;
    auto add = [&]() {
        QueueRecord::fill(record.data(), size, 2, i++);
        return q.Add(record.data(), nullptr, 10000, 1, nullptr);
    };
    while (!peerAdds && i < 3) // before the peer's Init()
        QVERIFY(add());
    QStringList args {peerDoes, QString::fromLatin1(m_key), QString::number(size),
                      QString::number(count), QString::number(n)};
    auto peer = IpcTest::startPeer(peerAdds ? args << QStringLiteral("wait") : args);
    QCOMPARE(IpcTest::readLine(*peer), QByteArray("READY"));
    if (peerAdds) { // while this process holds the segment lock, the peer's Add must not get in
        QVERIFY(q.lock());
        peer->write("go\n");
        QVERIFY(peer->waitForBytesWritten(10000));
        QThread::msleep(500);
        QCOMPARE((Raw {q, size}.end()), 0);
        QVERIFY(q.unlock());
    }
    for (QDeadlineTimer limit(60000); i < n && !limit.hasExpired(); QThread::yieldCurrentThread()) {
        while (!peerAdds && i < n && q.GetCount() < count - 8)
            QVERIFY(add());
        for (const char *d; peerAdds && (d = q.Get(-1, 0, 0, nullptr)); ++i) {
            std::int32_t src, seq;
            QVERIFY(QueueRecord::check(d, size, src, seq));
            QCOMPARE(seq, i);
        }
    }
    QCOMPARE(IpcTest::finish(*peer), QByteArray("DONE 3000"));
    QCOMPARE(peer->exitCode(), 0);
}

QTEST_GUILESS_MAIN(tst_CommonQueue)
#include "tst_commonqueue.moc"
