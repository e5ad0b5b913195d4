// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QSharedMemory>
#include <QString>
#include <QSystemSemaphore>

/**
 * Lets only one instance of an application run at a time.
 *
 * Construct one guard with a key of the application's choice at start and call tryToRun(): the
 * first process creates an 8-byte marker segment and keeps it for its lifetime; later processes
 * find the marker and are told to quit. Every step on the marker runs under a system semaphore,
 * so two processes starting at once cannot both win.
 *
 * The keys of the semaphore and the marker are the lowercase hexadecimal SHA-1 of the key's
 * UTF-8 bytes followed by "_memLockKey" and "_sharedmemKey": every process passing the same key
 * meets the same objects.
 *
 * A marker left behind by an instance that crashed (segments outlive their processes on Linux)
 * is cleared when the next guard is constructed, so a crash never blocks a restart.
 */
class VANTOR_EXPORT RunGuard
{
public:
    /**
     * Prepares the semaphore and marker of `key` (no instance is claimed yet) and clears a marker
     * that a crashed instance left behind.
     */
    explicit RunGuard(const QString &key);
    /// release(): the marker goes away with its last handle.
    ~RunGuard();

    /// True when another process holds the marker; false when this guard holds it itself.
    bool isAnotherRunning();
    /**
     * True when this process now holds the marker (also when it held it already); false when
     * another instance runs.
     */
    bool tryToRun();
    /// Gives up the marker if this guard holds it.
    void release();

private:
    Q_DISABLE_COPY(RunGuard)

    const QString key;
    const QString memLockKey;
    const QString sharedmemKey;

    QSharedMemory sharedMem;
    QSystemSemaphore memLock;
};
