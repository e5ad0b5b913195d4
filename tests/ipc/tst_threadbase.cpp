// SPDX-License-Identifier: MIT
#include <ThreadBase.h>
#include <TimeOutClass.h>

#include <QtTest>

#include <array>
#include <memory>

using Ints = std::array<int, 3>;
Q_DECLARE_METATYPE(Ints)

// The stopwatch with its reference time in the test's hands: a reference ahead of now is what
// setting the system clock back leaves behind.
struct Stopwatch : TimeOutClass
{
    qint64 &reference() { return m_nRefTime; }
};

class tst_ThreadBase : public QObject
{
    Q_OBJECT

private slots:
    void checkExited_data()
    {
        // When another thread raises m_bExited (-1: never); the least and most milliseconds
        // CheckExited takes.
        QTest::addColumn<Ints>("row");
        QTest::newRow("flag already up: no sleep") << Ints {0, 0, 99};
        QTest::newRow("waits for the flag") << Ints {300, 250, 2000};
        QTest::newRow("gives up after 50 x 100 ms") << Ints {-1, 4900, 9000};
    }

    void checkExited()
    {
        QFETCH(Ints, row);
        const auto [raisedAfter, minMs, maxMs] = row;
        ThreadBase thread;
        QVERIFY(!thread.m_bControl && !thread.m_bExited && !thread.parent());
        thread.m_bExited = raisedAfter == 0;
        const std::unique_ptr<QThread> worker(QThread::create([&thread, ms = raisedAfter] {
            QThread::msleep(ulong(ms));
            thread.m_bExited = true;
        }));
        if (raisedAfter > 0)
            worker->start();
        QElapsedTimer timer;
        timer.start();
        QCOMPARE(thread.CheckExited(), TRUE);
        const qint64 waited = timer.elapsed();
        QVERIFY2(waited >= minMs && waited <= maxMs, qPrintable(QString::number(waited)));
        QCOMPARE(bool(thread.m_bExited), raisedAfter >= 0);
        QVERIFY(worker->wait(30000));
    }

    void isTimeOut_data()
    {
        // The reference time relative to now (ahead: the clock was set back), the limit, whether
        // that has timed out.
        QTest::addColumn<Ints>("row");
        QTest::newRow("exactly the limit is not yet") << Ints {-250, 250, false};
        QTest::newRow("one millisecond over") << Ints {-250, 249, true};
        QTest::newRow("clock set back an hour") << Ints {3600000, 0, false};
        QTest::newRow("set back, negative limit") << Ints {3600000, -1, true};
    }

    void isTimeOut()
    {
        QFETCH(Ints, row);
        const auto [reference, limit, timedOut] = row;
        Stopwatch watch;
        // Only a call within one millisecond tells exactly: try until one was.
        for (int attempt = 0; attempt < 1000; ++attempt) {
            const qint64 before = QDateTime::currentMSecsSinceEpoch();
            watch.Reset();
            const qint64 reset = watch.reference();
            watch.reference() = before + reference;
            const bool got = watch.IsTimeOut(limit);
            if (QDateTime::currentMSecsSinceEpoch() != before)
                continue;
            // Asking never resets; after the clock was set back, timing goes on from the new time.
            QCOMPARE(QList<qint64>({reset, got, watch.reference()}),
                     QList<qint64>({before, timedOut, before + std::min(reference, 0)}));
            return;
        }
        QSKIP("the clock ticked during every attempt");
    }
};

QTEST_GUILESS_MAIN(tst_ThreadBase)
#include "tst_threadbase.moc"
