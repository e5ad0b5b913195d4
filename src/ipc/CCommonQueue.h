// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "WinTypes.h"
#include "vantor_export.h"

#include <QAtomicPointer>
#include <QSharedMemory>
#include <QString>

#include <cstddef>
#include <cstdint>

class QMutex;
class QueueLock;

/**
 * Header of a queue block: the two ring positions, followed in memory by the record slots.
 * Slot i begins at 8 + i x (data size + 12) bytes from the start of the block.
 */
struct QUEUEMEM
{
    /// Slot index of the oldest live record (where Get reads).
    int StartPos;
    /// Slot index where the next Add writes.
    int EndPos;
};

#pragma pack(push, 1)
/**
 * Header of one record slot (12 bytes, no padding), followed by the caller's data.
 * The layout is shared with other processes and must not change.
 */
struct QUEUEITEM
{
    /// 0 free, 1 ready; any other value belongs to the caller (2 sent, 3 done by convention).
    BYTE Status;
    /// How many more times an expired record may be put back to ready.
    BYTE Retry;
    /// The time-out given to Add, in milliseconds, kept to its low 16 bits.
    WORD TimeOut;
    /// Milliseconds since 1970-01-01 UTC after which the record counts as expired.
    std::int64_t Expiry;
};
#pragma pack(pop)

static_assert(sizeof(QUEUEMEM) == 8, "queue block header is two 32-bit positions");
static_assert(sizeof(QUEUEITEM) == 12, "queue slot header is 12 bytes");
static_assert(offsetof(QUEUEITEM, Retry) == 1 && offsetof(QUEUEITEM, TimeOut) == 2 &&
                  offsetof(QUEUEITEM, Expiry) == 4,
              "queue slot header keeps its field offsets");

/**
 * A fixed-capacity ring of fixed-size records, in a named shared-memory segment that every
 * process opening the same key shares, or - for an empty key - in a private zeroed block of the
 * same layout inside this process.
 *
 * Mode 0 is a plain first-in-first-out ring. Modes 1 and 2 (any nonzero mode other than 2
 * behaves as 1) keep a table of pending jobs: each record carries a status byte, a time-out and
 * a retry count, and a status search hands out ready records, puts expired ones back to ready
 * while retries remain (mode 2: without end) and frees them once their retries are spent.
 *
 * The ring is never refused for being full: Add writes over the oldest record, and once the
 * write position catches up with the read position the queue reads as empty. Size the ring for
 * the traffic.
 *
 * With the lock flag set, Add is exclusive across processes and threads. A process-local queue
 * has no segment and relies on the queue's own mutex. Every other operation takes no lock: one
 * taker per queue, many adders.
 *
 * The lock of a named queue (documented change): Add takes a process-shared robust mutex kept in
 * a small companion segment under the key "<key>_MUTEX_COMMON_QUEUE", beside the queue's segment,
 * instead of the segment's system semaphore. The queue's segment keeps its size and every byte of
 * its layout; only the lock moved. The mutex costs no system call when it is free, and a process
 * killed while holding it does not stop the others: the next locker finds the holder dead, makes
 * the mutex consistent again and goes on. Nothing of the queue needs repair then, because Add
 * publishes a record only with its last store (EndPos): a half-written slot lies beyond EndPos,
 * where no taker reads, and the next Add writes over it. Whoever reaches the companion first -
 * the queue's creator or any other process - initialises the mutex, once. Every process adding
 * to one queue must therefore run this version of the library: an older one would still lock the
 * segment's semaphore and not exclude the newer ones. Where the companion cannot be made (or
 * the platform has no robust mutex), Add takes the segment's semaphore as before. lock() and
 * unlock() of the queue take the same lock as Add (see there).
 *
 * The queue is itself the segment's QSharedMemory handle. A caller may use the inherited
 * setKey(), attach() and detach(): a named queue finds its ring in whatever segment the handle is
 * attached to at each operation (attaching again, or creating the segment, when it was
 * detached), and refuses a segment too small for its ring. A process-local queue keeps its
 * private block whatever the handle does.
 *
 * The mode, status, position and lock arguments are plain ints, so that ported calls such as
 * Add(record, nullptr, 10000, 1, nullptr) compile and mean what they meant; the enums below give
 * the same numbers names for new code.
 */
class VANTOR_EXPORT CCommonQueue : public QSharedMemory
{
public:
    /// The mode number: how the ring is used.
    enum QueueMode {
        /// First in, first out; the status byte is not used.
        FifoMode = 0,
        /// A job table: expired records are put back to ready while their retries last.
        JobMode = 1,
        /// A job table whose expired records are put back to ready without end.
        EndlessJobMode = 2
    };
    /// The status byte of a record. The queue itself writes only Free and Ready; Sent and Done
    /// are the usual values of the caller, who may use any other byte value as well.
    enum RecordStatus {
        /// Free slot; as the status wanted by Get, it matches any slot.
        StatusFree = 0,
        StatusAny = 0,
        /// Ready to be handed out (set by Add and by re-arming).
        StatusReady = 1,
        /// Handed out and waiting for its answer, by convention.
        StatusSent = 2,
        /// Done, by convention; a search for it re-arms nothing.
        StatusDone = 3
    };
    /// How a position argument counts.
    enum PositionBase {
        /// From StartPos.
        Relative = 0,
        /// As a slot index.
        Absolute = 1
    };
    /// The position argument of Get that searches the ring from StartPos.
    enum SearchPosition { SearchAll = -1 };
    /// The lock flag.
    enum AddLocking {
        /// Add takes no lock.
        NoLock = 0,
        /// Add is exclusive across processes and threads.
        LockAdds = 1
    };

