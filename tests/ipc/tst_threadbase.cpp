#include <ThreadBase.h>
#include <TimeOutClass.h>

#include <QtTest>

// A worker as applications write them: runs until told to stop, then says it has exited.
class Worker : public ThreadBase
{
public:
    void run() override
    {
        while (!m_bControl)
            msleep(5);
        m_bExited = true;
    }
};

// The stopwatch with its reference time in the test's hands: a reference ahead of now is what
// setting the system clock back leaves behind.
class Stopwatch : public TimeOutClass
{
public:
    qint64 &reference() { return m_nRefTime; }
};

class tst_ThreadBase : public QObject
{
    Q_OBJECT

private slots:
    void checkExited_data();
    void checkExited();
    void isTimeOut_data();
    void isTimeOut();
};

void tst_ThreadBase::checkExited_data()
{
    QTest::addColumn<int>("worker"); // 0: never started, 1: told to stop, 2: stopped already
    QTest::addColumn<int>("minMs");
    QTest::addColumn<int>("maxMs");
    QTest::newRow("flag already up: no sleep") << 2 << 0 << 99;
    QTest::newRow("waits for the worker") << 1 << 0 << 4900;
    QTest::newRow("gives up after 50 x 100 ms") << 0 << 4900 << 30000;
}

void tst_ThreadBase::checkExited()
{
    QFETCH(int, worker);
    QFETCH(int, minMs);
    QFETCH(int, maxMs);
    Worker thread;
    QVERIFY(!thread.m_bControl && !thread.m_bExited && !thread.parent());
    if (worker > 0)
        thread.start();
    thread.m_bControl = true;
    QVERIFY(worker < 2 || thread.wait(30000));
    QElapsedTimer timer;
    timer.start();
    QCOMPARE(thread.CheckExited(), TRUE);
    const qint64 waited = timer.elapsed();
    QVERIFY2(waited >= minMs && waited <= maxMs, qPrintable(QString::number(waited)));
    QCOMPARE(bool(thread.m_bExited), worker > 0);
    QVERIFY(thread.wait(30000));
}

void tst_ThreadBase::isTimeOut_data()
{
    QTest::addColumn<qint64>("reference"); // relative to now; ahead: the clock was set back
    QTest::addColumn<int>("limit");
    QTest::addColumn<bool>("timedOut");
    QTest::newRow("exactly the limit is not yet") << qint64(-250) << 250 << false;
    QTest::newRow("one millisecond over") << qint64(-250) << 249 << true;
    QTest::newRow("0 within the same millisecond") << qint64(0) << 0 << false;
    QTest::newRow("clock set back an hour") << qint64(3600000) << 0 << false;
    QTest::newRow("set back, negative limit") << qint64(3600000) << -1 << true;
}

void tst_ThreadBase::isTimeOut()
{
    QFETCH(qint64, reference);
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
        QCOMPARE(reset, before);
        QCOMPARE(got, timedOut);
        // Asking never resets; after the clock was set back, timing goes on from the new time.
        QCOMPARE(watch.reference(), reference > 0 ? before : before + reference);
        return;
    }
    QSKIP("the clock ticked during every attempt");
}

QTEST_GUILESS_MAIN(tst_ThreadBase)
#include "tst_threadbase.moc"
