// SPDX-License-Identifier: MIT
#include "CCommonQueue.h"

#include "PrintMessage.h"
#include "QueueLock_p.h"
#include "SystemTime.h"

#include "CCommonQueue_p.h"
#include "MutexLocker_p.h"

#include <QMutex>

#if defined(Q_OS_LINUX)
#include <sys/mman.h>
#endif

#include <climits>
#include <cstdlib>
#include <cstring>

namespace {

// The two positions are shared with other threads and processes: a taker must see a record's
// bytes complete once it sees the EndPos that covers it, so positions are published with release
// stores and read with acquire loads.
#if defined(__GNUC__) || defined(__clang__)
inline int loadPos(const int &p)
{
    return __atomic_load_n(&p, __ATOMIC_ACQUIRE);
}
inline void storePos(int &p, int v)
{
    __atomic_store_n(&p, v, __ATOMIC_RELEASE);
}
inline void storeBoth(QUEUEMEM *q, std::uint64_t v)
{
    __atomic_store_n(reinterpret_cast<std::uint64_t *>(q), v, __ATOMIC_RELEASE);
}
#else
inline int loadPos(const int &p)
{
    return *static_cast<const volatile int *>(&p);
}
inline void storePos(int &p, int v)
{
    *static_cast<volatile int *>(&p) = v;
}
inline void storeBoth(QUEUEMEM *q, std::uint64_t v)
{
    *reinterpret_cast<volatile std::uint64_t *>(q) = v;
}
#endif

// Serialises reaching a named segment by several threads sharing one queue object.
QBasicMutex g_reachMutex;

/**
 * Holds the lock of one Add for its scope: the robust mutex of a named queue where it was
 * reached; otherwise the queue's mutex between threads and, for a named queue, the segment's
 * semaphore between processes (a process-local queue has no segment).
 */
class AddLocker
{
public:
    AddLocker(QueueLock &robust, bool useRobust, QMutex *threads, QSharedMemory *segment)
        : m_robust(useRobust ? &robust : nullptr)
        , m_threads(useRobust ? nullptr : threads)
        , m_segment(nullptr)
    {
        if (m_robust) {
            m_held = m_robust->lock();
            if (!m_held)
                m_robust = nullptr;
            return;
        }
        if (m_threads)
            VantorPrivate::lockSeen(m_threads);
        // The semaphore's result is not examined, as before: Add proceeds either way.
        if (segment && segment->lock())
            m_segment = segment;
    }
    ~AddLocker()
    {
        if (m_robust)
            m_robust->unlock();
        if (m_segment)
            m_segment->unlock();
        if (m_threads)
            VantorPrivate::unlockSeen(m_threads);
    }
    /// False only when the robust mutex was found unrecoverable: Add is refused then.
    bool usable() const { return m_held; }

private:
    Q_DISABLE_COPY(AddLocker)
    QueueLock *m_robust;
    QMutex *m_threads;
    QSharedMemory *m_segment;
    bool m_held = true;
};

} // namespace

CCommonQueue::CCommonQueue()
    : m_pQueue(nullptr)
    , m_pMutex(new QMutex)
    , m_nLock(LockAdds)
    , m_nMode(FifoMode)
    , m_nCount(0)
    , m_nSize(12)
    , m_pAddLock(new QueueLock)
{ }

CCommonQueue::CCommonQueue(int nDataSize, char const *pKey, int nMode, int nCount, int nLock)
    : m_pQueue(nullptr)
    , m_pMutex(nullptr)
    , m_nLock(LockAdds)
    , m_nMode(FifoMode)
    , m_nCount(0)
    , m_nSize(12)
    , m_pAddLock(new QueueLock)
{
    SetInfo(nDataSize, pKey, nMode, nCount, nLock);
}

CCommonQueue::~CCommonQueue()
{
    if (m_strName.isEmpty())
        std::free(m_pQueue.loadAcquire());
    delete m_pMutex;
    delete m_pAddLock;
}

void CCommonQueue::SetInfo(int nDataSize, char const *pKey, int nMode, int nCount, int nLock)
{
    const char *key = pKey ? pKey : "";
    setKey(QString::fromLatin1(key));
    m_pQueue.storeRelease(nullptr);
    m_nMode = nMode;
    m_nSize = nDataSize + static_cast<int>(sizeof(QUEUEITEM));
    m_nCount = nCount;
    m_strName = QString::fromUtf8(key);
    m_nLock = nLock;
    // Made before any thread can reach Add, so that Add never races to create it.
    if (m_nLock && !m_pMutex)
        m_pMutex = new QMutex;
}

