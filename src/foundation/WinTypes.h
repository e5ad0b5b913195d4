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

typedef int BOOL;
typedef std::uint8_t BYTE;
typedef std::uint16_t WORD;
typedef std::uint32_t DWORD;
typedef std::int32_t LONG;
typedef std::uint32_t ULONG;
typedef unsigned int UINT;
typedef std::int64_t LONGLONG;
typedef std::uint64_t ULONGLONG;
/// A colour as 0x00BBGGRR: red in the low byte.
typedef DWORD COLORREF;
typedef void *HANDLE;
typedef void *LPVOID;

#ifndef TRUE
#define TRUE 1
#endif
#ifndef FALSE
#define FALSE 0
#endif

/// A window handle. Opaque, as on Windows; the library accepts it and never dereferences it.
struct HWND__;
typedef HWND__ *HWND;

/// The Windows rectangle record. Note that the library's CRect keeps right and bottom inclusive.
typedef struct tagRECT
{
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
} RECT, *PRECT, *LPRECT;

typedef struct tagPOINT
{
    LONG x;
    LONG y;
} POINT, *PPOINT, *LPPOINT;

typedef struct tagSIZE
{
    LONG cx;
    LONG cy;
} SIZE, *PSIZE, *LPSIZE;

/**
 * The Windows calendar-time record: eight 16-bit fields, 16 bytes.
 * In this library wDayOfWeek counts 1 = Monday ... 7 = Sunday.
 */
typedef struct _SYSTEMTIME
{
    WORD wYear;
    WORD wMonth;
    WORD wDayOfWeek;
    WORD wDay;
    WORD wHour;
    WORD wMinute;
    WORD wSecond;
    WORD wMilliseconds;
} SYSTEMTIME, *PSYSTEMTIME, *LPSYSTEMTIME;

/**
 * The Windows file-time record: two 32-bit words, low word first.
 * In this library the pair is read as one signed 64-bit count of milliseconds since
 * 1970-01-01 00:00:00 UTC, not as 100-ns intervals since 1601.
 */
typedef struct _FILETIME
{
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
} FILETIME, *PFILETIME, *LPFILETIME;

typedef struct _SECURITY_ATTRIBUTES
{
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
} SECURITY_ATTRIBUTES, *PSECURITY_ATTRIBUTES, *LPSECURITY_ATTRIBUTES;

// Message-box types.
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

// Stock brush numbers, as CBrush::CreateStockObject takes them (see CBrush::StockObject).
#define WHITE_BRUSH 0
#define LTGRAY_BRUSH 1
#define GRAY_BRUSH 2
#define DKGRAY_BRUSH 3
#define BLACK_BRUSH 4
#define NULL_BRUSH 5
#define HOLLOW_BRUSH NULL_BRUSH

// Message-box results.
#define IDOK 1
#define IDCANCEL 2
#define IDABORT 3
#define IDRETRY 4
#define IDIGNORE 5
#define IDYES 6
#define IDNO 7

#endif // _WIN32

#include "vantor_export.h"

#ifndef _WIN32
/// The class-library file error record. Accepted by CFile::Open and never filled in.
class VANTOR_EXPORT CFileException
{
public:
    CFileException() = default;
    virtual ~CFileException();

    int m_cause = 0;
    LONG m_lOsError = -1;
};
#endif

static_assert(sizeof(WORD) == 2 && sizeof(DWORD) == 4 && sizeof(LONG) == 4, "Windows widths");
static_assert(sizeof(SYSTEMTIME) == 16, "SYSTEMTIME keeps its Windows layout");
static_assert(sizeof(FILETIME) == 8, "FILETIME keeps its Windows layout");
static_assert(sizeof(RECT) == 16, "RECT keeps its Windows layout");
static_assert(sizeof(POINT) == 8 && sizeof(SIZE) == 8, "POINT and SIZE keep their Windows layouts");
