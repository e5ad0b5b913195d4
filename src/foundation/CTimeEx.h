// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "WinTypes.h"
#include "vantor_export.h"

#include <QDateTime>

#include <cstdint>
#include <ctime>

/**
 * The broken-down time record of calendar arithmetic (12 bytes).
 *
 * The fields are signed so that arithmetic may leave them briefly out of range (a day of 0, a
 * month of 13, a second of -5) until CTimeEx::RemakeTime normalises the record. There are no
 * milliseconds. `dayOfWeek` counts 0 = Monday ... 6 = Sunday, deliberately unlike SYSTEMTIME's
 * 1 = Monday ... 7 = Sunday. `week` is the week of the month (see CTimeEx::GetWeek) and is
 * filled only by the operations that say so.
 */
struct TimeStruct
{
    std::int32_t year = 0;     ///< Full year, e.g. 2024.
    std::int8_t month = 0;     ///< Month, 1 = January ... 12.
    std::int8_t week = 0;      ///< Week of the month, from 1; filled only where a member says so.
    std::int8_t day = 0;       ///< Day of the month, 1 ... 31.
    std::int8_t dayOfWeek = 0; ///< Day of the week, 0 = Monday ... 6 = Sunday.
    std::int8_t hour = 0;      ///< Hour, 0 ... 23.
    std::int8_t minute = 0;    ///< Minute, 0 ... 59.
    std::int8_t second = 0;    ///< Second, 0 ... 59.
};

static_assert(sizeof(TimeStruct) == 12, "TimeStruct keeps its record layout");

/**
 * Calendar arithmetic and the library's time texts.
 *
 * CTimeEx holds no state: every member uses only its arguments, so one default-constructed
 * object may serve the whole process, from any thread. Time values named `t` are seconds since
 * 1970 (time_t); 64-bit millisecond values are the library's FILETIME meaning (see SystemTime.h).
 */
class VANTOR_EXPORT CTimeEx
{
public:
    /// Holds no state; any instance serves every thread.
    CTimeEx();
    ~CTimeEx();

    // Record conversions

    /// Copies year, month, day, hour, minute and second into `st`; its day of week and
    /// milliseconds are left as they were.
    void ConvertTimeStruct(_SYSTEMTIME *st, TimeStruct *ts);
    /**
     * Fills `ts` from a C `tm` (year + 1900, month + 1) and sets the day of week. Only when
     * `week` is exactly 1 is the week of the month computed as well; otherwise the record's week
     * is left unchanged. Returns the week when it was computed, else the day of week.
     */
    int ConvertTimeStruct(TimeStruct *ts, tm *t, int week);
    /// The same as the `tm` form, from the date and time of `dt`.
    int ConvertTimeStruct(TimeStruct *ts, QDateTime &dt, int week);
    /**
     * The same from the current local date and time, except that here the week is computed
     * whenever `week` is nonzero (the conversions above need exactly 1).
     */
    int GetCurrTime(TimeStruct *ts, int week);

    /// The record's six fields read as UTC, in milliseconds since the epoch.
    long long GetFileTime(TimeStruct &ts);
    /**
     * The local wall-clock time of `t`, read as if it were UTC, in milliseconds since the epoch
     * (so the result is ahead of t * 1000 by the zone offset, by design). 0 when `t` cannot be
     * broken into local time.
     */
    long long GetFileTime(long long t);
    /**
     * Clears all of `st`, then fills year to second from `t` in local time (`local` nonzero) or
     * UTC, and milliseconds with `ms`. The day of week stays 0. On failure `st` stays all zero.
     */
    void GetSystemTime(_SYSTEMTIME &st, long long t, int local, int ms);
    /**
     * The time_t of the local date and time given (month 1-12), daylight saving decided by the
     * C library. When the values cannot be represented (a negative result, which includes every
     * time before 1970) the current time is returned instead.
     */
    long long GetTimeT(int year, int month, int day, int hour, int minute, int second);
    /// GetTimeT of year to second of `ts`; `week` and `dayOfWeek` are ignored, and fields out of
    /// range are carried by the C library (day 0 is the last day of the month before).
    long long GetTimeT(TimeStruct &ts);
    /// GetTimeT of year to second of `st`; its day of week and milliseconds are ignored.
    long long GetTimeT(_SYSTEMTIME &st);
    /// `t` broken into local time and rebuilt with GetTimeT (the current time when that fails).
    long long GetLocalTimeT(long long t);

    // Calendar arithmetic

    /// Day of week, 0 = Monday ... 6 = Sunday; -1 for an invalid date.
    int GetWeekDay(int year, int month, int day);
    /// Days of the month by the Gregorian rule (February: 29 in a year divisible by 400, 28 in
    /// another year divisible by 100, 29 in another year divisible by 4). 0 for a month
    /// outside 1-12.
    int GetLimitMonth(int year, int month);
    /**
     * Week of the month, 1-based. Week 1 runs from the 1st to the first Sunday and every Monday
     * starts the next week: (dow(1st) + day - 2) / 7 + 1, dow counting 1 = Monday.
     */
    int GetWeek(int year, int month, int day);
    /// GetWeek of the record's year, month and day; the record's own `week` is not read.
    int GetWeek(TimeStruct const &ts);
    /**
     * Normalises the record with at most one carry or borrow per field, from the seconds up
     * (second, minute, hour, month, then day against its month's length), then recomputes day
     * of week and week; returns the week. Deliberately not a full normalisation: a record with
     * 125 seconds or a day of 70 is still out of range afterwards. Change one field by a small
     * step and call this after each change.
     */
    int RemakeTime(TimeStruct *ts);
    /**
     * Steps the record back: kind 0 one year, 1 one month, 2 seven days, 3 one day (any other
     * kind changes nothing), then RemakeTime; returns the week. A day that does not exist in the
     * earlier month carries forward: 31 March minus one month is 3 March in a 28-day year.
     */
    int GetBeforeTime(TimeStruct &ts, int kind);
    /// 1 when `a` is later, -1 when earlier, 0 when year to second are equal. Week and day of
    /// week are not compared.
    int CompareTime(TimeStruct *a, TimeStruct *b);

    // Time texts

    /// "yyyy/mm/dd hh:mm:ss" of the record.
    CString GetTimeString(TimeStruct ts);
    /// "yyyy/mm/dd hh:mm:ss" of `t` in local time; empty for a negative `t`.
    CString GetTimeString(long t);
    /// "yyyy/mm/dd hh:mm:ss.mmm" of the millisecond value `v`, local time or UTC; empty for 0.
    CString GetTimeString(unsigned long long v, bool local);
    /// The same as the unsigned form.
    CString GetTimeString(long long v, bool local);
    /**
     * The current local time: bit 0 puts the date "yyyy/mm/dd " (with its trailing blank) first,
     * the time "hh:mm:ss" always follows, bit 1 appends ".mmm".
     */
    CString GetTimeStringUseFlag(int flags);
    /// The log-line stamp "yyyy/mm/dd hh:mm:ss.mmm" of now: GetTimeStringUseFlag(3).
    CString GetTimeString();
    /**
     * A duration text. Bit 0 asks for hours ("%d", any width), bit 1 for minutes ("%02d", the
     * total minutes when hours are not written), bit 2 for seconds ("%02d"), joined by ':'.
     * Hours without minutes round up from 31 minutes (30 rounds down); minutes without seconds
     * round up from 31 seconds (30 rounds down).
     * 3725 s: "1:02:05" (7), "1:02" (3), "1" (1), "62:05" (6).
     */
    CString GetTimeString(int seconds, int flags);
};
