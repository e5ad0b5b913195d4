// SPDX-License-Identifier: MIT
#include "CTimeEx.h"

#include "SystemTime.h"

#include <cstring>
#include <time.h>

namespace {

bool brokenDown(long long t, bool local, tm *out)
{
    const time_t tt = time_t(t);
    if (qint64(tt) != t)
        return false;
#ifdef Q_OS_WIN
    return (local ? _localtime64_s(out, &tt) : _gmtime64_s(out, &tt)) == 0;
#else
    return (local ? localtime_r(&tt, out) : gmtime_r(&tt, out)) != nullptr;
#endif
}

// Year to second of a C broken-down time; day of week and milliseconds untouched.
void copyFields(_SYSTEMTIME &st, const tm &parts)
{
    st.wYear = WORD(parts.tm_year + 1900);
    st.wMonth = WORD(parts.tm_mon + 1);
    st.wDay = WORD(parts.tm_mday);
    st.wHour = WORD(parts.tm_hour);
    st.wMinute = WORD(parts.tm_min);
    st.wSecond = WORD(parts.tm_sec);
}

// Fills the record from calendar fields; the week only when asked. Returns the week when it was
// computed, else the day of week.
int fillRecord(CTimeEx &calc, TimeStruct *ts, int year, int month, int day, int hour, int minute,
               int second, bool computeWeek)
{
    if (!ts)
        return 0;
    ts->year = year;
    ts->month = std::int8_t(month);
    ts->day = std::int8_t(day);
    ts->hour = std::int8_t(hour);
    ts->minute = std::int8_t(minute);
    ts->second = std::int8_t(second);
    ts->dayOfWeek = std::int8_t(calc.GetWeekDay(year, month, day));
    if (!computeWeek)
        return ts->dayOfWeek;
    ts->week = std::int8_t(calc.GetWeek(year, month, day));
    return ts->week;
}

int fillRecord(CTimeEx &calc, TimeStruct *ts, const QDateTime &dt, bool computeWeek)
{
    const QDate d = dt.date();
    const QTime t = dt.time();
    return fillRecord(calc, ts, d.year(), d.month(), d.day(), t.hour(), t.minute(), t.second(),
                      computeWeek);
}

long long millisecondsOf(_SYSTEMTIME &st)
{
    long long ms = 0;
    SystemTimeToFileTime(&st, &ms, false);
    return ms;
}

CString dateTimeText(int year, int month, int day, int hour, int minute, int second)
{
    return CString(
        QString::asprintf("%04d/%02d/%02d %02d:%02d:%02d", year, month, day, hour, minute, second));
}

CString millisecondText(long long v, bool local)
{
    if (v == 0)
        return CString();
    _SYSTEMTIME st;
    FileTimeToSystemTime(&v, &st, local);
    return CString(QString::asprintf("%04d/%02d/%02d %02d:%02d:%02d.%03d", st.wYear, st.wMonth,
                                     st.wDay, st.wHour, st.wMinute, st.wSecond, st.wMilliseconds));
}

// One step of the month carry shared by the month and day rules.
void carryMonth(int &year, int &month)
{
    if (month < 1) {
        month += 12;
        year -= 1;
    } else if (month > 12) {
        month -= 12;
        year += 1;
    }
}

} // namespace

CTimeEx::CTimeEx() = default;
CTimeEx::~CTimeEx() = default;

void CTimeEx::ConvertTimeStruct(_SYSTEMTIME *st, TimeStruct *ts)
{
    if (!st || !ts)
        return;
    st->wYear = WORD(ts->year);
    st->wMonth = WORD(ts->month);
    st->wDay = WORD(ts->day);
    st->wHour = WORD(ts->hour);
    st->wMinute = WORD(ts->minute);
    st->wSecond = WORD(ts->second);
}

int CTimeEx::ConvertTimeStruct(TimeStruct *ts, tm *t, int week)
{
    if (!t)
        return 0;
    return fillRecord(*this, ts, t->tm_year + 1900, t->tm_mon + 1, t->tm_mday, t->tm_hour,
                      t->tm_min, t->tm_sec, week == 1);
}

int CTimeEx::ConvertTimeStruct(TimeStruct *ts, QDateTime &dt, int week)
{
    return fillRecord(*this, ts, dt, week == 1);
}

int CTimeEx::GetCurrTime(TimeStruct *ts, int week)
{
    return fillRecord(*this, ts, QDateTime::currentDateTime(), week != 0);
}

long long CTimeEx::GetFileTime(TimeStruct &ts)
{
    _SYSTEMTIME st;
    std::memset(&st, 0, sizeof st);
    ConvertTimeStruct(&st, &ts);
    return millisecondsOf(st);
}

long long CTimeEx::GetFileTime(long long t)
{
    _SYSTEMTIME st;
    std::memset(&st, 0, sizeof st);
    tm parts;
    if (!brokenDown(t, true, &parts))
        return 0;
    copyFields(st, parts);
    // The local wall clock read as UTC, deliberately.
    return millisecondsOf(st);
}

void CTimeEx::GetSystemTime(_SYSTEMTIME &st, long long t, int local, int ms)
{
    std::memset(&st, 0, sizeof st);
    tm parts;
    if (!brokenDown(t, local != 0, &parts))
        return;
    copyFields(st, parts);
    st.wMilliseconds = WORD(ms);
}

long long CTimeEx::GetTimeT(int year, int month, int day, int hour, int minute, int second)
{
    tm parts;
    std::memset(&parts, 0, sizeof parts);
    parts.tm_year = year - 1900;
    parts.tm_mon = month - 1;
    parts.tm_mday = day;
    parts.tm_hour = hour;
    parts.tm_min = minute;
    parts.tm_sec = second;
    parts.tm_isdst = -1; // let the C library decide daylight saving
    const long long t = mktime(&parts);
    if (t < 0)
        return time(nullptr);
    return t;
}

