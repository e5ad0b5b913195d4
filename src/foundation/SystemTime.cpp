// SPDX-License-Identifier: MIT
#include "SystemTime.h"

#include <QFileInfo>

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <time.h>
#endif

namespace {

// The two 32-bit words of a FILETIME, low word first, hold one signed 64-bit value.
qint64 fileTimeValue(const _FILETIME *ft)
{
    return qint64((quint64(ft->dwHighDateTime) << 32) | quint64(ft->dwLowDateTime));
}

void setFileTimeValue(_FILETIME *ft, qint64 value)
{
    ft->dwLowDateTime = DWORD(quint64(value) & 0xffffffffu);
    ft->dwHighDateTime = DWORD(quint64(value) >> 32);
}

Qt::TimeSpec specOf(bool local)
{
    return local ? Qt::LocalTime : Qt::UTC;
}

// The record's date and time (day of week ignored), or an invalid QDateTime when the date or
// the time does not exist.
QDateTime dateTimeOf(const _SYSTEMTIME *st, bool local)
{
    const QDate date(st->wYear, st->wMonth, st->wDay);
    const QTime time(st->wHour, st->wMinute, st->wSecond, st->wMilliseconds);
    if (!date.isValid() || !time.isValid())
        return QDateTime();
    return QDateTime(date, time, specOf(local));
}

} // namespace

BOOL FileTimeToSystemTime(_FILETIME *ft, _SYSTEMTIME *st, bool local)
{
    if (!ft || !st)
        return FALSE;
    const QDateTime dt = QDateTime::fromMSecsSinceEpoch(fileTimeValue(ft), specOf(local));
    const QDate date = dt.date();
    const QTime time = dt.time();
    st->wYear = WORD(date.year());
    st->wMonth = WORD(date.month());
    st->wDayOfWeek = WORD(date.dayOfWeek());
    st->wDay = WORD(date.day());
    st->wHour = WORD(time.hour());
    st->wMinute = WORD(time.minute());
    st->wSecond = WORD(time.second());
    st->wMilliseconds = WORD(time.msec());
    return TRUE;
}

BOOL SystemTimeToFileTime(_SYSTEMTIME *st, _FILETIME *ft, bool local)
{
    if (!st || !ft)
        return FALSE;
    setFileTimeValue(ft, dateTimeOf(st, local).toMSecsSinceEpoch());
    return TRUE;
}

QDateTime GetQDateTime(long long ms, bool local)
{
    _FILETIME ft;
    setFileTimeValue(&ft, ms);
    _SYSTEMTIME st;
    FileTimeToSystemTime(&ft, &st, local);
    return QDateTime(QDate(st.wYear, st.wMonth, st.wDay), QTime(st.wHour, st.wMinute, st.wSecond),
                     specOf(local));
}

QDateTime GetQDateTime(bool local)
{
    if (local)
        return QDateTime::currentDateTime();
    return GetQDateTime(GetMSecsSinceEpoch(), false);
}

long long GetMSecsSinceEpoch()
{
    return QDateTime::currentMSecsSinceEpoch();
}

long long GetMSecsSinceEpoch(QDateTime &dt)
{
    return dt.toMSecsSinceEpoch();
}

long long GetFileTime(CString path)
{
    return QFileInfo(path.text).lastModified().toMSecsSinceEpoch();
}

BOOL SetLocalTimeEx(_SYSTEMTIME *st)
{
    if (!st)
        return FALSE;
#ifdef Q_OS_WIN
    SYSTEMTIME copy = *st;
    return ::SetLocalTime(&copy);
#else
    // The local calendar fields become an instant first, so the clock is set in UTC like every
    // other Linux clock; an impossible date is refused before the clock is touched.
    const QDateTime dt = dateTimeOf(st, true);
    if (!dt.isValid())
        return FALSE;
    const qint64 ms = dt.toMSecsSinceEpoch();
    timespec ts;
    ts.tv_sec = time_t(ms / 1000);
    ts.tv_nsec = long(ms % 1000) * 1000000L;
    if (ts.tv_nsec < 0) {
        ts.tv_sec -= 1;
        ts.tv_nsec += 1000000000L;
    }
    return clock_settime(CLOCK_REALTIME, &ts) == 0 ? TRUE : FALSE;
#endif
}
