// SPDX-License-Identifier: MIT
#pragma once

// The rules of 8-bit text that several classes share, each written once here:
// - what one character is when 8-bit text is cut to a size,
// - the comma / line-end escape of comma-delimited cells,
// - the copying of a cell into a fixed buffer with its trailing spaces removed,
// - the C number conversions of the field readers.

#include <QtGlobal>

#include <climits>
#include <cstdlib>

#include <locale.h>

namespace VantorText {

/// Whether the text at hand ends where its writer ended it, or was cut short by a full buffer.
enum class TextEnd {
    /// The NUL ends the text: a byte of 0x80 or above before it leads a two-byte character
    /// unless it starts a complete UTF-8 sequence.
    Complete,
    /// The text went on beyond the NUL: a UTF-8 sequence whose bytes are valid up to the NUL
    /// is a UTF-8 character cut short, not a two-byte character.
    CutShort
};

/**
 * Length in bytes of the character that starts at `s`.
 *
 * Text reaches the library in two forms: UTF-8 (every CString) and the double-byte code pages
 * of older files, in which every byte of 0x80 or above leads a two-byte character. A valid
 * UTF-8 sequence therefore counts as one character of 2 to 4 bytes; any other byte of 0x80 or
 * above counts as the lead byte of a two-byte character, whatever follows it; a byte below
 * 0x80 is one character. Reads no further than the first NUL after the lead byte; the
 * character may include that NUL, which makes it incomplete (see wholeCharacters).
 */
inline int characterLength(const char *s, TextEnd end = TextEnd::Complete)
{
    const auto byte = [s](int i) { return static_cast<unsigned char>(s[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80)
        return 1;
    int length = 0;
    unsigned char low = 0x80, high = 0xBF; // the range of the second byte
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        if (lead == 0xE0)
            low = 0xA0; // no overlong forms
        else if (lead == 0xED)
            high = 0x9F; // no surrogates
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        if (lead == 0xF0)
            low = 0x90;
        else if (lead == 0xF4)
            high = 0x8F; // nothing above U+10FFFF
    }
    if (length == 0)
        return 2;
    for (int i = 1; i < length; ++i) {
        if (byte(i) == 0 && end == TextEnd::CutShort)
            return length; // a UTF-8 character cut short
        const bool valid = i == 1 ? byte(i) >= low && byte(i) <= high : (byte(i) & 0xC0) == 0x80;
        if (!valid)
            return 2;
    }
    return length;
}

/**
 * How many bytes beyond the end of a run of text a character that starts inside the run can
 * reach, by the rule of characterLength, when `next` is the byte after the run: a lead byte
 * that is not valid UTF-8 takes one byte more whatever follows, and a UTF-8 sequence goes on
 * through `next` only when it is a continuation byte (then up to three bytes).
 */
constexpr int characterReach(char next)
{
    const auto byte = static_cast<unsigned char>(next);
    return byte >= 0x80 && byte <= 0xBF ? 3 : 1;
}

/**
 * The number of bytes of the longest run of whole characters at the start of `s` that holds
 * at most `limit` bytes and stops at the NUL: where 8-bit text is cut, a character is kept or
 * cut whole, and a character that the NUL cuts short is cut.
 */
inline int wholeCharacters(const char *s, int limit, TextEnd end = TextEnd::Complete)
{
    int i = 0;
    while (i < limit && s[i] != 0) {
        const int n = characterLength(s + i, end);
        if (i + n > limit)
            break;
        bool whole = true;
        for (int k = 1; k < n && whole; ++k)
            whole = s[i + k] != 0;
        if (!whole)
            break;
        i += n;
    }
    return i;
}

/**
 * The escape of comma-delimited cells: a comma becomes a back-quote and a carriage return or a
 * line feed a caret; every other byte stays. A back-quote or caret already in the text is not
 * escaped, so it reads back as a comma or a line break.
 */
inline char escapeCellByte(char c)
{
    if (c == ',')
        return '`';
    if (c == '\r' || c == '\n')
        return '^';
    return c;
}

/// What happens to spaces at the end of a cell written by copyCell.
enum class CellSpaces {
    /// Every space at the end of the result goes, even when the cell holds nothing else.
    TrimResult,
    /**
     * The rule of the free MakeString: a run of spaces goes only when the text stops after it
     * (at its end, or where a multi-byte character no longer fits); a run cut short by an
     * ordinary character stays, and a text that is spaces from its first byte keeps them.
     */
    TrimTextEnd
};

/**
 * Copies the 8-bit text `source` into `dest` of `size` bytes as one cell: at most size - 1
 * bytes of whole characters, zero-terminated, with the cell escape when `escape` is true and
 * trailing spaces removed as `spaces` says. Writes nothing beyond the terminator. Returns the
 * length of the result.
 */
inline int copyCell(char *dest, const char *source, int size, bool escape, CellSpaces spaces)
{
    if (!dest || size <= 0)
        return 0;
    if (!source) {
        dest[0] = 0;
        return 0;
    }
    const int end = wholeCharacters(source, size - 1);
    int i = 0;
    int spaceStart = -1;
    while (i < end) {
        const int n = characterLength(source + i);
        if (n == 1) {
            if (source[i] == ' ') {
                if (spaceStart < 0)
                    spaceStart = i;
            } else {
                spaceStart = -1;
            }
            dest[i] = escape ? escapeCellByte(source[i]) : source[i];
        } else {
            for (int k = 0; k < n; ++k)
                dest[i + k] = source[i + k];
            spaceStart = -1;
        }
        i += n;
    }
    // An ordinary character that no longer fits still ends a run of spaces.
    const char next = source[end];
    if (spaces == CellSpaces::TrimTextEnd && next != 0 && next != ' ' &&
        characterLength(source + end) == 1)
        spaceStart = -1;
    dest[i] = 0;
    if (spaceStart > 0 || (spaceStart == 0 && spaces == CellSpaces::TrimResult)) {
        dest[spaceStart] = 0;
        return spaceStart;
    }
    return i;
}

/// atoi: leading white space, optional sign, decimal digits up to the first other character.
/// Out-of-range values saturate at INT_MIN / INT_MAX, as the Windows C library does.
inline int atoi32(const char *s)
{
    if (!s)
        return 0;
    while (*s == ' ' || (*s >= '\t' && *s <= '\r'))
        ++s;
    bool negative = false;
    if (*s == '+' || *s == '-') {
        negative = *s == '-';
        ++s;
    }
    const qint64 limit = qint64(INT_MAX) + 1;
    qint64 value = 0;
    for (; *s >= '0' && *s <= '9'; ++s) {
        value = value * 10 + (*s - '0');
        if (value > limit)
            value = limit;
    }
    if (negative)
        return static_cast<int>(-value);
    return value > INT_MAX ? INT_MAX : static_cast<int>(value);
}

/// atof with the C locale's decimal point, whatever the process's locale is (a QApplication
/// sets the locale from the environment, and a German one would otherwise read "3.5" as 3).
inline double atofC(const char *s)
{
    if (!s)
        return 0.0;
#ifdef Q_OS_WIN
    static const _locale_t c = _create_locale(LC_NUMERIC, "C");
    return _strtod_l(s, nullptr, c);
#else
    static const locale_t c = newlocale(LC_NUMERIC_MASK, "C", locale_t(nullptr));
    return strtod_l(s, nullptr, c);
#endif
}

} // namespace VantorText
