// SPDX-License-Identifier: MIT
#pragma once

// Locking a QMutex so that ThreadSanitizer sees it. Qt 5's QMutex waits on futexes of its own,
// which the sanitizer cannot follow: it would take what one holder wrote and the next holder
// read for a race. In a sanitizer build every lock and unlock taken through these helpers is
// announced to it; in other builds they are exactly QMutex::lock and QMutex::unlock.
#include <QMutex>

#if defined(__SANITIZE_THREAD__)
extern "C" void __tsan_acquire(void *address);
extern "C" void __tsan_release(void *address);
#endif

namespace VantorPrivate {

template <typename Mutex>
inline void lockSeen(Mutex *mutex)
{
    mutex->lock();
#if defined(__SANITIZE_THREAD__)
    __tsan_acquire(mutex);
#endif
}

template <typename Mutex>
inline void unlockSeen(Mutex *mutex)
{
#if defined(__SANITIZE_THREAD__)
    __tsan_release(mutex);
#endif
    mutex->unlock();
}

/// QMutexLocker with the announcements above; a null mutex locks nothing.
template <typename Mutex = QMutex>
class MutexLocker
{
public:
    explicit MutexLocker(Mutex *mutex)
        : m_mutex(mutex)
    {
        if (m_mutex)
            lockSeen(m_mutex);
    }
    ~MutexLocker() { unlock(); }
    MutexLocker(const MutexLocker &) = delete;
    MutexLocker &operator=(const MutexLocker &) = delete;

    void unlock()
    {
        if (m_mutex)
            unlockSeen(m_mutex);
        m_mutex = nullptr;
    }

private:
    Mutex *m_mutex;
};

} // namespace VantorPrivate
