// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

#include <QByteArray>
#include <QString>

/**
 * Big-endian packing of integers, floats and strings into a growable byte buffer, and reading
 * them back, for binary device and network records. Every member is static.
 *
 * The buffer is the caller's: a `new[]` array (or null) passed as `char**`, which the Set
 * functions replace by a larger `new[]` array when it must grow; the caller frees the last one
 * with `delete[]`. Positions (`int&`) are advanced by what was read or written. The Get
 * functions trust the caller that the bytes they read are inside the buffer.
 *
 * A string is stored as a 2-byte big-endian byte count followed by its UTF-8 bytes, with no
 * terminator.
 */
class VANTOR_EXPORT MemoryData
{
public:
    /**
     * Copies `size` bytes from `src` to `dest` (the two may overlap). When `size` is even the
     * copied block is reversed as a whole, so a 2-, 4- or 8-byte value changes byte order; an
     * odd count is copied unchanged.
     */
    static void MemCopyAndSwap(void *dest, void *src, int size);

    /**
     * The big-endian integer of `size` (1, 2, 4 or 8) bytes at `pos`. Deliberately, the 1-byte
     * form is a signed char while the 2- and 4-byte forms are unsigned. Any other size reads
     * nothing and gives 0 without moving the position.
     */
    static long long GetIntData(char *buf, int size, int &pos);
    /// The 4-byte big-endian IEEE 754 single at `pos`.
    static float GetFloatData(char *buf, int &pos);
    /**
     * The string at `pos`: its 2-byte count, then that many bytes but at most 259. The position
     * moves by 2 plus the bytes actually taken, so a stored count above 259 deliberately leaves
     * it inside the string. The text ends at an embedded zero byte, as a C string would.
     */
    static CString GetStringData(char *buf, int &pos);

    /**
     * Makes room for `add` more bytes after the `inUse` bytes of `*buf`. Nothing changes while
     * inUse + add is less than `capacity` (equal is not enough); otherwise a new zero-filled
     * array of inUse + add + 5,000 bytes replaces the old one, keeping the bytes in use, and
     * `capacity` becomes its size. Returns 1; 0, with nothing changed, only when the sizes are
     * negative, would overflow an int, or the memory cannot be had.
     */
    static int ReallocMem(char **buf, int inUse, int add, int &capacity);
    /**
     * Writes `value` at `pos` in `size` bytes, growing the buffer as ReallocMem does with the
     * position as the bytes in use: the low byte (size 1), the low 2 or 4 bytes big-endian
     * (sizes 2 and 4), or the low `size` bytes of the 8-byte value through MemCopyAndSwap, so
     * size 8 gives the 8-byte big-endian value (and an odd size such as 3 keeps them in
     * little-endian order, as it always has). Returns 1; 0 with nothing written for a size
     * outside 1 to 8, a negative position or a failed growth.
     */
    static int SetIntData(char **buf, long long value, int size, int &pos, int &capacity);
    /// Writes the float as 4 bytes big-endian. Returns 1 (0 as SetIntData).
    static int SetFloatData(char **buf, float value, int &pos, int &capacity);
    /**
     * Writes the string's UTF-8 byte count as 2 bytes big-endian, then those bytes. A string of
     * more than 65,535 bytes is cut to its first 65,535, so that the count always matches the
     * bytes that follow. Returns 1 (0 as SetIntData).
     */
    static int SetStringData(char **buf, CString str, int &pos, int &capacity);

    /**
     * Hexadecimal text to bytes: each pair of characters of the UTF-8 form by
     * Hexa::HexaStringToByte (non-hex characters count 0); an odd last character is ignored.
     */
    static QByteArray ConvertFromText(CString text);
    /// Bytes to text: each byte as two upper-case hexadecimal digits, no separators.
    static QString ConvertToText(QByteArray data);
};
