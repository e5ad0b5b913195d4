// SPDX-License-Identifier: MIT
#include <ThreadBase.h>
#include <TimeOutClass.h>

#include <QtTest>

#include <memory>

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
        QTest::addColumn<int>("raisedAfter"); // ms until another thread raises m_bExited
        QTest::addColumn<int>("minMs");       // the least and most CheckExited takes
        QTest::addColumn<int>("maxMs");
        QTest::newRow("flag already up: no sleep") << 0 << 0 << 99;
        QTest::newRow("waits for the flag") << 300 << 250 << 2000;
    }

    void checkExited()
    {
        QFETCH(int, raisedAfter);
        QFETCH(int, minMs);
        QFETCH(int, maxMs);
        ThreadBase thread;
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
        QVERIFY(thread.m_bExited);
        QVERIFY(worker->wait(30000));
    }

    void isTimeOut_data()
    {
        // The reference time relative to now (ahead: the clock was set back).
        QTest::addColumn<int>("reference");
        QTest::addColumn<int>("limit");
        QTest::addColumn<bool>("timedOut");
        QTest::newRow("exactly the limit is not yet") << -250 << 250 << false;
        QTest::newRow("one millisecond over") << -250 << 249 << true;
        QTest::newRow("clock set back an hour") << 3600000 << 0 << false;
        QTest::newRow("set back, negative limit") << 3600000 << -1 << true;
    }

    void isTimeOut()
    {
        QFETCH(int, reference);
        QFETCH(int, limit);
        QFETCH(bool, timedOut);
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
                     QList<qint64>({before, qint64(timedOut), before + std::min(reference, 0)}));
            return;
        }
        QSKIP("the clock ticked during every attempt");
    }
};

QTEST_GUILESS_MAIN(tst_ThreadBase)
#include "tst_threadbase.moc"
