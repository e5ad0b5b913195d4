// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QtGlobal>

/**
 * A millisecond stopwatch: has a given number of milliseconds passed since the last Reset()?
 * It never resets itself on a time-out.
 */
class VANTOR_EXPORT TimeOutClass
{
public:
    /// Starts the stopwatch now.
    TimeOutClass();

    /// The reference time becomes now.
    void Reset();
    /**
     * True when more than nLimit milliseconds have passed since the reference time (exactly
     * nLimit is not yet a time-out). When the clock has been set back past the reference time,
     * the stopwatch restarts at the new time and the answer is nLimit < 0.
     */
    bool IsTimeOut(int nLimit);

protected:
    /// The reference time, milliseconds since 1970-01-01 UTC.
    qint64 m_nRefTime;
};
