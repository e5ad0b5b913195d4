// SPDX-License-Identifier: MIT
#pragma once

// Internal hooks of CTextFile, for the library's own tests. Not installed, not part of the
// public interface: the names live in VantorPrivate and may change at any time.

#include "vantor_export.h"

namespace VantorPrivate {

/**
 * Switches the shortcuts of CTextFile on (the default) or off. Off, every file is decoded
 * through the text stream, every line is copied and every field read character by character;
 * on, plain ASCII files are read block by block and taken as they are (carriage returns
 * removed), and lines and fields without escapes are copied in one piece where no character
 * can reach past the buffer. Both ways give the same results; the tests compare them.
 */
VANTOR_EXPORT void setTextFileShortcuts(bool on);

/// Sets the size of the blocks in which the shortcut reads a file; 0 or less restores the
/// default (256 KiB).
VANTOR_EXPORT void setTextFileReadBlock(int bytes);

} // namespace VantorPrivate
