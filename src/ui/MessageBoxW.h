// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file MessageBoxW.h
 * The Windows-API message box, shown with the library's large-type dialogs (MessageBoxDlg and
 * AskBoxDlg). `MessageBoxW` names both the free function and the class of its two static
 * operations; `MessageBoxW::Show(...)` still names the class.
 */

#include "WinTypes.h"
#include "vantor_export.h"

#include <QString>

/// Static entry points that run the large-type dialogs modally, each on a fresh dialog.
class VANTOR_EXPORT MessageBoxW
{
public:
    /// Runs a MessageBoxDlg (OK only) showing `text` until it is closed.
    static void Show(QString text);
    /// Runs an AskBoxDlg showing `text`; true when OK was pressed, false on Cancel or close.
    static bool Ask(QString text);
};

/**
 * Shows `text` (UTF-8) in a large-type dialog. MB_OK (0) runs MessageBoxW::Show and returns
 * IDOK (1); MB_YESNO (4) runs MessageBoxW::Ask and returns IDYES (6) when accepted, else
 * IDNO (7). Every other type, including MB_ABORTRETRYIGNORE and any combination with flags,
 * deliberately shows nothing and returns IDOK (1). `hwnd` and `caption` are ignored: the dialogs
 * carry fixed titles.
 */
VANTOR_EXPORT int MessageBoxW(HWND hwnd, const char *text, const char *caption, unsigned int type);
