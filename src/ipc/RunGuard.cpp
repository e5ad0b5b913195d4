// SPDX-License-Identifier: MIT
#include "RunGuard.h"

#include <QCryptographicHash>

namespace {

QString generateKeyHash(const QString &key, const char *salt)
{
    QByteArray data = key.toUtf8();
    data.append(salt);
    return QString::fromLatin1(QCryptographicHash::hash(data, QCryptographicHash::Sha1).toHex());
}

} // namespace

RunGuard::RunGuard(const QString &key)
    : key(key)
    , memLockKey(generateKeyHash(key, "_memLockKey"))
    , sharedmemKey(generateKeyHash(key, "_sharedmemKey"))
    , sharedMem(sharedmemKey)
    , memLock(memLockKey, 1, QSystemSemaphore::Open)
{
    // The marker is reached through its native key, which names the same segment but takes no
    // semaphore of its own: every step on it already runs under memLock. On System V systems the
    // key files of two semaphores can meet in one semaphore once a file has been deleted and its
    // inode reused; a marker step that took a second semaphore while memLock is held could then
    // wait on memLock itself.
    sharedMem.setNativeKey(sharedMem.nativeKey());

    memLock.acquire();
    {
        // The last handle to leave a marker removes it: this clears a marker that a crashed
        // instance left behind, and leaves a live one alone.
        QSharedMemory fix;
        fix.setNativeKey(sharedMem.nativeKey());
        if (fix.attach(QSharedMemory::ReadWrite))
            fix.detach();
    }
    memLock.release();
}

RunGuard::~RunGuard()
{
    release();
}

bool RunGuard::isAnotherRunning()
{
    if (sharedMem.isAttached())
        return false;

    memLock.acquire();
    const bool isRunning = sharedMem.attach(QSharedMemory::ReadWrite);
    if (isRunning)
        sharedMem.detach();
    memLock.release();

    return isRunning;
}

bool RunGuard::tryToRun()
{
    // Asking again while holding the marker keeps it.
    if (sharedMem.isAttached())
        return true;
    if (isAnotherRunning())
        return false;

    memLock.acquire();
    const bool result = sharedMem.create(8, QSharedMemory::ReadWrite);
    memLock.release();
    if (!result) {
        release();
        return false;
    }
    return true;
}

void RunGuard::release()
{
    memLock.acquire();
    if (sharedMem.isAttached())
        sharedMem.detach();
    memLock.release();
}
