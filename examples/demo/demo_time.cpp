// SPDX-License-Identifier: MIT
// Time records and calendars: SYSTEMTIME, FILETIME (milliseconds since 1970 UTC), QDateTime,
// the log-line stamp, the week of the month and the lunar calendar.
#include "Demo.h"

#include <Vantor.h>

static int run(DemoContext &)
{
    // A local calendar time through both records and back to a QDateTime.
    SYSTEMTIME st = {};
    st.wYear = 2026;
    st.wMonth = 6;
    st.wDay = 14;
    st.wHour = 9;
    st.wMinute = 30;
    st.wSecond = 15;
    st.wMilliseconds = 250;
    FILETIME ft;
    SystemTimeToFileTime(&st, &ft, true);
    const long long ms = (static_cast<long long>(ft.dwHighDateTime) << 32) | ft.dwLowDateTime;
    SYSTEMTIME back;
    FileTimeToSystemTime(&ft, &back, true);
    const QDateTime dt = GetQDateTime(ms, true);
    demoSay(QStringLiteral("2026-06-14 09:30:15.250 local = %1 ms since 1970 UTC").arg(ms));
    demoSay(QStringLiteral("back to SYSTEMTIME: %1-%2-%3 %4:%5:%6.%7, day of week %8 (7 = Sunday)")
                .arg(back.wYear)
                .arg(back.wMonth, 2, 10, QLatin1Char('0'))
                .arg(back.wDay, 2, 10, QLatin1Char('0'))
                .arg(back.wHour, 2, 10, QLatin1Char('0'))
                .arg(back.wMinute, 2, 10, QLatin1Char('0'))
                .arg(back.wSecond, 2, 10, QLatin1Char('0'))
                .arg(back.wMilliseconds, 3, 10, QLatin1Char('0'))
                .arg(back.wDayOfWeek));
    demoSay(QStringLiteral("as QDateTime (milliseconds dropped): %1")
                .arg(dt.toString(Qt::ISODateWithMs)));

    CTimeEx calc;
    demoSay(QStringLiteral("log stamp now: %1").arg(calc.GetTimeString().text));
    TimeStruct today;
    const int week = calc.GetCurrTime(&today, 1);
    demoSay(QStringLiteral("today is in week %1 of the month (weeks start on Monday)").arg(week));
    demoSay(QStringLiteral("3725 s as a duration: %1, rounded to minutes %2, to hours %3")
                .arg(calc.GetTimeString(3725, 7).text, calc.GetTimeString(3725, 3).text,
                     calc.GetTimeString(3725, 1).text));

    QDate solar;
    if (!Lunar::toSolar(QDate(2025, 8, 15), solar))
        return 1;
    demoSay(QStringLiteral("lunar 2025-08-15 (Chuseok) is %1 in the Gregorian calendar")
                .arg(solar.toString(Qt::ISODate)));

    return back.wYear == st.wYear && back.wDay == st.wDay && back.wMilliseconds == 250 ? 0 : 1;
}

static DemoSection section(20, "Time and calendar", run);
