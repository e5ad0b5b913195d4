// SPDX-License-Identifier: MIT
#pragma once

// The C number conversions that the text readers use, made independent of the process's C
// locale (a QApplication sets it from the environment, and a German locale would otherwise
// read "3.5" as 3) and of the platform's overflow behaviour.

#include <QtGlobal>

#include <climits>
#include <cstdlib>

#include <locale.h>

namespace VantorText {

/// atoi: leading white space, optional sign, decimal digits up to the first other character.
/// Out-of-range values saturate at INT_MIN / INT_MAX, as the Windows C library does.
inline int atoi32(const char *s)
{
    if (!s)
        return 0;
    while (*s == ' ' || (*s >= '\t' && *s <= '\r'))
        ++s;
    bool negative = false;
    if (*s == '+' || *s == '-') {
        negative = *s == '-';
        ++s;
    }
    const qint64 limit = qint64(INT_MAX) + 1;
    qint64 value = 0;
    for (; *s >= '0' && *s <= '9'; ++s) {
        value = value * 10 + (*s - '0');
        if (value > limit)
            value = limit;
    }
    if (negative)
        return static_cast<int>(-value);
    return value > INT_MAX ? INT_MAX : static_cast<int>(value);
}

/// atof with the C locale's decimal point, whatever the process's locale is.
inline double atofC(const char *s)
{
    if (!s)
        return 0.0;
#ifdef Q_OS_WIN
    static const _locale_t c = _create_locale(LC_NUMERIC, "C");
    return _strtod_l(s, nullptr, c);
#else
    static const locale_t c = newlocale(LC_NUMERIC_MASK, "C", locale_t(nullptr));
    return strtod_l(s, nullptr, c);
#endif
}

} // namespace VantorText
