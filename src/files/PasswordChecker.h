// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

/// Grades a password against the library's strength rule.
class VANTOR_EXPORT PasswordChecker
{
public:
    /**
     * 0 when the password is acceptable: at least 8 UTF-8 bytes with at least one ASCII letter,
     * one digit and one other byte (every byte of a non-ASCII character counts as other).
     * 1 when it has 7 bytes or fewer, 2 when it lacks one of the three kinds.
     */
    static int IsValid(CString password);
};
