#include <RunGuard.h>

#include "ipctest.h"

#include <QCryptographicHash>
#include <QSystemSemaphore>
#include <QtTest>

class tst_RunGuard : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(IpcTest::useOwnTempDir(m_tmp)); }
    void init() { IpcTest::removeSegment(memKey(m_key)); }
    void cleanup()
    {
        IpcTest::removeSegment(memKey(m_key));
        // A killed instance leaves its semaphore behind: take it over, and remove it with us.
        const QByteArray lockKey =
            QCryptographicHash::hash(m_key.toUtf8() + "_memLockKey", QCryptographicHash::Sha1);
        QSystemSemaphore(QString::fromLatin1(lockKey.toHex()), 1, QSystemSemaphore::Create);
    }

    void derivedKeys_data();
    void derivedKeys();
    void secondGuardInOneProcess();
    void secondProcessIsTurnedAway();
    void restartAfterSigkill();

private:
    static QString memKey(const QString &key)
    {
        const QByteArray hash =
            QCryptographicHash::hash(key.toUtf8() + "_sharedmemKey", QCryptographicHash::Sha1);
        return QString::fromLatin1(hash.toHex());
    }

    QTemporaryDir m_tmp;
    const QString m_key = QStringLiteral("vantor-tst-runguard");
};

void tst_RunGuard::derivedKeys_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("marker");
    // SHA-1 of the key's UTF-8 bytes followed by "_sharedmemKey", lowercase hexadecimal.
    QTest::newRow("ascii") << QStringLiteral("App")
                           << QStringLiteral("b0a92c08088d0ffe386a3223f9c88420421a853b");
    QTest::newRow("korean, as UTF-8") << QStringLiteral("\uD55C\uAE00 \uC571")
                                      << QStringLiteral("f3b07e2bb61f6de1097ec5abd01f38251b6d6c92");
}

void tst_RunGuard::derivedKeys()
{
    QFETCH(QString, key);
    QFETCH(QString, marker);
    IpcTest::removeSegment(marker);
    RunGuard guard(key);
    QVERIFY(guard.tryToRun());
    // Any program that follows the same rule finds the 8-byte marker.
    QSharedMemory probe(marker);
    QVERIFY(probe.attach(QSharedMemory::ReadOnly));
    QCOMPARE(probe.size(), 8);
    probe.detach();
    guard.release();
    QVERIFY(!probe.attach(QSharedMemory::ReadOnly));
}

void tst_RunGuard::secondGuardInOneProcess()
{
    auto first = std::make_unique<RunGuard>(m_key);
    RunGuard second(m_key);
    QVERIFY(!first->isAnotherRunning());
    QVERIFY(first->tryToRun());
    QVERIFY2(!first->isAnotherRunning(), "its own marker is not another instance");
    QVERIFY2(first->tryToRun(), "asking again keeps the marker");
    QVERIFY(second.isAnotherRunning());
    QVERIFY(!second.tryToRun());
    first.reset();
    QVERIFY(second.tryToRun());
}

void tst_RunGuard::secondProcessIsTurnedAway()
{
    auto first = IpcTest::startPeer({QStringLiteral("guard"), m_key});
    QCOMPARE(IpcTest::readLine(*first), QByteArray("RUN"));
    auto second = IpcTest::startPeer({QStringLiteral("guard"), m_key});
    QCOMPARE(IpcTest::finish(*second), QByteArray("BUSY"));
    QVERIFY(!RunGuard(m_key).tryToRun());

    first->closeWriteChannel(); // the first instance ends normally
    QCOMPARE(IpcTest::finish(*first), QByteArray());
    QCOMPARE(first->exitCode(), 0);
    RunGuard here(m_key);
    QVERIFY(here.tryToRun());
    auto third = IpcTest::startPeer({QStringLiteral("guard"), m_key});
    QCOMPARE(IpcTest::finish(*third), QByteArray("BUSY"));
}

void tst_RunGuard::restartAfterSigkill()
{
    for (int crash = 0; crash < 2; ++crash) {
        auto first = IpcTest::startPeer({QStringLiteral("guard"), m_key});
        QCOMPARE(IpcTest::readLine(*first), QByteArray("RUN"));
        first->kill(); // SIGKILL to the process we started: no destructor runs
        QVERIFY(first->waitForFinished(30000));
        {
            // The crashed instance's marker is still there, attached by nobody.
            QSharedMemory probe(memKey(m_key));
            QVERIFY(!probe.create(8));
            QCOMPARE(probe.error(), QSharedMemory::AlreadyExists);
        }
        if (crash == 0) {
            auto next = IpcTest::startPeer({QStringLiteral("guard"), m_key});
            QCOMPARE(IpcTest::readLine(*next), QByteArray("RUN"));
            QVERIFY(!RunGuard(m_key).tryToRun());
            next->kill();
            next->waitForFinished(30000);
        } else {
            RunGuard here(m_key);
            QVERIFY(here.tryToRun());
        }
    }
}

QTEST_GUILESS_MAIN(tst_RunGuard)
#include "tst_runguard.moc"