void CCommonQueue::SetInfo(int nDataSize, CString strKey, int nMode, int nCount, int nLock)
{
    SetInfo(nDataSize, strKey.GetData(), nMode, nCount, nLock);
}

/**
 * A large private ring (the message log's is 20 MB) is walked slot after slot, a new page every
 * other record: in 4 KB pages each first touch costs a fault and each later pass a TLB miss. The
 * whole 2 MB pages inside the block are offered to the kernel as huge pages. Memory is still
 * taken only as the ring is first written, but 2 MB at a time.
 */
static void adviseLargePages(void *block, size_t bytes)
{
#if defined(Q_OS_LINUX) && defined(MADV_HUGEPAGE)
    constexpr std::uintptr_t huge = 2 * 1024 * 1024;
    const auto from = (reinterpret_cast<std::uintptr_t>(block) + huge - 1) & ~(huge - 1);
    const auto to = (reinterpret_cast<std::uintptr_t>(block) + bytes) & ~(huge - 1);
    if (to > from)
        madvise(reinterpret_cast<void *>(from), to - from, MADV_HUGEPAGE);
#else
    Q_UNUSED(block);
    Q_UNUSED(bytes);
#endif
}

// Bytes of the whole block, or -1 when the geometry cannot describe one.
static qint64 blockBytes(int nCount, int nSize)
{
    if (nCount < 0 || nSize < static_cast<int>(sizeof(QUEUEITEM)))
        return -1;
    const qint64 total = qint64(nCount) * nSize + qint64(sizeof(QUEUEMEM));
    return total <= INT_MAX ? total : -1;
}

BOOL CCommonQueue::Init()
{
    if (m_strName.isEmpty())
        return TRUE;
    const qint64 total = blockBytes(m_nCount, m_nSize);
    if (total < 0)
        return TRUE;
    VantorPrivate::MutexLocker<QBasicMutex> locker(&g_reachMutex);
    // An existing segment makes create() fail; unless this object is already attached, no data
    // pointer results and the live queue is left alone.
    create(int(total), QSharedMemory::ReadWrite);
    if (void *d = data()) {
        if (size() >= total) {
            std::memset(d, 0, size_t(total));
            m_pQueue.storeRelease(static_cast<QUEUEMEM *>(d));
            m_pAddLock->reach(key());
        }
    }
    return TRUE;
}

QUEUEMEM *CCommonQueue::GetQueue()
{
    QUEUEMEM *q = m_pQueue.loadAcquire();
    if (m_strName.isEmpty())
        return q ? q : reachBlock();
    // The caller may have detached, re-keyed or attached the handle since: the ring is wherever
    // the handle is attached now.
    return q && q == data() && size() >= blockBytes(m_nCount, m_nSize) ? q : reachBlock();
}

QUEUEMEM *CCommonQueue::attachedBlock()
{
    void *d = data();
    if (!d || size() < blockBytes(m_nCount, m_nSize)) {
        // No segment, or one of another geometry under the key: never index past its end.
        m_pQueue.storeRelease(nullptr);
        return nullptr;
    }
    m_pQueue.storeRelease(static_cast<QUEUEMEM *>(d));
    return static_cast<QUEUEMEM *>(d);
}

QUEUEMEM *CCommonQueue::reachBlock()
{
    const qint64 total = blockBytes(m_nCount, m_nSize);
    if (total < 0)
        return nullptr;

    if (m_strName.isEmpty()) {
        auto *fresh = static_cast<QUEUEMEM *>(std::calloc(1, size_t(total)));
        if (!fresh)
            return nullptr;
        adviseLargePages(fresh, size_t(total));
        // Several threads may reach a private block at once: one allocation wins.
        if (m_pQueue.testAndSetOrdered(nullptr, fresh))
            return fresh;
        std::free(fresh);
        return m_pQueue.loadAcquire();
    }

    VantorPrivate::MutexLocker<QBasicMutex> locker(&g_reachMutex);
    if (!isAttached())
        attach(QSharedMemory::ReadWrite);
    // A new segment starts zeroed by the system.
    if (!isAttached())
        create(int(total), QSharedMemory::ReadWrite);
    QUEUEMEM *q = attachedBlock();
    // The lock follows the segment the handle reaches now.
    if (q)
        m_pAddLock->reach(key());
    return q;
}

char *CCommonQueue::GetMem(QUEUEMEM *pQueue)
{
    return pQueue ? reinterpret_cast<char *>(pQueue) + sizeof(QUEUEMEM) : nullptr;
}

