#include <ThreadBase.h>
#include <TimeOutClass.h>

#include <QDateTime>
#include <QElapsedTimer>
#include <QtTest>

// A worker as applications write them: runs until told to stop, then says it has exited.
class Worker : public ThreadBase
{
public:
    explicit Worker(bool setsExited)
        : setsExited(setsExited)
    { }
    const bool setsExited;
    void run() override
    {
        while (!m_bControl)
            msleep(5);
        m_bExited = setsExited;
    }
};

// The stopwatch with its reference time in the test's hands: a reference ahead of now is what
// setting the system clock back leaves behind.
class Stopwatch : public TimeOutClass
{
public:
    qint64 reference() const { return m_nRefTime; }
    void setReference(qint64 ms) { m_nRefTime = ms; }
};

static qint64 now()
{
    return QDateTime::currentMSecsSinceEpoch();
}

class tst_ThreadBase : public QObject
{
    Q_OBJECT

private slots:
    void checkExited_data();
    void checkExited();
    void isTimeOut_data();
    void isTimeOut();
    void exactLimitIsNotYetATimeOut();
};

void tst_ThreadBase::checkExited_data()
{
    QTest::addColumn<bool>("alreadyStopped");
    QTest::addColumn<bool>("setsExited");
    QTest::addColumn<int>("minMs");
    QTest::addColumn<int>("maxMs");
    QTest::newRow("flag already up: no sleep") << true << true << 0 << 99;
    QTest::newRow("waits for the worker") << false << true << 0 << 4900;
    QTest::newRow("gives up after 50 x 100 ms") << false << false << 4900 << 30000;
}

void tst_ThreadBase::checkExited()
{
    QFETCH(bool, alreadyStopped);
    QFETCH(bool, setsExited);
    QFETCH(int, minMs);
    QFETCH(int, maxMs);
    Worker worker(setsExited);
    QVERIFY(!worker.m_bControl && !worker.m_bExited && !worker.parent());
    QCOMPARE(ThreadBase::staticMetaObject.className(), "ThreadBase");
    worker.start();
    worker.m_bControl = true;
    if (alreadyStopped)
        QVERIFY(worker.wait(30000));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(worker.CheckExited(), TRUE);
    const qint64 waited = timer.elapsed();
    QVERIFY2(waited >= minMs && waited <= maxMs, qPrintable(QString::number(waited)));
    QCOMPARE(bool(worker.m_bExited), setsExited);
    QVERIFY(worker.wait(30000));
}

void tst_ThreadBase::isTimeOut_data()
{
    QTest::addColumn<qint64>("reference"); // relative to now
    QTest::addColumn<int>("limit");
    QTest::addColumn<bool>("timedOut");
    QTest::addColumn<bool>("restarts");
    QTest::newRow("well past") << qint64(-10000) << 500 << true << false;
    QTest::newRow("well within") << qint64(-1000) << 60000 << false << false;
    QTest::newRow("clock set back an hour") << qint64(3600000) << 0 << false << true;
    QTest::newRow("set back, negative limit") << qint64(3600000) << -1 << true << true;
}

void tst_ThreadBase::isTimeOut()
{
    QFETCH(qint64, reference);
    QFETCH(int, limit);
    QFETCH(bool, timedOut);
    QFETCH(bool, restarts);
    Stopwatch watch;
    const qint64 before = now();
    watch.setReference(before + reference);
    QCOMPARE(watch.IsTimeOut(limit), timedOut);
    if (restarts) // timing goes on from the new time
        QVERIFY(watch.reference() >= before && watch.reference() <= now());
    else // asking never resets
        QCOMPARE(watch.reference(), before + reference);
    watch.Reset();
    QVERIFY(watch.reference() >= before);
    QVERIFY(!watch.IsTimeOut(60000));
}

void tst_ThreadBase::exactLimitIsNotYetATimeOut()
{
    Stopwatch watch;
    // Only a call within one millisecond tells: try until one was.
    for (int attempt = 0; attempt < 1000; ++attempt) {
        const qint64 before = now();
        watch.Reset();
        const bool zero = watch.IsTimeOut(0);
        watch.setReference(before - 250);
        const bool exact = watch.IsTimeOut(250);
        const bool oneLess = watch.IsTimeOut(249);
        if (now() != before || watch.reference() != before - 250)
            continue;
        QVERIFY2(!zero, "IsTimeOut(0) within the millisecond of Reset()");
        QVERIFY2(!exact, "exactly the limit elapsed is not yet a time-out");
        QVERIFY(oneLess);
        return;
    }
    QSKIP("the clock ticked during every attempt");
}

QTEST_GUILESS_MAIN(tst_ThreadBase)
#include "tst_threadbase.moc"
