// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

/// The numeric-text test and the rounding that device and form code use. Every member is static.
class VANTOR_EXPORT Number
{
public:
    /**
     * Nonzero when `str` looks like a number by this library's loose rule: digits and '-' are
     * accepted anywhere and any number of times ("1-2" passes), '.' marks a decimal point, and
     * an upper-case 'E' must be followed by '+' or '-' ("1E+5" passes, "1E5" and "1e+5" do not).
     * Any other character fails at once. A text with a decimal point passes only when
     * `allowDecimal` is true. Deliberately, an empty (or null) text counts as a number.
     */
    static int IsNumber(char *str, bool allowDecimal);
    /// The same test on the text's UTF-8 form (any non-ASCII character fails).
    static int IsNumber(CString str, bool allowDecimal);
    /**
     * Rounds half up for positive values and truncates negative ones, deliberately: 2.5 gives
     * 3, 2.4 gives 2, −2.5 and −2.7 give −2, −0.5 gives 0. Values beyond the int range are
     * clamped to it and NaN gives 0.
     */
    static int ToInt(double value);
};