long long CTimeEx::GetTimeT(TimeStruct &ts)
{
    return GetTimeT(ts.year, ts.month, ts.day, ts.hour, ts.minute, ts.second);
}

long long CTimeEx::GetTimeT(_SYSTEMTIME &st)
{
    return GetTimeT(st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond);
}

long long CTimeEx::GetLocalTimeT(long long t)
{
    tm parts;
    if (!brokenDown(t, true, &parts))
        return time(nullptr);
    return GetTimeT(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                    parts.tm_min, parts.tm_sec);
}

int CTimeEx::GetWeekDay(int year, int month, int day)
{
    return QDate(year, month, day).dayOfWeek() - 1;
}

int CTimeEx::GetLimitMonth(int year, int month)
{
    static const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12)
        return 0;
    if (month != 2)
        return days[month - 1];
    const bool leap = year % 400 == 0 || (year % 100 != 0 && year % 4 == 0);
    return leap ? 29 : 28;
}

int CTimeEx::GetWeek(int year, int month, int day)
{
    const int firstDay = QDate(year, month, 1).dayOfWeek();
    return (firstDay + day - 2) / 7 + 1;
}

int CTimeEx::GetWeek(TimeStruct const &ts)
{
    return GetWeek(ts.year, ts.month, ts.day);
}

int CTimeEx::RemakeTime(TimeStruct *ts)
{
    if (!ts)
        return 0;
    int year = ts->year;
    int month = ts->month;
    int day = ts->day;
    int hour = ts->hour;
    int minute = ts->minute;
    int second = ts->second;

    // One carry per field, from the seconds up; each step sees what the previous one left.
    const auto carry = [](int &value, int unit, int &next) {
        if (value < 0) {
            value += unit;
            next -= 1;
        } else if (value >= unit) {
            value -= unit;
            next += 1;
        }
    };
    carry(second, 60, minute);
    carry(minute, 60, hour);
    carry(hour, 24, day);
    carryMonth(year, month);
    if (day < 1) {
        month -= 1;
        carryMonth(year, month);
        day += GetLimitMonth(year, month);
    } else {
        const int length = GetLimitMonth(year, month);
        if (day > length) {
            day -= length;
            month += 1;
            carryMonth(year, month);
        }
    }

    return fillRecord(*this, ts, year, month, day, hour, minute, second, true);
}

int CTimeEx::GetBeforeTime(TimeStruct &ts, int kind)
{
    switch (kind) {
    case 0:
        ts.year -= 1;
        break;
    case 1:
        ts.month = std::int8_t(ts.month - 1);
        break;
    case 2:
        ts.day = std::int8_t(ts.day - 7);
        break;
    case 3:
        ts.day = std::int8_t(ts.day - 1);
        break;
    default:
        break;
    }
    return RemakeTime(&ts);
}

int CTimeEx::CompareTime(TimeStruct *a, TimeStruct *b)
{
    if (!a || !b)
        return 0;
    const int left[6] = {a->year, a->month, a->day, a->hour, a->minute, a->second};
    const int right[6] = {b->year, b->month, b->day, b->hour, b->minute, b->second};
    for (int i = 0; i < 6; ++i) {
        if (left[i] != right[i])
            return left[i] > right[i] ? 1 : -1;
    }
    return 0;
}

CString CTimeEx::GetTimeString(TimeStruct ts)
{
    return dateTimeText(ts.year, ts.month, ts.day, ts.hour, ts.minute, ts.second);
}

CString CTimeEx::GetTimeString(long t)
{
    tm parts;
    if (t < 0 || !brokenDown(t, true, &parts))
        return CString();
    return dateTimeText(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour,
                        parts.tm_min, parts.tm_sec);
}

CString CTimeEx::GetTimeString(unsigned long long v, bool local)
{
    return millisecondText(static_cast<long long>(v), local);
}

CString CTimeEx::GetTimeString(long long v, bool local)
{
    return millisecondText(v, local);
}

CString CTimeEx::GetTimeStringUseFlag(int flags)
{
    const QDateTime now = QDateTime::currentDateTime();
    const QDate d = now.date();
    const QTime t = now.time();
    QString text;
    if (flags & 1)
        text = QString::asprintf("%04d/%02d/%02d ", d.year(), d.month(), d.day());
    text += QString::asprintf("%02d:%02d:%02d", t.hour(), t.minute(), t.second());
    if (flags & 2)
        text += QString::asprintf(".%03d", t.msec());
    return CString(text);
}

CString CTimeEx::GetTimeString()
{
    return GetTimeStringUseFlag(3);
}

CString CTimeEx::GetTimeString(int seconds, int flags)
{
    const bool hours = flags & 1;
    const bool minutes = flags & 2;
    const bool secs = flags & 4;
    long long rest = seconds; // wide enough for the rounding near INT_MAX

    if (hours && !minutes) {
        const long long inHour = rest / 60 % 60;
        if (inHour > 30)
            rest += (60 - inHour) * 60;
    }
    if (minutes && !secs) {
        const long long inMinute = rest % 60;
        if (inMinute >= 31)
            rest += 60 - inMinute;
    }

    QString text;
    if (hours) {
        text += QString::number(rest / 3600);
        rest %= 3600;
    }
    if (minutes) {
        if (hours)
            text += QLatin1Char(':');
        text += QString::asprintf("%02lld", rest / 60);
        rest %= 60;
    }
    if (secs) {
        if (hours || minutes)
            text += QLatin1Char(':');
        text += QString::asprintf("%02lld", rest);
    }
    return CString(text);
}
