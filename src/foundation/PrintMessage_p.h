// SPDX-License-Identifier: MIT
#pragma once

// Internal hooks of the message log, for the library's own tests. Not installed, not part of
// the public interface: the names live in VantorPrivate and may change at any time.

#include "vantor_export.h"

#include <QtGlobal>

namespace VantorPrivate {

/// The clock the log reads, in seconds since 1970-01-01 UTC.
using LogClock = qint64 (*)();

/// Replaces the clock the log writer and SetLogFile read for dated names and expiry;
/// null restores the system clock.
VANTOR_EXPORT void setLogClock(LogClock clock);

/**
 * Opens the log file as SetLogFile does, with the open mode ("a" for nonzero `append`, else
 * "w") and the rewind mark chosen by the caller. Does not switch the log on.
 */
VANTOR_EXPORT void openLogFile(char const *name, int keepDays, int append, int maxSize);

} // namespace VantorPrivate
