// SPDX-License-Identifier: MIT
#pragma once

#include "WinTypes.h"
#include "vantor_export.h"

#include <QThread>

#include <atomic>

/**
 * Base of the application's worker threads: a QThread with two handshake flags and a bounded
 * wait for the worker's end. run() is left to the derived class, which sets m_bExited as its
 * last act.
 *
 * The flags are written by one thread and read by another, so they are atomic; they are still
 * set and tested as plain booleans (m_bExited = true; if (!m_bControl) ...).
 */
class VANTOR_EXPORT ThreadBase : public QThread
{
    Q_OBJECT

public:
    /// A thread without parent; both flags false.
    ThreadBase();

    /**
     * Waits for m_bExited: while it is false, sleeps 100 ms, at most 50 times (about 5 s).
     * Deliberately returns TRUE whether or not the flag came up: the fixed bound is the rule.
     */
    BOOL CheckExited();

    /// For the owner and run() to agree on when to stop; the base only initialises it.
    std::atomic<bool> m_bControl;
    /// Set by run() as its last act; CheckExited() waits for it.
    std::atomic<bool> m_bExited;
};