static inline QUEUEITEM *slotAt(char *mem, int index, int size)
{
    return reinterpret_cast<QUEUEITEM *>(mem + qint64(index) * size);
}

BOOL CCommonQueue::Add(char *pData, int *pPos, int nTimeOut, int nRetry, int *pPos2)
{
    return addRecord(pData, m_nSize - int(sizeof(QUEUEITEM)), pPos, nTimeOut, nRetry, pPos2,
                     m_nLock != 0);
}

BOOL CCommonQueue::addRecord(const char *pData, int nBytes, int *pPos, int nTimeOut, int nRetry,
                             int *pPos2, bool bLock)
{
    QUEUEMEM *q = GetQueue();
    if (!q || !pData)
        return FALSE;

    const bool named = !m_strName.isEmpty();
    const AddLocker locker(*m_pAddLock, bLock && named && m_pAddLock->available(),
                           bLock ? m_pMutex : nullptr, bLock && named ? this : nullptr);
    if (!locker.usable())
        return FALSE;

    if (loadPos(q->StartPos) < 0)
        storePos(q->StartPos, 0);
    int end = loadPos(q->EndPos);
    if (end < 0) {
        end = 0;
        storePos(q->EndPos, 0);
        if (m_nCount <= 0)
            return FALSE;
    }
    if (end >= m_nCount)
        return FALSE;

    if (pPos)
        *pPos = end;
    if (pPos2)
        *pPos2 = end;
    char *slot = GetMem(q) + qint64(end) * m_nSize;
    auto *item = reinterpret_cast<QUEUEITEM *>(slot);
    item->Status = StatusReady;
    item->TimeOut = WORD(nTimeOut & 0xFFFF);
    item->Retry = (m_nMode == EndlessJobMode) ? 1 : BYTE(((nRetry > 0 ? nRetry : 1) - 1) & 0xFF);
    item->Expiry = GetMSecsSinceEpoch() + nTimeOut;
    // The record is copied once, straight from the caller into the slot; it is published by
    // the EndPos store below.
    std::memcpy(slot + sizeof(QUEUEITEM), pData,
                size_t(qBound(0, nBytes, m_nSize - int(sizeof(QUEUEITEM)))));

    const int next = end + 1 >= m_nCount ? 0 : end + 1;
    const char *nextSlot = GetMem(q) + qint64(next) * m_nSize;
    // The queue's members are read before this store, which hands the record over: a taker
    // that has seen it may already be done with the queue.
    storePos(q->EndPos, next);
#if defined(__GNUC__) || defined(__clang__)
    // The next Add writes the next slot's header: fetch its line now, while the caller goes on.
    __builtin_prefetch(nextSlot, 1);
#else
    Q_UNUSED(nextSlot);
#endif
    return TRUE;
}

char *CCommonQueue::Get(int nPos, int nStatus, int bAbsolute, int *pPos)
{
    QUEUEMEM *q = GetQueue();
    if (!q)
        return nullptr;
    char *mem = GetMem(q);
    const int start = loadPos(q->StartPos);
    const int end = loadPos(q->EndPos);

    if (m_nMode == FifoMode) {
        if (start == end || start < 0 || start >= m_nCount)
            return nullptr;
        char *data = mem + qint64(start) * m_nSize + sizeof(QUEUEITEM);
        if (pPos)
            *pPos = start;
        storePos(q->StartPos, start + 1 >= m_nCount ? 0 : start + 1);
        return data;
    }

    const long long now = GetMSecsSinceEpoch();
    int index;
    int budget;
    if (nPos <= SearchAll) {
        if (m_nCount <= 0)
            return nullptr;
        index = start;
        budget = m_nCount;
    } else {
        index = bAbsolute ? nPos : start + nPos;
        budget = 1;
    }

    for (int n = 0; n < budget; ++n, ++index) {
        if (index >= m_nCount)
            index -= m_nCount;
        if (index == end)
            return nullptr;
        if (index < 0 || index >= m_nCount)
            return nullptr;
        QUEUEITEM *item = slotAt(mem, index, m_nSize);
        const bool expired = item->Expiry < now;
        if (item->Status != StatusFree && expired && item->Retry == 0) {
            // Retries spent: the record is abandoned.
            item->Status = StatusFree;
            if (nStatus == StatusDone)
                continue;
        } else if (item->Status != StatusFree && nStatus != StatusDone && item->Status != nStatus &&
                   expired) {
            // Waited too long: back to ready. Mode 2 re-arms without end.
            if (m_nMode != EndlessJobMode)
                item->Retry = BYTE(item->Retry - 1);
            item->Status = StatusReady;
            item->Expiry = now + (item->TimeOut ? item->TimeOut : 1);
        }
        const bool match = nStatus == StatusAny || item->Status == BYTE(nStatus);
        if (match) {
            if (pPos)
                *pPos = index;
            return reinterpret_cast<char *>(item) + sizeof(QUEUEITEM);
        }
    }
    return nullptr;
}

