// SPDX-License-Identifier: MIT
#include "Lunar.h"

#include "LunarTable_p.h"

namespace {

using namespace VantorLunarTable;

// Days counted for a month code: the month plus the leap month that follows it, if any.
constexpr int PairDays[7] = {0, 29, 30, 58, 59, 59, 60};

// Lunar day 1 of month 1 of FirstYear is the 23rd day of that Gregorian year.
constexpr int FirstDayOffset = 22;

int codeOf(int year, int month)
{
    return MonthCodes[(year - FirstYear) * 12 + month - 1];
}

int gregorianYearLength(int year)
{
    if (year % 400 == 0)
        return 366;
    if (year % 100 == 0)
        return 365;
    return year % 4 == 0 ? 366 : 365;
}

} // namespace

int Lunar::lastDay(int year, int month)
{
    if (year < FirstYear || year > LastYear || month < 1 || month > 12)
        return 0;
    const int code = codeOf(year, month);
    return (code == 2 || code == 5 || code == 6) ? 30 : 29;
}

int Lunar::toSolar(QDate lunar, QDate &solar)
{
    const int year = lunar.year();
    const int month = lunar.month();
    const int day = lunar.day();
    const int length = lastDay(year, month);
    if (length == 0 || day < 1 || day > length)
        return 0;

    // Ordinal day counted from 1 January of FirstYear (day 1). The date lies in the regular
    // month, so a leap month after it is never counted.
    int n = 0;
    for (int i = 0, end = (year - FirstYear) * 12 + month - 1; i < end; ++i)
        n += PairDays[MonthCodes[i]];
    n += day + FirstDayOffset;

    int solarYear = FirstYear;
    while (n > gregorianYearLength(solarYear)) {
        n -= gregorianYearLength(solarYear);
        ++solarYear;
    }

    // Each call fills its own copy of the month lengths, so concurrent calls cannot disturb
    // each other's February.
    int monthDays[12] = {31, 0, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    monthDays[1] = gregorianYearLength(solarYear) - 337;
    int solarMonth = 1;
    while (n > monthDays[solarMonth - 1]) {
        n -= monthDays[solarMonth - 1];
        ++solarMonth;
    }

    solar = QDate(solarYear, solarMonth, n);
    return 1;
}
