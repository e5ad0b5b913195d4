// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "WinTypes.h"
#include "vantor_export.h"

#include <QMutex>

/**
 * A plain mutex with the Windows-style constructor. It excludes the threads of this process
 * only: the initially-owned flag, the name and the security attributes are accepted so that
 * ported code compiles, and deliberately ignored. The mutex is not recursive and starts unlocked.
 */
class VANTOR_EXPORT CMutex : public QMutex
{
public:
    /// An unlocked mutex; the three arguments are accepted and ignored.
    explicit CMutex(int bInitiallyOwn = FALSE, char const *lpszName = nullptr,
                    _SECURITY_ATTRIBUTES *lpsaAttribute = nullptr);
    /// The same with the name as a CString, equally ignored.
    CMutex(int bInitiallyOwn, CString strName, _SECURITY_ATTRIBUTES *lpsaAttribute = nullptr);

    /// Blocks until the mutex is taken. Returns TRUE.
    BOOL Lock();
    /// Releases the mutex. Returns TRUE.
    BOOL Unlock();
};
