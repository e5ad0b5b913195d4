// SPDX-License-Identifier: MIT
#include <RunGuard.h>

#include "ipctest.h"

#include <QtTest>

class tst_RunGuard : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(IpcTest::useOwnTempDir(m_tmp)); }
    void init() { IpcTest::removeSegment(derived("_sharedmemKey")); }
    void cleanup()
    {
        IpcTest::removeSegment(derived("_sharedmemKey"));
        // A killed instance leaves its semaphore behind: take it over, and remove it with us.
        QSystemSemaphore(derived("_memLockKey"), 1, QSystemSemaphore::Create);
    }

    void derivedKeys_data();
    void derivedKeys();
    void secondGuardInOneProcess();
    void acrossProcesses();

private:
    QString derived(const char *salt) const
    {
        return QString::fromLatin1(
            QCryptographicHash::hash(m_key.toUtf8() + salt, QCryptographicHash::Sha1).toHex());
    }

    QTemporaryDir m_tmp;
    const QString m_key = QStringLiteral("vantor-tst-runguard");
    const QStringList m_guard {QStringLiteral("guard"), m_key}; // the peer's command
};

void tst_RunGuard::derivedKeys_data()
{
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("marker");
    // SHA-1 of the key's UTF-8 bytes followed by "_sharedmemKey", lowercase hexadecimal.
    QTest::newRow("ascii") << "App"
                           << "b0a92c08088d0ffe386a3223f9c88420421a853b";
    QTest::newRow("korean, as UTF-8")
        << QStringLiteral("\uD55C\uAE00 \uC571") << "f3b07e2bb61f6de1097ec5abd01f38251b6d6c92";
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

void tst_RunGuard::acrossProcesses()
{
    // The crashed instance's marker is still there, attached by nobody.
    auto markerLeft = [this]() {
        QSharedMemory probe(derived("_sharedmemKey"));
        return !probe.create(8) && probe.error() == QSharedMemory::AlreadyExists;
    };
    auto first = IpcTest::startPeer(m_guard);
    QCOMPARE(IpcTest::readLine(*first), QByteArray("RUN"));
    QCOMPARE(IpcTest::finish(*IpcTest::startPeer(m_guard)), QByteArray("BUSY"));
    QVERIFY(!RunGuard(m_key).tryToRun());
    first->kill(); // SIGKILL to the process we started: no destructor runs
    QVERIFY(first->waitForFinished(30000) && markerLeft());
    auto next = IpcTest::startPeer(m_guard); // a restart in another process
    QCOMPARE(IpcTest::readLine(*next), QByteArray("RUN"));
    QVERIFY(!RunGuard(m_key).tryToRun());
    next->kill();
    QVERIFY(next->waitForFinished(30000) && markerLeft());
    RunGuard here(m_key); // a restart in this one
    QVERIFY(here.tryToRun());
    QCOMPARE(IpcTest::finish(*IpcTest::startPeer(m_guard)), QByteArray("BUSY"));
}

QTEST_GUILESS_MAIN(tst_RunGuard)
#include "tst_runguard.moc"
