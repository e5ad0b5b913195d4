// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QDate>

/**
 * Conversion from the Korean lunisolar (lunar) calendar to the Gregorian calendar, for the lunar
 * years 1841 to 2043, from a built-in table of month lengths and leap months.
 *
 * A lunar date travels in a QDate whose year, month and day fields are read as lunar. It always
 * names the regular month, never the leap month that may follow it. Because QDate checks its
 * fields as Gregorian, a lunar day that does not exist in the Gregorian month of the same number
 * (such as the 30th of the 2nd month) cannot be passed and is refused.
 *
 * Safe to call from several threads.
 */
class VANTOR_EXPORT Lunar
{
public:
    /// Days of the regular lunar month (29 or 30, not its leap month); 0 for a year outside
    /// 1841-2043 or a month outside 1-12.
    static int lastDay(int year, int month);
    /**
     * Converts the lunar date in `lunar` to the Gregorian date in `solar` and returns 1.
     * Returns 0 and leaves `solar` unchanged for a year outside 1841-2043, a month outside 1-12
     * or a day outside 1 to lastDay. The 30th of the 12th month of 2043 lies in 2044.
     */
    static int toSolar(QDate lunar, QDate &solar);
};
