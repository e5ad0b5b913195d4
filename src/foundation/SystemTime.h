// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file SystemTime.h
 * Conversions between the time records SYSTEMTIME and FILETIME, QDateTime and file times.
 *
 * In this library a FILETIME holds one signed 64-bit count of milliseconds since
 * 1970-01-01 00:00:00 UTC (the unit of QDateTime), never the Windows count of 100-ns intervals
 * since 1601. A SYSTEMTIME's wDayOfWeek counts 1 = Monday ... 7 = Sunday; it is written by
 * FileTimeToSystemTime and ignored by every reader.
 *
 * Every conversion takes a `local` flag: true means local time, false means UTC.
 */

#include "CString.h"
#include "WinTypes.h"
#include "vantor_export.h"

#include <QDateTime>

/**
 * Breaks the millisecond instant in `ft` into calendar fields, in local time (`local` true) or
 * UTC, and fills all eight fields of `st` (day of week 1 = Monday ... 7 = Sunday).
 * Returns TRUE.
 */
VANTOR_EXPORT BOOL FileTimeToSystemTime(_FILETIME *ft, _SYSTEMTIME *st, bool local);

/**
 * Reads year, month, day, hour, minute, second and milliseconds of `st` as local time (`local`
 * true) or UTC and stores the instant in `ft` as milliseconds since the epoch. The day of week
 * is ignored. An invalid date or time stores what an invalid QDateTime gives. Returns TRUE.
 */
VANTOR_EXPORT BOOL SystemTimeToFileTime(_SYSTEMTIME *st, _FILETIME *ft, bool local);

/// FileTimeToSystemTime of a millisecond value kept in a 64-bit integer instead of a FILETIME.
inline BOOL FileTimeToSystemTime(long long *ms, _SYSTEMTIME *st, bool local)
{
    if (!ms)
        return FALSE;
    _FILETIME ft;
    ft.dwLowDateTime = DWORD(static_cast<unsigned long long>(*ms) & 0xffffffffu);
    ft.dwHighDateTime = DWORD(static_cast<unsigned long long>(*ms) >> 32);
    return FileTimeToSystemTime(&ft, st, local);
}

/// The same for an unsigned 64-bit integer, read as the signed value of the same bits.
inline BOOL FileTimeToSystemTime(unsigned long long *ms, _SYSTEMTIME *st, bool local)
{
    return FileTimeToSystemTime(reinterpret_cast<long long *>(ms), st, local);
}

/// SystemTimeToFileTime into a 64-bit integer instead of a FILETIME.
inline BOOL SystemTimeToFileTime(_SYSTEMTIME *st, long long *ms, bool local)
{
    _FILETIME ft;
    if (!ms || !SystemTimeToFileTime(st, &ft, local))
        return FALSE;
    *ms = static_cast<long long>((static_cast<unsigned long long>(ft.dwHighDateTime) << 32) |
                                 ft.dwLowDateTime);
    return TRUE;
}

/**
 * The instant `ms` (milliseconds since the epoch) as a QDateTime in local time or UTC.
 * The milliseconds are deliberately dropped: the result is on a whole second.
 */
VANTOR_EXPORT QDateTime GetQDateTime(long long ms, bool local);

/**
 * Now. With `local` true: QDateTime::currentDateTime(), milliseconds kept. With false:
 * GetQDateTime(GetMSecsSinceEpoch(), false), a UTC value without milliseconds. The asymmetry
 * is intended.
 */
VANTOR_EXPORT QDateTime GetQDateTime(bool local);

/// The current time in milliseconds since 1970-01-01 00:00:00 UTC.
VANTOR_EXPORT long long GetMSecsSinceEpoch();
/// The milliseconds since the epoch of `dt`.
VANTOR_EXPORT long long GetMSecsSinceEpoch(QDateTime &dt);

/**
 * The last-modification time of the named file in milliseconds since the epoch. For a file that
 * does not exist this is what an invalid QDateTime gives; callers treat it as no time.
 */
VANTOR_EXPORT long long GetFileTime(CString path);

/**
 * Sets the system clock from a local-time record (year, month, day, hour, minute, second,
 * milliseconds; the day of week is ignored). Returns nonzero on success and 0 when the date is
 * invalid or the process may not change the system time.
 */
VANTOR_EXPORT BOOL SetLocalTimeEx(_SYSTEMTIME *st);
