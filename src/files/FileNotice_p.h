// SPDX-License-Identifier: MIT
#pragma once

// How the files classes tell the user about a missing file or folder without depending on the
// user-interface subsystem: the message-box code installs its box here when the library is
// loaded, and until then (or if it never does) the notice goes to the message log.

namespace VantorPrivate {

/// Shows `text` (Latin-1) to the user.
using FileNoticeFunction = void (*)(char const *text);

/// Installs the function that shows file notices; null sends them to the message log.
void SetFileNoticeFunction(FileNoticeFunction function);

/// Shows `text` (Latin-1) through the installed function, or logs it with a line end.
void ShowFileNotice(char const *text);

} // namespace VantorPrivate
