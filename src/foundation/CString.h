// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file CString.h
 * The string value type CString and MakeString, the fixed-buffer copy for 8-bit text.
 */

#include "vantor_export.h"

#include <QByteArray>
#include <QChar>
#include <QString>

#include <type_traits>

/**
 * The library's string value type, with the member names of the classic Windows class-library
 * string, built over QString.
 *
 * The value is Unicode (`text`). Every 8-bit text that comes in (`char const*`, `char*`,
 * `unsigned char*`) is decoded as UTF-8, and every 8-bit text that goes out (GetData, c_str) is
 * UTF-8. Positions and lengths count UTF-16 code units of `text` unless a member says otherwise.
 * A single `char` argument is the Latin-1 character of that byte value. All comparisons and
 * searches are case-sensitive.
 */
class VANTOR_EXPORT CString
{
public:
    /// The empty text.
    CString();
    /// Takes the Unicode text as it is.
    CString(const QString &s);
    /// Decodes the zero-terminated 8-bit text as UTF-8; a null pointer gives an empty text.
    ///@{
    CString(char const *s);
    CString(char *s);
    CString(unsigned char *s);
    ///@}

    /// Replaces the text by the UTF-8 decoding of `s` (a null pointer gives an empty text).
    CString &operator=(char const *s);
    /// Assigns the empty text.
    void Empty();

    /// True when the text has no characters.
    bool IsEmpty() const;
    /// UTF-16 code units of the text, or with `inBytes` true the byte count of its UTF-8 form.
    int GetLength(bool inBytes = false) const;
    /**
     * The byte at index `i` of the UTF-8 form, but 0 when `i` is not below the UTF-16 length.
     * The bound and the index deliberately use different measures: for non-ASCII text this
     * returns UTF-8 bytes and only the first (UTF-16 length) bytes are reachable.
     */
    char GetAt(int i) const;
    /// Case-sensitive comparison: negative, 0 or positive.
    int Compare(const CString &other) const;

    /**
     * First occurrence of the character (read as Latin-1) or of `sub` at or after `start`,
     * or -1. A negative `start` counts back from the end, as QString::indexOf does.
     */
    ///@{
    int Find(char ch) const;
    int Find(char ch, int start) const;
    int Find(const QString &sub, int start = 0) const;
    ///@}
    /// Last occurrence at or before `start` (-1: from the last character), or -1.
    ///@{
    int ReverseFind(char ch, int start = -1) const;
    int ReverseFind(const QString &sub, int start = -1) const;
    ///@}

    /**
     * The zero-terminated UTF-8 bytes of the text, converted afresh at every call.
     * With `escape` true, in the returned bytes only, each comma becomes a back-quote and each
     * carriage return or line feed a caret; the text itself keeps them.
     * The pointer stays valid until the next GetData or c_str on this object, an assignment to
     * it or its destruction.
     */
    char *GetData(bool escape = false) const;
    /// GetData(false).
    char *c_str() const;

    /// The first n characters; the whole string when n is negative or not below the length.
    CString Left(int n) const;
    /// The last n characters; the whole string when n is negative or not below the length.
    CString Right(int n) const;
    /// n characters from pos (QString::mid rules: a negative n means to the end).
    CString Mid(int pos, int n) const;
    /// An upper-case copy. Deliberately, the string itself is not changed.
    CString MakeUpper() const;
    /// A lower-case copy. Deliberately, the string itself is not changed.
    CString MakeLower() const;

    /// Sets the text to the printf-style formatting (format and %s arguments are UTF-8).
    CString Format(char const *format, ...);
    /**
     * The same with the format given as a CString (its UTF-8 form). A template that hands its
     * arguments on to the form above, so that ported calls compile as before while no
     * variable argument list starts at a parameter of class type.
     */
    template<typename F, typename... Args,
             typename = std::enable_if_t<std::is_same<std::decay_t<F>, CString>::value>>
    CString Format(const F &format, Args... args)
    {
        const QByteArray utf8 = format.text.toUtf8();
        return Format(utf8.constData(), args...);
    }
    /// Replaces every occurrence of `from` (UTF-8) by `to`; returns a copy of the new text.
    CString Replace(char const *from, char const *to);
    /// Replaces every `from` character by `to`; returns a copy of the new text.
    CString Replace(QChar from, QChar to);
    /// Removes every occurrence of `ch`; returns this string.
    CString &Remove(QChar ch);
    /// Removes `count` characters from `index`. Always returns 0.
    int Delete(int index, int count);
    /**
     * Inserts `s` at `index`. An index beyond the end first pads the string with spaces up to
     * the index; a negative index inserts nothing. Always returns 0.
     */
    int Insert(int index, const CString &s);

    // Conveniences that ported code expects of a string value.
    /// Case-sensitive comparison of the texts; `<` orders by UTF-16 code unit, as QString does.
    ///@{
    bool operator==(const CString &other) const { return text == other.text; }
    bool operator!=(const CString &other) const { return text != other.text; }
    bool operator<(const CString &other) const { return text < other.text; }
    ///@}
    /// Appends the other text; returns this string.
    CString &operator+=(const CString &other);
    /// A new string holding the two texts one after the other.
    friend CString operator+(const CString &a, const CString &b)
    {
        return CString(a.text + b.text);
    }

    /// The value.
    QString text;
    /// The 8-bit form last produced by GetData; a cache only.
    mutable QByteArray bytes;
};

/**
 * Copies 8-bit text `src` into the fixed buffer `dest` of `size` bytes, for text in which every
 * byte of 128 or more leads a two-byte character. The result is zero-terminated within `size`
 * bytes, never ends in half a two-byte character, and has trailing spaces removed (a text made
 * only of spaces from its first byte deliberately keeps them). With `escape` nonzero, commas
 * become back-quotes and carriage returns and line feeds carets.
 */
VANTOR_EXPORT void MakeString(char *dest, char *src, int size, int escape);
