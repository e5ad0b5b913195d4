// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file WinTypes.h
 * The Windows types, records and codes that the library's interfaces use.
 *
 * On Windows they come from <windows.h>. Everywhere else this header defines them with the
 * Windows widths and layouts, so that records written to files or shared memory by ported code
 * stay byte-compatible: LONG and DWORD are 32-bit on every platform, never `long`.
 */

#include <cstdint>

#ifdef _WIN32
#include <windows.h>
#else

/**
 * @name Integer types
 * The Windows integer names with their Windows widths: BYTE 8, WORD 16, DWORD/LONG/ULONG 32,
 * LONGLONG/ULONGLONG 64 bits. BOOL is an int, true when non-zero (compare with FALSE, not TRUE).
 */
///@{
/// A Windows integer type, fixed to its Windows width on every platform (see the group note).
typedef int BOOL;
typedef std::uint8_t BYTE;
typedef std::uint16_t WORD;
typedef std::uint32_t DWORD;
typedef std::int32_t LONG;
typedef std::uint32_t ULONG;
typedef unsigned int UINT;
typedef std::int64_t LONGLONG;
typedef std::uint64_t ULONGLONG;
///@}
/// A colour as 0x00BBGGRR: red in the low byte.
typedef DWORD COLORREF;
/// An untyped handle or pointer, passed through and never dereferenced by the library.
///@{
typedef void *HANDLE;
typedef void *LPVOID;
///@}

#ifndef TRUE
/// BOOL true, 1. Any non-zero BOOL counts as true, so test BOOLs for non-zero, not against TRUE.
#define TRUE 1
#endif
#ifndef FALSE
/// BOOL false, 0.
#define FALSE 0
#endif

/// A window handle. Opaque, as on Windows; the library accepts it and never dereferences it.
struct HWND__;
/// A window handle; nullptr means no owner window.
typedef HWND__ *HWND;

/// The Windows rectangle record. Note that the library's CRect keeps right and bottom inclusive.
typedef struct tagRECT
{
    LONG left;   ///< Left edge, in pixels.
    LONG top;    ///< Top edge, in pixels; y grows downwards.
    LONG right;  ///< Right edge, in pixels.
    LONG bottom; ///< Bottom edge, in pixels.
} RECT,
    /// Pointer to a RECT, as Windows calls take it.
    ///@{
    *PRECT, *LPRECT;
///@}

/// The Windows point record, in pixels; the base of CPoint.
typedef struct tagPOINT
{
    LONG x; ///< Horizontal position, in pixels.
    LONG y; ///< Vertical position, in pixels; grows downwards.
} POINT,
    /// Pointer to a POINT, as Windows calls take it.
    ///@{
    *PPOINT, *LPPOINT;
///@}

/// The Windows extent record, in pixels; the base of CSize. Either extent may be negative.
typedef struct tagSIZE
{
    LONG cx; ///< Width, in pixels.
    LONG cy; ///< Height, in pixels.
} SIZE,
    /// Pointer to a SIZE, as Windows calls take it.
    ///@{
    *PSIZE, *LPSIZE;
///@}

/**
 * The Windows calendar-time record: eight 16-bit fields, 16 bytes.
 * In this library wDayOfWeek counts 1 = Monday ... 7 = Sunday.
 */
typedef struct _SYSTEMTIME
{
    WORD wYear;         ///< Full year, e.g. 2024.
    WORD wMonth;        ///< Month, 1 = January ... 12.
    WORD wDayOfWeek;    ///< Day of the week, 1 = Monday ... 7 = Sunday (not Windows' 0 = Sunday).
    WORD wDay;          ///< Day of the month, 1 ... 31.
    WORD wHour;         ///< Hour, 0 ... 23.
    WORD wMinute;       ///< Minute, 0 ... 59.
    WORD wSecond;       ///< Second, 0 ... 59.
    WORD wMilliseconds; ///< Millisecond, 0 ... 999.
} SYSTEMTIME,
    /// Pointer to a SYSTEMTIME, as Windows calls take it.
    ///@{
    *PSYSTEMTIME, *LPSYSTEMTIME;
///@}

/**
 * The Windows file-time record: two 32-bit words, low word first.
 * In this library the pair is read as one signed 64-bit count of milliseconds since
 * 1970-01-01 00:00:00 UTC, not as 100-ns intervals since 1601.
 */
