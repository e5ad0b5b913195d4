// SPDX-License-Identifier: MIT
#pragma once

// The lock that a named CCommonQueue takes around each Add, kept in a small companion segment
// of its own beside the queue's segment (whose bytes stay exactly as other processes expect
// them). Not installed.

#include <QAtomicPointer>
#include <QSharedMemory>
#include <QString>

/**
 * A process-shared, robust mutex in the companion segment "<key>_MUTEX_COMMON_QUEUE".
 *
 * Whoever reaches the companion first - the creator of the queue or any other process -
 * initialises the mutex once, under the companion's own system semaphore (which the system gives
 * back when its holder dies) and behind a state word, so that two processes arriving together
 * never both initialise it. Every later process finds the mutex initialised and uses it as it is.
 *
 * A holder that dies with the lock held is detected by the next locker (EOWNERDEAD): the mutex
 * is made consistent again and the new holder goes on. This is safe for the queue because an
 * Add publishes its record only with its last store (EndPos): a holder killed earlier leaves at
 * most a half-written slot beyond EndPos, which no taker reads and the next Add overwrites.
 *
 * Where the platform has no robust process-shared mutex, or the companion cannot be made,
 * available() is false and the queue falls back to its segment's system semaphore.
 */
class QueueLock
{
public:
    QueueLock() = default;
    ~QueueLock();

    /// Reaches the lock that belongs to the queue segment `segmentKey` (attaching or creating
    /// the companion, initialising the mutex when nobody has). Not thread-safe: callers
    /// serialise it. True when the lock is available.
    bool reach(const QString &segmentKey);
    /// True when reach() found a lock for `segmentKey`.
    bool reachedFor(const QString &segmentKey) const
    {
        return m_mutex.loadAcquire() && m_for == segmentKey;
    }
    /// True when a lock was reached (for the segment key of the last reach()).
    bool available() const { return m_mutex.loadAcquire() != nullptr; }
    /// Forgets the companion (detaching from it).
    void release();

    /// Blocks until the lock is held: true then. False when the lock is unusable (not reached,
    /// or left unrecoverable by a holder that died before it could be made consistent).
    bool lock();
    void unlock();

private:
    Q_DISABLE_COPY(QueueLock)
    QSharedMemory m_segment;
    QAtomicPointer<void> m_mutex;
    QString m_for;
};
