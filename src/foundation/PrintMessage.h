// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file PrintMessage.h
 * The message log.
 *
 * The library's diagnostics go through PrintMessage, and through nothing else. The one exception
 * is the process launcher (ExecuteApp), which alone writes to Qt's debug stream, under the
 * logging category "vantor"; no other code of the library writes to Qt's debug stream.
 *
 * PrintMessage formats a message printf-style and routes it two ways:
 * - to the log: once SetLogFile has been called, the message (cut to 2,047 bytes) is queued in a
 *   process-local ring of 10,000 records of 2,048 bytes, from which the log writer copies it
 *   into the log file;
 * - to the application: while ExternPrintMessageFlag is nonzero, the message goes to the
 *   callback installed with SetPrintMessageFunction (cut to 2,047 bytes) or, without one, to
 *   standard output (whole).
 * Nothing is added to a message: no time stamp, no level, no application name, no line end.
 * The format carries its own "\n". Standard output is not flushed.
 *
 * The log writer. The library starts no thread by itself: a log file fills only while the
 * writer runs, which the application starts with StartPrintMessageThread(). Until then messages
 * wait in the ring; when the ring is full the oldest message gives way to the newest. While the
 * writer runs a message reaches the disk within about 100 ms: the writer sleeps until a message
 * is queued, and flushes the file whenever the ring runs empty. ClosePrintMessageThread() stops the
 * writer; messages still queued stay in the ring for a later StartPrintMessageThread(). When the
 * library is unloaded a running writer is stopped, writes everything still queued, and is joined
 * before the log is closed.
 *
 * The log file. SetLogFile(name, keepDays) with keepDays 0 writes one undated file under the
 * given name. With keepDays nonzero the log is kept per day under dated names: the date
 * "YYYYMMDD" goes before the last "." of the name (App.txt gives App20261115.txt; a.tar.gz gives
 * a.tar20261115.gz). A name without any "." uses the whole name both before and after the date
 * (log gives log20261115log), and a "." in a folder name counts like any other
 * (D:/a.b/log gives D:/a20261115.b/log). The dated file's folder is created when needed.
 *
 * Deliberate rules of the dated log, kept for existing installations:
 * - The first day is undated: the messages of the day SetLogFile is called go to the file under
 *   the plain name; dated files begin with the first change of date the writer sees.
 * - On each change of date the file of the day keepDays back is deleted and the new day's file
 *   opened in append mode. Once a date change has happened, every later message repeats this
 *   delete-and-reopen: the content is kept (append mode), and an expired file is removed at once
 *   whenever it appears.
 * - The file is opened in append mode with a rewind mark of 4,096 bytes: before each write past
 *   that size the stream is due to be rewound, which in append mode changes nothing (every write
 *   lands at the end, so the writer skips the rewind there), so the file keeps growing and
 *   loses nothing. A log opened in write mode is rewound at those points.
 */

#include "CString.h"
#include "vantor_export.h"

#include <QtGlobal>

#include <cstdarg>

/**
 * Nonzero (the initial value is 1): messages also go to the callback or to standard output.
 * 0: they go only to the log. A plain word without synchronisation, exported as data so that
 * the application and the console window can switch it directly.
 */
VANTOR_EXPORT extern int ExternPrintMessageFlag;

/// Formats a message printf-style and routes it (see the file comment). Callable from any
/// thread; the callback is called on the calling thread.
VANTOR_EXPORT void PrintMessage(char const *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(1, 2);

/// PrintMessage with the caller's variable-argument list. The list is only read (copied
/// internally), so the caller still ends it with va_end.
VANTOR_EXPORT void PrintMessageSub(char const *format, va_list args);

/**
 * Installs the function that receives each message while ExternPrintMessageFlag is nonzero, in
 * place of standard output; null goes back to standard output. The message arrives as CString
 * made from the formatted UTF-8 bytes, at most 2,047 bytes (a longer one is cut before the
 * character that would not fit). The function must be thread-safe when several threads log.
 */
VANTOR_EXPORT void SetPrintMessageFunction(void (*function)(CString));

/**
 * Switches the log file on (for good) and opens it under `name` (UTF-8; a relative name is
 * taken from the current directory) in append mode. `keepDays` 0 keeps one undated file;
 * nonzero keeps one file per day and deletes the one of the day `keepDays` back at each change
 * of date (see the file comment for the dated names and the deliberate first-day rule).
 * A log file opened by an earlier call is closed. Starts no thread: see
 * StartPrintMessageThread().
 */
VANTOR_EXPORT void SetLogFile(char const *name, int keepDays);

/**
 * Asks the log writer to stop after the message in hand. Returns at once: it neither waits for
 * the writer nor closes the log file. Queued messages stay queued.
 */
VANTOR_EXPORT void ClosePrintMessageThread();

/**
 * Runs the log writer on a thread of the library's, which copies queued messages into the log
 * file until ClosePrintMessageThread() or the unloading of the library. A stop requested
 * earlier is cancelled. Calling it while the writer runs changes nothing. Returns true when the
 * writer runs.
 */
VANTOR_EXPORT bool StartPrintMessageThread();
