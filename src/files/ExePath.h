// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

/// The folders of the running program.
class VANTOR_EXPORT ExePath
{
public:
    /// The folder of the executable followed by "/". Works before a QCoreApplication exists.
    static CString GetExePath();
    /**
     * The folder above GetExePath(), with its trailing "/" ("C:/app/bin/" gives "C:/app/");
     * GetExePath() itself when it holds no "/" before its last one.
     */
    static CString GetAppPath();
};
