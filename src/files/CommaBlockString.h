// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

/**
 * A cursor over one line of delimited text that hands out its fields one at a time, converted
 * to the type the caller asks for ("10, 20, 3.5, true, 1F").
 *
 * A field ends at the block code (a comma unless changed), at a carriage return or at a line
 * feed. Leading spaces and tabs of a field are dropped, trailing ones are kept. A delimiter at
 * the very end of the text consumes itself: "a," yields "a" and then IsEOS() is true, with no
 * empty last field. There is no quoting: a delimiter inside a field cannot be expressed.
 * Reading past the end yields empty fields and leaves the position where it is.
 *
 * Positions count the UTF-16 characters of the text. Every getter reads its field through the
 * virtual GetString(CString&), so a derived class that overrides it changes the grammar of all
 * of them. Numeric getters convert the field's UTF-8 form the way the C library's atoi and atof
 * do (leading blanks, optional sign, digits up to the first other character, 0 when there are
 * none), independently of the process's C locale; integer results saturate at the 32-bit limits.
 */
class VANTOR_EXPORT CommaBlockString
{
public:
    CommaBlockString();
    virtual ~CommaBlockString();

    /// Starts reading `text` from its first character; returns its length.
    int Set(CString text);
    /// Sets the delimiter. 0 is allowed: then only line breaks (and NUL characters) end a field.
    void SetBlockCode(char code);
    /// True once every character has been read.
    bool IsEOS();

    /// Reads the next field into `field` (empty past the end); returns the new position.
    virtual int GetString(CString &field);
    /// Reads the next field and returns it.
    CString GetString();
    /**
     * Reads the next field into `buffer` of `size` bytes as zero-terminated UTF-8. A field that
     * does not fit whole is not cut: the buffer receives the empty string. The field is
     * consumed either way. Returns the new position.
     */
    int GetString(char *buffer, int size);
    /**
     * Everything that remains, as one field: leading spaces and tabs are skipped, delimiters
     * and line breaks are kept. The position ends at the end of the text; that position is
     * returned.
     */
    int GetStringTotalRemain(CString &rest);
    /// Reads one field and discards it; returns the new position.
    int Skip();

    /// The next field through atoi: digits up to the first other character, saturated at the
    /// 32-bit limits ("12ab" gives 12, an empty field 0). Also returned.
    int GetInt(int &value);
    /// GetInt(int&) without the output argument.
    int GetInt();
    /// atoi, kept to its low 16 bits.
    short GetInt(short &value);
    /// atoi: the value has 32 bits whatever the width of `long`.
    long GetLong(long &value);
    /// GetLong(long&) without the output argument.
    long GetLong();
    /// atoi stored as unsigned 32 bits: text above 2147483647 gives 2147483647, not itself.
    unsigned int GetDWORD(unsigned int &value);
    /// GetDWORD(unsigned int&) widened to unsigned long.
    unsigned long GetDWORD(unsigned long &value);
    /// atoi, low 16 bits.
    unsigned short GetWORD(unsigned short &value);
    /// atoi, low 8 bits.
    unsigned char GetBYTE(unsigned char &value);
    /**
     * The field holds the character's numeric code: atoi, low 8 bits ("65" gives 'A', "A"
     * gives NUL). An empty field gives a space.
     */
    char GetChar(char &value);
    /// GetDouble narrowed to float; also returned.
    float GetFloat(float &value);
    /// GetFloat(float&) without the output argument.
    float GetFloat();
    /// The next field through atof with "." as the decimal point whatever the process's locale
    /// ("3.5" is 3.5 under a German locale too; an empty field gives 0). Also returned.
    double GetDouble(double &value);
    /// GetDouble(double&) without the output argument.
    double GetDouble();
    /// True exactly for "true" and "TRUE"; "True", "1" and "yes" are false.
    bool GetBool(bool &value);
    /// GetBool(bool&) without the output argument.
    bool GetBool();
    /**
     * Reads the field as hexadecimal, case-insensitively. Every character that is not a hex
     * digit is skipped, deliberately, so "0x1F", "1F" and "1 F" all give 31. More than eight
     * digits wrap modulo 2^32. Returns the value as well.
     */
    unsigned int GetHexDWORD(unsigned int &value);
    /// GetHexDWORD kept to 16 bits; returns the full 32-bit value.
    unsigned int GetHexWORD(unsigned short &value);
    /// GetHexDWORD kept to 8 bits; returns the full 32-bit value.
    unsigned int GetHexBYTE(unsigned char &value);

protected:
    /// Index of the next character to read.
    int m_nPos;
    /// Number of characters in the text, fixed by Set().
    int m_nLength;
    /// The text being read.
    CString m_strData;
    /// The field delimiter.
    char m_cBlockCode;
};
