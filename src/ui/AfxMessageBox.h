// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file AfxMessageBox.h
 * The class-library message box, shown with the standard QMessageBox and titled with the
 * application name (SetAppName).
 *
 * Only three type codes are understood, compared as whole numbers:
 * - MB_OK (0): an information box; returns IDOK (1).
 * - MB_YESNO (4): returns IDYES (6) for Yes, IDNO (7) for No or a closed box.
 * - MB_ABORTRETRYIGNORE (2): returns IDIGNORE (5), IDRETRY (4), or IDABORT (3) for Abort or a
 *   closed box.
 *
 * Any other type — including MB_OK combined with an icon, default-button or modality flag, and
 * MB_OKCANCEL, MB_YESNOCANCEL, MB_RETRYCANCEL — deliberately shows nothing and returns IDOK (1).
 * The help id is ignored. Call from the user-interface thread only.
 */

#include "CString.h"
#include "WinTypes.h"
#include "vantor_export.h"

/// Shows `text` (read as Latin-1) in a box of the given type; see the file comment for codes.
VANTOR_EXPORT int AfxMessageBox(const char *text, unsigned int type = MB_OK,
                                unsigned int helpId = 0);
/**
 * The same with the text's narrow data. Those bytes are UTF-8 and are then read as Latin-1 like
 * any narrow text given to the first form, so only ASCII text shows unchanged: kept as ported
 * applications have always seen it.
 */
VANTOR_EXPORT int AfxMessageBox(CString text, unsigned int type = MB_OK, unsigned int helpId = 0);