    /// A queue with no key and the lock flag on; call SetInfo before use.
    CCommonQueue();
    /**
     * @param nDataSize bytes of caller data per record (the slot adds a 12-byte header)
     * @param pKey segment key (taken as Latin-1); empty or null for a process-local queue
     * @param nMode a QueueMode: 0 plain ring, 1 job table with retries, 2 job table re-arming
     * without end
     * @param nCount number of record slots
     * @param nLock an AddLocking: nonzero makes Add exclusive across processes and threads
     * Nothing is created or attached yet.
     */
    CCommonQueue(int nDataSize, char const *pKey, int nMode, int nCount, int nLock = LockAdds);
    /// Frees a private block; the segment of a named queue is detached.
    ~CCommonQueue() override;

    /**
     * Same arguments as the constructor. Deliberately only forgets a block already reached (it is
     * neither freed nor detached here): call SetInfo before first use.
     */
    void SetInfo(int nDataSize, char const *pKey, int nMode, int nCount, int nLock = LockAdds);
    /// The key's UTF-8 form is used as in the form above.
    void SetInfo(int nDataSize, CString strKey, int nMode, int nCount, int nLock = LockAdds);

    /**
     * For the one process that owns a named queue: creates the segment and zeroes it. A segment
     * that another process made is left as it is, so a second process does not clear a live
     * queue; on a queue object that is already attached, though, Init zeroes the queue again.
     * Does nothing for a process-local queue. Always returns TRUE.
     */
    BOOL Init();

    /**
     * The block, reached on first use: a private block is allocated zeroed; a named segment is
     * attached, or created when it does not exist yet. A named queue checks at every call that the
     * handle is still attached to a segment large enough for the ring (see the class comment).
     * Null when it cannot be reached (the next call tries again).
     */
    QUEUEMEM *GetQueue();
    /// Address of slot 0 in the given block.
    char *GetMem(QUEUEMEM *pQueue);

    /**
     * Appends one record of exactly the data size (pData must hold that many bytes), status 1,
     * expiring nTimeOut ms from now. Retries left: nRetry - 1 (at least 0); in mode 2 always 1.
     * The slot index written goes to pPos and pPos2 where given. Returns FALSE only when the
     * block cannot be reached, the positions are out of range, or the lock of a named queue was
     * left unusable (a holder died between finding its predecessor dead and repairing the
     * lock); a full ring is overwritten.
     */
    BOOL Add(char *pData, int *pPos = nullptr, int nTimeOut = 10000, int nRetry = 1,
             int *pPos2 = nullptr);

    /**
     * Mode 0: takes the oldest record (the arguments but pPos are ignored; the status byte is
     * neither read nor changed). Modes 1 and 2: searches for a record with status nStatus, from
     * StartPos over the whole ring for nPos -1, or at one slot (absolute with bAbsolute, else
     * relative to StartPos); expired records are re-armed or abandoned on the way. Status 0
     * matches any slot; a search for 3 re-arms nothing. A found record stays in place.
     * Returns the record's data (valid until it is overwritten) or null; its slot goes to pPos.
     */
    char *Get(int nPos = SearchAll, int nStatus = StatusAny, int bAbsolute = Relative,
              int *pPos = nullptr);

    /// Writes the status byte of a record, then trims free records at the start. 0 when out of
    /// range (beyond one wrap of the ring).
    BOOL SetStatus(int nPos, int nStatus, int bAbsolute = Relative);
    /// Reads the status byte of a record. 0 when out of range.
    BOOL GetStatus(int nPos, int &nStatus, int bAbsolute = Relative);

    /// StartPos + nPos, wrapped once.
    int GetAbsolutePos(int nPos);
    /// Records between StartPos and EndPos.
    int GetCount();
    /// Advances StartPos over free records; a busy record holds it back. Returns TRUE.
    BOOL CheckAndDelete();
    /// Drops nCount records from the start without looking at them; negative empties the queue.
    BOOL Delete(int nCount = -1);
    /// Empties the queue: both positions become 0 in one store. Record bytes are kept.
    BOOL DeleteAll();
    /// Logs "StartPos = %d, EndPos = %d\r\n" through the message log.
    void PrintMemPos();

    /**
     * Takes the lock that Add takes, so that a caller can hold off every Add of every process
     * (they hide QSharedMemory's own lock(), which Add of a named queue no longer takes; called
     * through a QSharedMemory reference, the segment's semaphore is taken and Add is not held
     * off). A process-local queue has no such lock: the segment's lock() is called, as before.
     * Returns true when the lock is held.
     */
    bool lock();
    /// Releases the lock taken by lock().
    bool unlock();

protected:
    /// The block, null until first reached.
    QAtomicPointer<QUEUEMEM> m_pQueue;
    /// Serialises Add between this process's threads when the lock flag is set: for a
    /// process-local queue, and for a named one whose robust lock could not be had.
    QMutex *m_pMutex;
    /// Nonzero: Add is exclusive.
    int m_nLock;
    /// A QueueMode.
    int m_nMode;
    /// Record slots in the ring.
    int m_nCount;
    /// Slot size: data size + 12.
    int m_nSize;
    /// The key as UTF-8 text; empty for a process-local queue.
    QString m_strName;

private:
    Q_DISABLE_COPY(CCommonQueue)
    /// The lock of a named queue's Adds, beside its segment.
    QueueLock *m_pAddLock;
    friend struct CCommonQueuePrivate;
    BOOL addRecord(const char *pData, int nBytes, int *pPos, int nTimeOut, int nRetry, int *pPos2,
                   bool bLock);
    QUEUEMEM *reachBlock();
    QUEUEMEM *attachedBlock();
    int normalise(QUEUEMEM *q, int nPos, int bAbsolute) const;
    void trim(QUEUEMEM *q);
};
