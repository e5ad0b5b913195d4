// SPDX-License-Identifier: MIT
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
    void cleanup()
    {
        IpcTest::removeSegment(m_a);
        IpcTest::removeSegment(m_b);
    }

    void sharedMem();
    void commonBlock();

private:
    QTemporaryDir m_tmp;
    const char *const m_a = "vantor-tst-shm-a", *const m_b = "vantor-tst-shm-b";
};

void tst_SharedMem::sharedMem()
{
    CSharedMem mem;
    QVERIFY(mem.Size() == 0 && !mem.GetPtr() && !mem.Lock());
    QVERIFY(mem.Delete()); // never created
    QVERIFY(mem.Create(m_a, 16));
    // The object exists: the second name is ignored, and the first segment exists already.
    QVERIFY(!mem.Create(m_b, 32));
    QCOMPARE(mem.Size(), 16);
    QVERIFY(!QSharedMemory(m_b).attach());
    QVERIFY(mem.Open(m_b)); // attached already: true at once
    QVERIFY(!mem.Unlock()); // nothing to release without a Lock
    QVERIFY(mem.Lock() && mem.Unlock());
    QVERIFY(!mem.Unlock()); // released once only
    std::memcpy(mem.GetPtr(), "shared", 7);
    {
        CSharedMem other;
        QVERIFY(other.Open(m_a));
        QCOMPARE(other.Size(), 16);
        QCOMPARE(static_cast<const char *>(other.GetPtr()), "shared");
    }
    // Deleting gives a held lock back, else the next attach would wait on it for ever.
    QVERIFY(mem.Lock() && mem.Delete());
    QVERIFY(!mem.GetPtr());
    QVERIFY2(!QSharedMemory(m_a).attach(), "the last handle removed it");
    QVERIFY(mem.Delete()); // nothing left to delete
}

void tst_SharedMem::commonBlock()
{
    CommonSM owner(16, m_a);
    QVERIFY(!owner.Get());
    QVERIFY(!CommonSM(0, m_b).Init());
    QVERIFY(owner.Init());
    QCOMPARE(QByteArray(static_cast<const char *>(owner.Get()), 16), QByteArray(16, '\0'));
    QByteArray source = QByteArray::fromHex("00112233445566778899aabbccddeeff").repeated(4);
    QVERIFY(!CommonSM(16, m_b).Set(source.data())); // no such block
    QVERIFY(owner.Set(source.data()));
    QCOMPARE(QByteArray(static_cast<const char *>(owner.Get()), 16), source.left(16));
    {
        // A view of a one-page block that takes the block for 1 MB copies no further than the
        // page: copying the whole megabyte would run off the mapping.
        CommonSM page(4096, m_b);
        QVERIFY(page.Init());
        const QByteArray megabyte = source.repeated(1 << 14);
        QVERIFY(CommonSM(1 << 20, m_b).Set(const_cast<char *>(megabyte.constData())));
        QCOMPARE(QByteArray(static_cast<const char *>(page.Get()), 4096), megabyte.left(4096));
    }
    // A second process's Init() finds the block and leaves it as it is.
    auto peer = IpcTest::startPeer({"commonsm", m_a, "16"});
    QCOMPARE(IpcTest::finish(*peer), source.left(16).toHex());
    QCOMPARE(QByteArray(static_cast<const char *>(owner.Get()), 16), source.left(16));
    owner.SetInfo(16, m_b); // a new key leaves the old block behind
    QVERIFY(!owner.Get());
}

QTEST_GUILESS_MAIN(tst_SharedMem)
#include "tst_sharedmem.moc"
