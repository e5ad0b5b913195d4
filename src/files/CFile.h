// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file CFile.h
 * The raw-record file CFile, the optional FILEHEADER record with InitFileHeader, and
 * DeleteFileW.
 */

#include "CRect.h"
#include "CString.h"
#include "WinTypes.h"
#include "vantor_export.h"

#include <QBuffer>
#include <QFile>

/**
 * The small versioned record that application files may begin with: 16 bytes, written and read
 * as it stands in memory (little-endian). The library never reads or writes one itself; fill it
 * with InitFileHeader and write it with CFile::Write(void*, int).
 */
struct FILEHEADER
{
    /// Format version as NUL-padded text ("1.0").
    char version[4];
    /// Words whose meaning is left to the file's owner; InitFileHeader sets them to 0.
    ///@{
    DWORD reserved1;
    DWORD reserved2;
    DWORD reserved3;
    ///@}
};
static_assert(sizeof(FILEHEADER) == 16, "FILEHEADER keeps its 16-byte file layout");

/**
 * A raw-record file: a disk file, or a growable block of memory when opened without a name.
 *
 * Values are written and read in their little-endian in-memory form with the Windows widths:
 * `long` and `unsigned long` take 4 bytes in the file on every platform, `long long`,
 * `unsigned long long` and `double` 8. A CString is stored as a 32-bit byte count followed by
 * its UTF-8 bytes; a CRect as left, top, right, bottom, four 32-bit integers.
 *
 * Once an object has been opened without a name it stays a memory file for its whole life: a
 * later Open with a name reopens the same memory block and creates no disk file.
 */
class VANTOR_EXPORT CFile
{
public:
    /// Closed, in disk mode until the first Open without a name.
    CFile();
    /// Calls Close().
    ~CFile();

    CFile(const CFile &) = delete;
    CFile &operator=(const CFile &) = delete;

    /// The class-library open flags. Open looks at modeWrite and modeReadWrite only; the
    /// others are accepted so that ported code compiles, and have no effect.
    enum OpenFlags : unsigned int {
        modeRead = 0x0000,
        modeWrite = 0x0001,
        modeReadWrite = 0x0002,
        shareCompat = 0x0000,
        shareExclusive = 0x0010,
        shareDenyWrite = 0x0020,
        shareDenyRead = 0x0030,
        shareDenyNone = 0x0040,
        modeNoInherit = 0x0080,
        modeCreate = 0x1000,
        modeNoTruncate = 0x2000,
        typeText = 0x4000,
        typeBinary = 0x8000
    };

    /**
     * Opens `name` (Latin-1), or the memory block when `name` is empty or this object is
     * already a memory file. Only the two low bits of `flags` count: bit 0 (write) or bit 1
     * (read-write) opens for reading and writing, which creates a missing file and never
     * truncates an existing one (call SetLength(0) for an empty file); otherwise the file is
     * opened read-only. A memory file is always opened for reading and writing.
     * `error` is accepted and never touched. Returns nonzero on success.
     */
    BOOL Open(char *name, unsigned int flags, CFileException *error = nullptr);
    /// Open() with the string's text as the name, so names beyond Latin-1 work too.
    BOOL Open(CString name, unsigned int flags, CFileException *error = nullptr);
    /// Flushes and closes the active device. A memory file keeps its bytes for a later Open.
    void Close();
    /// True when the active device is open.
    bool IsOpen();
    /// Flushes the disk file (also in memory mode, where it has no effect).
    void Flush();

    /// Length of the active device in bytes.
    qint64 Size();
    /// Moves to the absolute position `pos`; there is no relative or end-based seek.
    bool Seek(int pos);
    /// The current position in bytes from the start of the active device.
    qint64 Pos();
    /// Truncates or extends the disk file to `length` bytes. Does nothing in memory mode.
    void SetLength(int length);

    /// Writes `count` bytes from `data`; returns the bytes accepted or a negative value.
    int Write(void *data, int count);
    /**
     * Writes the value little-endian in its own width: 1 byte for char, 2 for short, 4 for int
     * and float, 8 for long long and double. Returns the bytes written (the width) or a
     * negative value on a device error.
     */
    ///@{
    int Write(char value);
    int Write(unsigned char value);
    /// One byte, 0 or 1.
    int Write(bool value);
    int Write(short value);
    int Write(unsigned short value);
    int Write(int value);
    int Write(unsigned int value);
    /// Four bytes: the value is stored as a 32-bit integer, as on Windows.
    int Write(long value);
    /// Four bytes: the value is stored as a 32-bit integer, as on Windows.
    int Write(unsigned long value);
    int Write(float value);
    int Write(long long value);
    int Write(unsigned long long value);
    int Write(double value);
    ///@}
    /// Left, top, right, bottom as four 32-bit integers. Always returns 16.
    int Write(CRect rect);
    /// A 32-bit byte count, then the UTF-8 bytes without terminator; returns the second write's
    /// result.
    int Write(CString text);
    /// The first `count` bytes of the string's UTF-8 form, without a length prefix; a shorter
    /// string is padded with NULs up to `count`. A negative count writes nothing and returns -1.
    int Write(CString text, int count);

    /// Reads `count` bytes into `data`; returns the bytes read or a negative value.
    int Read(void *data, int count);
    /**
     * Reads a little-endian value of the variable's own width (as Write stores it) and returns
     * the bytes read. At the end of the file a short read changes only the bytes that arrived:
     * check the result against the width. A bool reads one byte, true when it is not 0.
     */
    ///@{
    int Read(char &value);
    int Read(unsigned char &value);
    int Read(bool &value);
    int Read(short &value);
    int Read(unsigned short &value);
    int Read(int &value);
    int Read(unsigned int &value);
    /// Reads 4 bytes and sign-extends them.
    int Read(long &value);
    /// Reads 4 bytes.
    int Read(unsigned long &value);
    int Read(float &value);
    int Read(long long &value);
    int Read(unsigned long long &value);
    int Read(double &value);
    ///@}
    /// Reads left, top, right, bottom. Always returns 16, whatever the device delivered.
    int Read(CRect &rect);
    /**
     * Reads a 32-bit byte count n and then n bytes of UTF-8, cut at an embedded NUL.
     * Returns n, the stored count, not the number of bytes read. A count larger than what the
     * file still holds reads only what is there; a negative count reads nothing.
     */
    int Read(CString &text);

private:
    QIODevice *device();
    BOOL openDisk(const QString &name, unsigned int flags);

    QFile m_File;
    QBuffer m_Buffer;
    char m_cReserved[9];
    bool m_bDiskMode;
};

/// Fills `header` with version "1.0" and three zero words.
VANTOR_EXPORT void InitFileHeader(FILEHEADER *header);
/// Removes the named file (Latin-1); a missing or locked file is silently left.
VANTOR_EXPORT void DeleteFileW(char const *name);
/// Removes the file named by the string's text; a missing or locked file is silently left.
VANTOR_EXPORT void DeleteFileW(CString name);
