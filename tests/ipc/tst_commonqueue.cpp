// SPDX-License-Identifier: MIT
#include <CCommonQueue.h>

#include "ipctest.h"
#include "queuerecord.h"

#include <QtTest>

#include <algorithm>
#include <vector>

static const auto now = [] { return QDateTime::currentMSecsSinceEpoch(); };
static char zeros[16]; // an empty record
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

    QTemporaryDir m_tmp;
    QByteArray m_key = "vantor-tst-queue";

private slots:
    void initTestCase() { QVERIFY(IpcTest::useOwnTempDir(m_tmp)); }
    void cleanup() { IpcTest::removeSegment(QString::fromLatin1(m_key)); }

    void ring_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("count");
        QTest::addColumn<QString>("script");   // A adds the next record, G takes one
        QTest::addColumn<QList<int>>("taken"); // records taken by G, then by draining
        QTest::newRow("odd size, no padding")
            << 13 << 7 << "AAAAAA" << QList<int> {0, 1, 2, 3, 4, 5};
        QTest::newRow("N adds read as empty") << 16 << 4 << "AAAA" << QList<int> {};
        QTest::newRow("N+1 log-sized adds overwrite the oldest")
            << 2048 << 4 << "AAAAA" << QList<int> {4};
        QTest::newRow("1-byte records wrap round") << 1 << 3 << "AAGGAA" << QList<int> {0, 1, 2, 3};
    }

    void ring()
    {
        QFETCH(int, size);
        QFETCH(int, count);
        QFETCH(QString, script);
        QFETCH(QList<int>, taken);
        CCommonQueue q(size, "", CCommonQueue::FifoMode, count, CCommonQueue::LockAdds);
        const Raw r {q, size};
        QCOMPARE(q.GetMem(q.GetQueue()), r.b() + 8);
        QList<QByteArray> added;
        QList<int> got;
        // The script, the count it leaves (C), then draining.
        for (QChar c : script + QLatin1Char('C') + QString(count, QLatin1Char('G'))) {
            QByteArray record(size, char('a' + added.size()));
            const int slot = added.size() % count;
            int pos = -1, pos2 = -1;
            if (c == QLatin1Char('C')) {
                QCOMPARE(q.GetCount(), taken.size() - got.size());
            } else if (c == QLatin1Char('G')) {
                // Which record came back, found by its bytes; -2 when not read in place.
                if (const char *d = q.Get(-1, 0, 0, &pos))
                    got << (addr(d) == r.data(pos) ? added.indexOf(QByteArray(d, size)) : -2);
            } else {
                QVERIFY(q.Add(record.data(), &pos, 1000, 1, &pos2));
                QCOMPARE(QList<int>({pos, pos2, r.end(), r.status(slot)}),
                         QList<int>({slot, slot, (slot + 1) % count, 1}));
                QCOMPARE(QByteArray(r.b() + r.slot(slot) + 12, size), record);
                added << record;
            }
        }
        if (added.size() < count)
            QCOMPARE(r.status(count - 1), 0); // nothing written past the data size
        QCOMPARE(got, taken);
    }

    void jobCycle_data()
    {
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("timeOut");
        QTest::addColumn<int>("retry");
        // After Add: retries left (each time-out spends one, in mode 2 none), the time-out field.
        QTest::addColumn<int>("retriesLeft");
        QTest::addColumn<int>("timeOutField");
        QTest::newRow("retry 0 keeps none") << 1 << 500 << 0 << 0 << 500;
        QTest::newRow("retry 300 kept to 8 bits") << 1 << 500 << 300 << 43 << 500;
        QTest::newRow("70000 ms kept to 16 bits") << 1 << 70000 << 2 << 1 << 4464;
        QTest::newRow("time-out 0 re-arms for 1 ms") << 1 << 0 << 3 << 2 << 0;
        QTest::newRow("mode 2 keeps 1, re-arms without end") << 2 << 500 << 0 << 1 << 500;
    }

    // The cycle of a job table: hand out, mark sent, let the answer time out, hand out again.
    void jobCycle()
    {
        QFETCH(int, mode);
        QFETCH(int, timeOut);
        QFETCH(int, retry);
        QFETCH(int, retriesLeft);
        QFETCH(int, timeOutField);
        CCommonQueue q(8, "", mode, 4, 1);
        const qint64 added = now();
        QVERIFY(q.Add(zeros, nullptr, timeOut, retry, nullptr));
        const Raw r {q, 8};
        QCOMPARE(QList<int>({r.status(0), r.retries(0), r.timeOut(0)}),
                 QList<int>({1, retriesLeft, timeOutField}));
        // The first expiry takes the whole time-out, not its 16 bits.
        QVERIFY(r.expiry(0) >= added + timeOut && r.expiry(0) <= now() + timeOut);
        const int rounds = mode == 2 ? 6 : retriesLeft + 1, delay = timeOutField ? timeOutField : 1;
        for (int round = 0; round < rounds; ++round) {
            r.expire(0, 60000); // a 1-ms re-arm must not run out before it is handed out
            QCOMPARE(addr(q.Get(-1, 1, 0, nullptr)), r.data(0));
            QVERIFY(q.SetStatus(0, 2, 1));
            QVERIFY(!q.Get(-1, 1, 0, nullptr)); // still waiting: nothing is ready
            r.expire(0);
            const qint64 before = now();
            // Spent retries: the record is freed, not handed out again. A found record stays
            // where it is.
            const bool spent = mode != 2 && round == rounds - 1;
            QCOMPARE(addr(q.Get(-1, 1, 0, nullptr)), spent ? nullptr : r.data(0));
            QCOMPARE(QList<int>({r.status(0), r.retries(0), r.start()}),
                     QList<int>(
                         {spent ? 0 : 1, mode == 2 ? 1 : std::max(retriesLeft - round - 1, 0), 0}));
            QVERIFY(spent || (r.expiry(0) >= before + delay && r.expiry(0) <= now() + delay));
        }
    }

    void lookup_data()
    {
        // StartPos 1, EndPos 5, 6 slots. Slot 0: status 1. Slot 1: status 2, expired, 1 retry
        // left. Slot 2: status 3, expired, no retries left. Slot 3: status 3. Slot 4: status 1.
        // A search frees slot 2 on the way: its retries are spent.
        QTest::addColumn<int>("pos");
        QTest::addColumn<int>("absolute");
        QTest::addColumn<int>("wanted"); // the status searched for
        QTest::addColumn<int>("found");  // the slot Get returns, -1 for none
        QTest::addColumn<int>("at");     // the slot GetStatus and SetStatus reach, -1 when refused
        QTest::addColumn<int>("status1After");
        QTest::addColumn<int>("status2After");
        QTest::newRow("search for 3 re-arms nothing") << -1 << 0 << 3 << 3 << 0 << 2 << 0;
        QTest::newRow("search for 1 re-arms; absolute -1 refused")
            << -1 << 1 << 1 << 1 << -1 << 1 << 3;
        QTest::newRow("own status is found, not re-armed") << 0 << 0 << 2 << 1 << 1 << 2 << 3;
        QTest::newRow("relative to StartPos, wrapped once") << 9 << 0 << 1 << 4 << 4 << 2 << 3;
        QTest::newRow("relative, twice the count") << 12 << 0 << 1 << -1 << -1 << 2 << 3;
        QTest::newRow("absolute count wraps to 0") << 6 << 1 << 1 << 0 << 0 << 2 << 3;
    }

    void lookup()
    {
        QFETCH(int, pos);
        QFETCH(int, absolute);
        QFETCH(int, wanted);
        QFETCH(int, found);
        QFETCH(int, at);
        QFETCH(int, status1After);
        QFETCH(int, status2After);
        CCommonQueue q(8, "", CCommonQueue::JobMode, 6, CCommonQueue::LockAdds);
        const int retries[] = {1, 2, 1, 1, 1}, statuses[] = {1, 2, 3, 3, 1};
        for (int i = 0; i < 5; ++i)
            QVERIFY(q.Add(zeros, nullptr, 10000, retries[i], nullptr) &&
                    q.SetStatus(i, statuses[i], 1));
        QVERIFY(q.Delete(1));
        const Raw r {q, 8};
        r.expire(1);
        r.expire(2);
        int status = -1, got = -1;
        QCOMPARE(q.GetStatus(pos, status, absolute) ? status : -1, at >= 0 ? statuses[at] : -1);
        QCOMPARE(addr(q.Get(pos, wanted, absolute, &got)), found < 0 ? nullptr : r.data(found));
        QCOMPARE(QList<int>({got, r.status(1), r.status(2)}),
                 QList<int>({found, status1After, status2After}));
        QCOMPARE(q.SetStatus(pos, 0x1FE, absolute) ? r.status(at) : -1, at >= 0 ? 0xFE : -1);
        QVERIFY(found % 2 ? q.DeleteAll() : q.Delete(-1));
        QCOMPARE(QList<int>({r.start(), r.end()}), QList<int>({0, 0}));
    }

    void trimming_data()
    {
        QTest::addColumn<QList<int>>("statuses");  // set from the last record to the first
        QTest::addColumn<QList<int>>("positions"); // StartPos and EndPos after
        QTest::newRow("past free records, not a busy one")
            << QList<int> {0, 0, 0, 2, 1} << QList<int> {3, 5};
        QTest::newRow("stops at EndPos") << QList<int> {0, 0, 0, 0} << QList<int> {4, 4};
    }

    void trimming()
    {
        QFETCH(QList<int>, statuses);
        QFETCH(QList<int>, positions);
        CCommonQueue q(8, "", 1, 8, 1);
        for (int i = 0; i < statuses.size(); ++i)
            QVERIFY(q.Add(zeros, nullptr, 10000, 1, nullptr));
        for (int i = statuses.size() - 1; i >= 0; --i)
            QVERIFY(q.SetStatus(i, statuses[i], 1));
        const Raw r {q, 8};
        QCOMPARE(QList<int>({r.start(), r.end()}), positions);
    }

    void skipping_data()
    {
        QTest::addColumn<int>("from");  // StartPos before, in a ring of 6 slots
        QTest::addColumn<int>("n");     // Delete(n), or GetAbsolutePos(n)
        QTest::addColumn<int>("start"); // StartPos after Delete, and GetAbsolutePos before it
        QTest::newRow("nothing") << 2 << 0 << 2;
        QTest::newRow("up to the last slot") << 2 << 3 << 5;
        QTest::newRow("onto the count: wraps to slot 0") << 2 << 4 << 0;
        QTest::newRow("past the count") << 5 << 3 << 2;
    }

    // Delete drops records from the start without looking at them; GetAbsolutePos counts the
    // same way.
    void skipping()
    {
        QFETCH(int, from);
        QFETCH(int, n);
        QFETCH(int, start);
        CCommonQueue q(8, "", CCommonQueue::FifoMode, 6, CCommonQueue::LockAdds);
        const Raw r {q, 8};
        qToUnaligned<qint32>(from, r.b());
        qToUnaligned<qint32>(1, r.b() + 4);
        QCOMPARE(q.GetAbsolutePos(n), start);
        QVERIFY(q.Delete(n));
        QCOMPARE(QList<int>({r.start(), r.end()}), QList<int>({start, 1}));
        QVERIFY(q.Delete(-1));
        QCOMPARE(QList<int>({r.start(), r.end()}), QList<int>({0, 0}));
    }

    // Positions that went negative (a block written by a faulty peer) restart at slot 0.
    void negativePositions()
    {
        CCommonQueue q(8, "", CCommonQueue::FifoMode, 4, CCommonQueue::LockAdds);
        const Raw r {q, 8};
        qToUnaligned<qint32>(-3, r.b());
        qToUnaligned<qint32>(-1, r.b() + 4);
        int pos = -1;
        QVERIFY(q.Add(zeros, &pos, 1000, 1, nullptr));
        QCOMPARE(QList<int>({pos, r.start(), r.end()}), QList<int>({0, 0, 1}));
    }

    // Sizes no block can have, and a smaller segment under the same key: refused, not overrun.
    void badGeometry()
    {
        const int geometries[][2] = {{8, 0}, {-20, 4}, {1, 0x7fffffff}};
        for (const auto &[size, count] : geometries) {
            CCommonQueue q(size, "", 1, count, 1);
            QVERIFY2(!q.Add(zeros, nullptr, 1000, 1, nullptr) && !q.Get(-1, 1, 0, nullptr),
                     qPrintable(QString::number(count)));
        }
        QSharedMemory other(QString::fromLatin1(m_key));
        QVERIFY(other.create(64));
        CCommonQueue named(64, m_key.constData(), 0, 10, 1);
        QCOMPARE(named.Add(zeros, nullptr, 1000, 1, nullptr), FALSE);
    }

    // A caller may detach, re-key or attach the queue's own handle: the queue then finds its
    // ring in the segment the handle reaches, never through a pointer into an unmapped one.
    void inheritedHandleCalls()
    {
        const QString key = QString::fromLatin1(m_key), small = key + QLatin1String("-small");
        CCommonQueue q(16, m_key.constData(), CCommonQueue::FifoMode, 4, CCommonQueue::LockAdds);
        QVERIFY(q.Init());
        QSharedMemory keep(key), tooSmall(small); // keep: the segment outlives the queue's detach
        QVERIFY(keep.attach() && tooSmall.create(64)); // the ring needs 4 x 28 + 8 bytes
        QByteArray record(16, 'a');
        QVERIFY(q.Add(record.data(), nullptr, 1000, 1, nullptr));
        QVERIFY(q.detach());
        record.fill('b');
        QVERIFY(q.Add(record.data(), nullptr, 1000, 1, nullptr)); // attached again
        // Re-attached by the caller, with another segment mapped where the ring was before.
        QVERIFY(q.detach());
        QSharedMemory occupier(key + QLatin1String("-occupier"));
        QVERIFY(occupier.create(120));
        QVERIFY(q.attach());
        QVERIFY(q.Add(record.data(), nullptr, 1000, 1, nullptr));
        QCOMPARE(QByteArray(static_cast<const char *>(occupier.data()), 120), QByteArray(120, 0));
        q.setKey(small);
        QVERIFY(!q.Add(record.data(), nullptr, 1000, 1, nullptr)); // refused, not overrun
        QCOMPARE(q.GetCount(), 0);
        QCOMPARE(QByteArray(static_cast<const char *>(tooSmall.data()), 64), QByteArray(64, 0));
        q.setKey(key);
        QVERIFY(q.attach());
        QCOMPARE(q.GetCount(), 3);
        QCOMPARE(QByteArray(q.Get(), 16), QByteArray(16, 'a'));
        QCOMPARE(QByteArray(q.Get(), 16), QByteArray(16, 'b'));
        QCOMPARE(qFromUnaligned<qint32>(keep.data()), 2); // StartPos, in the one segment
        QVERIFY(q.Add(record.data(), nullptr, 1000, 1, nullptr));
        QVERIFY(q.Init()); // on an attached queue: zeroes the ring again
        QCOMPARE(QByteArray(static_cast<const char *>(keep.data()), 120), QByteArray(120, 0));
        IpcTest::removeSegment(small);
    }

    void killedHolder_data()
    {
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("scribbled");      // bytes of the slot at EndPos the holder wrote
        QTest::addColumn<bool>("holderCreates"); // the segment and its lock, before this process
        QTest::newRow("killed holding the lock") << 64 << 0 << false;
        QTest::newRow("killed half-way through a record") << 2048 << 12 + 1000 << false;
        QTest::newRow("killed, having made segment and lock") << 64 << 12 << true;
    }

    // A producer killed (SIGKILL) while it holds the lock that Add takes stops nobody: another
    // producer's Adds, which waited for that very lock, go on, the half-written slot is written
    // over, and the taker sees every record whole and in order.
    void killedHolder()
    {
        QFETCH(int, size);
        QFETCH(int, scribbled);
        QFETCH(bool, holderCreates);
        const int count = 16, n = 40, early = holderCreates ? 0 : 2;
        CCommonQueue q(size, m_key.constData(), CCommonQueue::FifoMode, count, 1);
        QVERIFY(holderCreates || q.Init());
        std::vector<char> record(size_t(size), 0);
        for (int i = 0; i < early; ++i) {
            QueueRecord::fill(record.data(), size, 1, i);
            QVERIFY(q.Add(record.data(), nullptr, 10000, 1, nullptr));
        }
        const QStringList args {QString::fromLatin1(m_key), QString::number(size),
                                QString::number(count)};
        const auto holder =
            IpcTest::startPeer(QStringList {"hold"} << args << QString::number(scribbled));
        QCOMPARE(IpcTest::readLine(*holder), QByteArray("HELD"));
        const auto producer = IpcTest::startPeer(QStringList {"add"} << args << QString::number(n));
        QCOMPARE(IpcTest::readLine(*producer), QByteArray("READY"));
        QThread::msleep(300);
        QCOMPARE((Raw {q, size}.end()), early); // the producer waits for the holder's lock
        holder->kill();                         // by its PID
        QVERIFY(holder->waitForFinished(10000));

        std::vector<int> next(3, 0);
        int total = 0, bad = 0;
        const auto takeAll = [&] {
            for (const char *d; (d = q.Get(-1, 0, 0, nullptr)); ++total) {
                std::int32_t src, seq;
                bad += !QueueRecord::check(d, size, src, seq) || src < 1 || src > 2 ||
                    seq != next[size_t(src)]++;
            }
        };
        for (QDeadlineTimer t(20000); total < early + n && !t.hasExpired(); QThread::msleep(1))
            takeAll();
        if (!producer->waitForFinished(20000)) {
            producer->kill();
            producer->waitForFinished();
            QFAIL("the producer did not finish");
        }
        QCOMPARE(producer->readAllStandardOutput().trimmed(), QByteArray("DONE 40"));
        QueueRecord::fill(record.data(), size, 1, early);
        QVERIFY(q.Add(record.data(), nullptr, 10000, 1, nullptr)); // and so does this process
        takeAll();
        QCOMPARE(QList<int>({bad, total, next[1], next[2]}),
                 QList<int>({0, early + 1 + n, early + 1, n}));
    }

    void stream_data()
    {
        QTest::addColumn<QString>("adders"); // threads of this process, or what the peer does
        QTest::addColumn<int>("size");
        // The message log's use: one private locked ring, many threads adding, one taking.
        QTest::newRow("8 threads, private ring") << "threads" << 2048;
        // 64 slots: the ring wraps many times.
        QTest::newRow("peer adds 64-byte records") << "add" << 64;
        QTest::newRow("peer takes 2048-byte records") << "take" << 2048;
    }

    // The peer calls Init() as well: a second process's Init() must leave a live queue alone.
    void stream()
    {
        QFETCH(QString, adders);
        QFETCH(int, size);
        const bool local = adders == "threads", peerAdds = adders == "add";
        const int sources = local ? 8 : 1, n = local ? 5000 : 3000, count = local ? 10000 : 64;
        CCommonQueue q(size, local ? "" : m_key.constData(), 0, count, 1);
        QVERIFY(q.Init());
        QCOMPARE(q.size(), local ? 0 : count * (size + 12) + 8);
        // Records [from, to) of one source, leaving the taker room: a full ring overwrites.
        const auto add = [&q, size, count](int source, int from, int to) {
            std::vector<char> record(size_t(size), 0);
            for (QDeadlineTimer limit(60000); from < to; ++from) {
                while (q.GetCount() >= count - 32 && !limit.hasExpired())
                    QThread::yieldCurrentThread();
                QueueRecord::fill(record.data(), size, source, from);
                q.Add(record.data(), nullptr, 10000, 1, nullptr);
            }
        };
        if (!local && !peerAdds)
            add(2, 0, 3); // before the peer's Init()
        QStringList args {adders, QString::fromLatin1(m_key), QString::number(size),
                          QString::number(count), QString::number(n)};
        const auto peer = local ? nullptr : IpcTest::startPeer(peerAdds ? args << "wait" : args);
        if (peer)
            QCOMPARE(IpcTest::readLine(*peer), QByteArray("READY"));
        if (peerAdds) { // while this process holds the segment lock, the peer's Add must not get in
            QVERIFY(q.lock());
            peer->write("go\n");
            QVERIFY(peer->waitForBytesWritten(10000));
            QThread::msleep(500);
            QCOMPARE((Raw {q, size}.end()), 0);
            QVERIFY(q.unlock());
        }
        std::vector<std::unique_ptr<QThread>> threads;
        for (int t = 0; !peerAdds && t < sources; ++t)
            threads.emplace_back(QThread::create(add, local ? t : 2, local ? 0 : 3, n))->start();
        std::vector<int> next(8, 0);
        int total = 0, bad = 0, expected = peerAdds || local ? sources * n : 0;
        for (QDeadlineTimer t(60000); total < expected && !t.hasExpired();
             QThread::yieldCurrentThread())
            for (const char *d; (d = q.Get(-1, 0, 0, nullptr)); ++total) {
                std::int32_t src, seq;
                bad += !QueueRecord::check(d, size, src, seq) || src < 0 || src >= 8 ||
                    seq != next[size_t(src)]++;
            }
        for (auto &t : threads)
            QVERIFY(t->wait(120000)); // past the adders' own 60 s
        QVERIFY(!peer || (IpcTest::finish(*peer) == "DONE 3000" && peer->exitCode() == 0));
        QCOMPARE(QList<int>({bad, total, q.GetCount()}), QList<int>({0, expected, 0}));
    }
};

QTEST_GUILESS_MAIN(tst_CommonQueue)
#include "tst_commonqueue.moc"
