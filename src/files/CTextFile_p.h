// SPDX-License-Identifier: MIT
#pragma once

// Internal hook of CTextFile, for the library's own tests. Not installed, not part of the
// public interface: the name lives in VantorPrivate and may change at any time.

#include "vantor_export.h"

namespace VantorPrivate {

/**
 * Switches the shortcuts of CTextFile on (the default) or off. Off, every file is decoded
 * through the text stream, every line is copied and every field read character by character;
 * on, plain ASCII files are taken as they are (carriage returns removed), lines are copied in
 * one piece and plain fields that fit with room to spare are copied in one piece. Both ways
 * give the same results; the tests compare them.
 */
VANTOR_EXPORT void setTextFileShortcuts(bool on);

} // namespace VantorPrivate