int CCommonQueue::normalise(QUEUEMEM *q, int nPos, int bAbsolute) const
{
    int pos = bAbsolute ? nPos : loadPos(q->StartPos) + nPos;
    if (pos >= m_nCount)
        pos -= m_nCount;
    if (pos >= m_nCount || pos < 0)
        return -1;
    return pos;
}

void CCommonQueue::trim(QUEUEMEM *q)
{
    char *mem = GetMem(q);
    int start = loadPos(q->StartPos);
    const int end = loadPos(q->EndPos);
    for (int n = 0; n < m_nCount && start != end; ++n) {
        if (start < 0 || start >= m_nCount || slotAt(mem, start, m_nSize)->Status != StatusFree)
            break;
        start = start + 1 >= m_nCount ? 0 : start + 1;
    }
    storePos(q->StartPos, start);
}

BOOL CCommonQueue::SetStatus(int nPos, int nStatus, int bAbsolute)
{
    QUEUEMEM *q = GetQueue();
    if (!q)
        return FALSE;
    const int pos = normalise(q, nPos, bAbsolute);
    if (pos < 0)
        return FALSE;
    slotAt(GetMem(q), pos, m_nSize)->Status = BYTE(nStatus & 0xFF);
    trim(q);
    return TRUE;
}

BOOL CCommonQueue::GetStatus(int nPos, int &nStatus, int bAbsolute)
{
    QUEUEMEM *q = GetQueue();
    if (!q)
        return FALSE;
    const int pos = normalise(q, nPos, bAbsolute);
    if (pos < 0)
        return FALSE;
    nStatus = slotAt(GetMem(q), pos, m_nSize)->Status;
    return TRUE;
}

int CCommonQueue::GetAbsolutePos(int nPos)
{
    QUEUEMEM *q = GetQueue();
    if (!q)
        return 0;
    int pos = loadPos(q->StartPos) + nPos;
    if (pos >= m_nCount)
        pos -= m_nCount;
    return pos;
}

int CCommonQueue::GetCount()
{
    QUEUEMEM *q = GetQueue();
    if (!q)
        return 0;
    int count = loadPos(q->EndPos) - loadPos(q->StartPos);
    if (count < 0)
        count += m_nCount;
    return count;
}

BOOL CCommonQueue::CheckAndDelete()
{
    QUEUEMEM *q = GetQueue();
    if (!q)
        return FALSE;
    trim(q);
    return TRUE;
}

BOOL CCommonQueue::Delete(int nCount)
{
    QUEUEMEM *q = GetQueue();
    if (!q)
        return FALSE;
    if (nCount < 0) {
        storeBoth(q, 0);
        return TRUE;
    }
    int start = loadPos(q->StartPos) + nCount;
    if (start >= m_nCount)
        start -= m_nCount;
    storePos(q->StartPos, start);
    return TRUE;
}

BOOL CCommonQueue::DeleteAll()
{
    QUEUEMEM *q = GetQueue();
    if (!q)
        return FALSE;
    storeBoth(q, 0);
    return TRUE;
}

void CCommonQueue::PrintMemPos()
{
    QUEUEMEM *q = GetQueue();
    if (!q)
        return;
    PrintMessage("StartPos = %d, EndPos = %d\r\n", loadPos(q->StartPos), loadPos(q->EndPos));
}

bool CCommonQueue::lock()
{
    if (!m_strName.isEmpty() && GetQueue() && m_pAddLock->available())
        return m_pAddLock->lock();
    return QSharedMemory::lock();
}

bool CCommonQueue::unlock()
{
    if (!m_strName.isEmpty() && m_pAddLock->available()) {
        m_pAddLock->unlock();
        return true;
    }
    return QSharedMemory::unlock();
}

BOOL CCommonQueuePrivate::addPrefix(CCommonQueue &queue, const char *data, int bytes, int timeOut,
                                    int retry)
{
    return queue.addRecord(data, bytes, nullptr, timeOut, retry, nullptr, false);
}
