#include <CMutex.h>
#include <CSharedMem.h>
#include <CommonSM.h>

#include "ipctest.h"

#include <QtTest>

#include <cstring>

class tst_SharedMem : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { QVERIFY(IpcTest::useOwnTempDir(m_tmp)); }
    void cleanup();

    void createKeepsFirstName();
    void deleteDetaches();
    void commonInitInSecondProcessKeepsBlock();
    void commonBlockSizes();
    void mutexIgnoresWindowsArguments();

private:
    QTemporaryDir m_tmp;
    const QByteArray m_a = "vantor-tst-shm-a";
    const QByteArray m_b = "vantor-tst-shm-b";
};

void tst_SharedMem::cleanup()
{
    IpcTest::removeSegment(QString::fromLatin1(m_a));
    IpcTest::removeSegment(QString::fromLatin1(m_b));
}

void tst_SharedMem::createKeepsFirstName()
{
    CSharedMem mem;
    QCOMPARE(mem.Size(), 0);
    QVERIFY(!mem.GetPtr());
    QVERIFY(!mem.Lock());
    QVERIFY(mem.Delete()); // never created
    QVERIFY(mem.Create(m_a.constData(), 16));
    // The object exists: the second name is ignored, and the first segment exists already.
    QVERIFY(!mem.Create(m_b.constData(), 32));
    QCOMPARE(mem.Size(), 16);
    QVERIFY(!QSharedMemory(QString::fromLatin1(m_b)).attach());
    QVERIFY(mem.Open(m_b.constData())); // attached already: true at once
    QVERIFY(!mem.Unlock());             // nothing to release without a Lock
    QVERIFY(mem.Lock());
    QVERIFY(mem.Unlock());
    QVERIFY(!mem.Unlock()); // released once only

    std::memcpy(mem.GetPtr(), "shared", 7);
    CSharedMem other;
    QVERIFY(other.Open(m_a.constData()));
    QCOMPARE(other.Size(), 16);
    QCOMPARE(static_cast<const char *>(other.GetPtr()), "shared");
}

void tst_SharedMem::deleteDetaches()
{
    auto mem = std::make_unique<CSharedMem>();
    QVERIFY(mem->Create(m_a.constData(), 8));
    QVERIFY(mem->Lock());
    QVERIFY(mem->Delete());
    QVERIFY(!mem->GetPtr());
    QVERIFY2(!QSharedMemory(QString::fromLatin1(m_a)).attach(), "the last handle removed it");
    QVERIFY(mem->Delete()); // nothing left to delete
}

void tst_SharedMem::commonInitInSecondProcessKeepsBlock()
{
    CommonSM block(16, QString::fromLatin1(m_a));
    QVERIFY(!block.Get());
    QVERIFY(block.Init());
    QCOMPARE(QByteArray(static_cast<const char *>(block.Get()), 16), QByteArray(16, '\0'));
    const QByteArray pattern = QByteArray::fromHex("00112233445566778899aabbccddeeff");
    QVERIFY(block.Set(const_cast<char *>(pattern.constData())));

    auto peer = IpcTest::startPeer(
        {QStringLiteral("commonsm"), QString::fromLatin1(m_a), QStringLiteral("16")});
    QCOMPARE(IpcTest::finish(*peer), pattern.toHex());
    QCOMPARE(QByteArray(static_cast<const char *>(block.Get()), 16), pattern);
}

void tst_SharedMem::commonBlockSizes()
{
    char source[64];
    for (int i = 0; i < 64; ++i)
        source[i] = char(i + 1);
    CommonSM missing(16, QString::fromLatin1(m_b));
    QVERIFY(!missing.Set(source));
    QVERIFY(!CommonSM(0, QString::fromLatin1(m_b)).Init());

    CommonSM owner(8, QString::fromLatin1(m_a));
    QVERIFY(owner.Init());
    // A view of the same key with a larger block size copies no further than the segment.
    CommonSM reader(64, QString::fromLatin1(m_a));
    QVERIFY(reader.Set(source));
    QCOMPARE(QByteArray(static_cast<const char *>(owner.Get()), 8), QByteArray(source, 8));

    owner.SetInfo(8, QString::fromLatin1(m_b)); // a new key leaves the old block behind
    QVERIFY(!owner.Get());
}

void tst_SharedMem::mutexIgnoresWindowsArguments()
{
    SECURITY_ATTRIBUTES attributes {};
    CMutex owned(TRUE, "Global\\vantor", &attributes);
    CMutex fromCString(TRUE, CString("Global\\vantor"), nullptr);
    for (CMutex *m : {&owned, &fromCString}) {
        // Starts unlocked whatever the initially-owned flag says, and is not recursive.
        QVERIFY(m->tryLock());
        QVERIFY(!m->tryLock());
        QCOMPARE(m->Unlock(), TRUE);
        QCOMPARE(m->Lock(), TRUE);
    }
    // Both are held now: one name does not make one mutex.
    owned.Unlock();
    fromCString.Unlock();
}

QTEST_GUILESS_MAIN(tst_SharedMem)
#include "tst_sharedmem.moc"