typedef struct _FILETIME
{
    DWORD dwLowDateTime;  ///< Low 32 bits of the millisecond count.
    DWORD dwHighDateTime; ///< High 32 bits of the millisecond count (sign included).
} FILETIME,
    /// Pointer to a FILETIME, as Windows calls take it.
    ///@{
    *PFILETIME, *LPFILETIME;
///@}

/// The Windows security record, accepted where ported calls pass one and otherwise ignored.
typedef struct _SECURITY_ATTRIBUTES
{
    DWORD nLength;               ///< Size of the record in bytes, as callers fill it in.
    LPVOID lpSecurityDescriptor; ///< Security descriptor; not used by the library.
    BOOL bInheritHandle;         ///< Whether child processes inherit the handle; not used.
} SECURITY_ATTRIBUTES,
    /// Pointer to a SECURITY_ATTRIBUTES, as Windows calls take it.
    ///@{
    *PSECURITY_ATTRIBUTES, *LPSECURITY_ATTRIBUTES;
///@}

/**
 * @name Message-box types
 * Button sets, icons, default buttons and modality, with their Windows values. AfxMessageBox
 * and MessageBoxW compare the type as one whole number and know only MB_OK, MB_YESNO and (for
 * AfxMessageBox) MB_ABORTRETRYIGNORE; any other value, a known one with a flag added included,
 * shows nothing and returns IDOK.
 */
///@{
/// A Windows message-box type code or flag (see the group note for which ones act).
#define MB_OK 0x00000000
#define MB_OKCANCEL 0x00000001
#define MB_ABORTRETRYIGNORE 0x00000002
#define MB_YESNOCANCEL 0x00000003
#define MB_YESNO 0x00000004
#define MB_RETRYCANCEL 0x00000005
#define MB_ICONHAND 0x00000010
#define MB_ICONQUESTION 0x00000020
#define MB_ICONEXCLAMATION 0x00000030
#define MB_ICONASTERISK 0x00000040
#define MB_ICONWARNING MB_ICONEXCLAMATION
#define MB_ICONERROR MB_ICONHAND
#define MB_ICONINFORMATION MB_ICONASTERISK
#define MB_ICONSTOP MB_ICONHAND
#define MB_DEFBUTTON1 0x00000000
#define MB_DEFBUTTON2 0x00000100
#define MB_DEFBUTTON3 0x00000200
#define MB_APPLMODAL 0x00000000
#define MB_SYSTEMMODAL 0x00001000
#define MB_TASKMODAL 0x00002000
///@}

/**
 * @name Stock brushes
 * Stock brush numbers, as CBrush::CreateStockObject takes them (see CBrush::StockObject).
 */
///@{
/// A stock brush number 0 ... 5, named white, light grey, grey, dark grey, black and none; only
/// NULL_BRUSH (HOLLOW_BRUSH) acts apart: CBrush gives every other one in its current colour.
#define WHITE_BRUSH 0
#define LTGRAY_BRUSH 1
#define GRAY_BRUSH 2
#define DKGRAY_BRUSH 3
#define BLACK_BRUSH 4
#define NULL_BRUSH 5
#define HOLLOW_BRUSH NULL_BRUSH
///@}

/**
 * @name Message-box results
 * The button a message box was closed with, with the Windows values. A box closed without a
 * button returns IDNO (yes/no) or IDABORT (abort/retry/ignore); IDCANCEL is never returned.
 */
///@{
/// A message-box result: the pressed button (see the group note).
#define IDOK 1
#define IDCANCEL 2
#define IDABORT 3
#define IDRETRY 4
#define IDIGNORE 5
#define IDYES 6
#define IDNO 7
///@}

#endif // _WIN32

#include "vantor_export.h"

#ifndef _WIN32
/// The class-library file error record. Accepted by CFile::Open and never filled in.
class VANTOR_EXPORT CFileException
{
public:
    CFileException() = default;
    virtual ~CFileException();

    int m_cause = 0;      ///< Cause code; stays 0 (none), as nothing fills it in.
    LONG m_lOsError = -1; ///< Operating-system error number; stays -1 (unknown).
};
#endif

static_assert(sizeof(WORD) == 2 && sizeof(DWORD) == 4 && sizeof(LONG) == 4, "Windows widths");
static_assert(sizeof(SYSTEMTIME) == 16, "SYSTEMTIME keeps its Windows layout");
static_assert(sizeof(FILETIME) == 8, "FILETIME keeps its Windows layout");
static_assert(sizeof(RECT) == 16, "RECT keeps its Windows layout");
static_assert(sizeof(POINT) == 8 && sizeof(SIZE) == 8, "POINT and SIZE keep their Windows layouts");
