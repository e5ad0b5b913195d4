// SPDX-License-Identifier: MIT
#include "QueueLock_p.h"

#include <QDeadlineTimer>
#include <QThread>

#if defined(Q_OS_LINUX)
#include <cerrno>
#include <pthread.h>
#define VANTOR_ROBUST_QUEUE_LOCK 1
#endif

#ifdef VANTOR_ROBUST_QUEUE_LOCK

namespace {

constexpr quint32 LockMagic = 0x4b4c5156; // "VQLK"
/// The state word of the companion: a new segment starts zeroed, that is Fresh.
enum LockState : quint32 { Fresh = 0, Initialising = 1, Ready = 2 };

struct LockBlock
{
    quint32 magic;
    quint32 state;
    pthread_mutex_t mutex;
};

quint32 loadState(LockBlock *b)
{
    return __atomic_load_n(&b->state, __ATOMIC_ACQUIRE);
}

bool initialiseMutex(LockBlock *b)
{
    pthread_mutexattr_t attr;
    if (pthread_mutexattr_init(&attr) != 0)
        return false;
    const bool ok = pthread_mutexattr_setpshared(&attr, PTHREAD_PROCESS_SHARED) == 0 &&
        pthread_mutexattr_setrobust(&attr, PTHREAD_MUTEX_ROBUST) == 0 &&
        pthread_mutex_init(&b->mutex, &attr) == 0;
    pthread_mutexattr_destroy(&attr);
    if (ok) {
        b->magic = LockMagic;
        __atomic_store_n(&b->state, quint32(Ready), __ATOMIC_RELEASE);
    }
    return ok;
}

/**
 * Initialises the mutex unless someone has; called while holding the companion's semaphore.
 * The state word decides who initialises: the semaphore alone is not enough, because
 * QSharedMemory::create() resets it, so a second process creating at the same moment may pass it
 * too. A state left at Initialising by a process that died half-way is taken over after a wait.
 */
bool initialiseOnce(LockBlock *b)
{
    quint32 expected = Fresh;
    if (__atomic_compare_exchange_n(&b->state, &expected, quint32(Initialising), false,
                                    __ATOMIC_ACQ_REL, __ATOMIC_ACQUIRE))
        return initialiseMutex(b);
    if (expected == Initialising) {
        for (QDeadlineTimer limit(2000); loadState(b) == Initialising && !limit.hasExpired();)
            QThread::msleep(1);
        if (loadState(b) == Initialising)
            return initialiseMutex(b);
    }
    return loadState(b) == Ready && b->magic == LockMagic;
}

} // namespace

bool QueueLock::reach(const QString &segmentKey)
{
    if (reachedFor(segmentKey))
        return true;
    release();
    if (segmentKey.isEmpty())
        return false;
    m_segment.setKey(segmentKey + QLatin1String("_MUTEX_COMMON_QUEUE"));
    const int bytes = int(sizeof(LockBlock));
    if (!m_segment.attach() && !m_segment.create(bytes) && !m_segment.attach())
        return false;
    auto *b = static_cast<LockBlock *>(m_segment.data());
    bool ok = b && m_segment.size() >= bytes;
    if (ok && !(loadState(b) == Ready && b->magic == LockMagic)) {
        ok = m_segment.lock();
        if (ok) {
            ok = initialiseOnce(b);
            m_segment.unlock();
        }
    }
    if (!ok) {
        // Not ours, or not usable: the queue keeps to its segment's semaphore.
        m_segment.detach();
        return false;
    }
    m_for = segmentKey;
    m_mutex.storeRelease(&b->mutex);
    return true;
}

bool QueueLock::lock()
{
    auto *m = static_cast<pthread_mutex_t *>(m_mutex.loadAcquire());
    if (!m)
        return false;
    int rc = pthread_mutex_lock(m);
    if (rc == EOWNERDEAD) {
        // The holder died inside its Add: the queue needs no repair (see the class comment),
        // only the mutex does.
        rc = pthread_mutex_consistent(m);
    }
    return rc == 0;
}

void QueueLock::unlock()
{
    if (auto *m = static_cast<pthread_mutex_t *>(m_mutex.loadAcquire()))
        pthread_mutex_unlock(m);
}

#else // no robust process-shared mutex: the queue keeps to its segment's semaphore

bool QueueLock::reach(const QString &)
{
    return false;
}

bool QueueLock::lock()
{
    return false;
}

void QueueLock::unlock() { }

#endif

QueueLock::~QueueLock()
{
    release();
}

void QueueLock::release()
{
    m_mutex.storeRelease(nullptr);
    m_for.clear();
    if (m_segment.isAttached())
        m_segment.detach();
}
