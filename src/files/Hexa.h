// SPDX-License-Identifier: MIT
#pragma once

#include "WinTypes.h"
#include "vantor_export.h"

#include <QByteArray>
#include <QString>

/**
 * Hexadecimal text to numbers and back, for device protocols that carry numbers as hex digits.
 * The class has no state: every member is static.
 */
class VANTOR_EXPORT Hexa
{
public:
    /**
     * Reads `count` characters of `str` (all of it, by strlen, when `count` is 0) as a
     * hexadecimal number, most significant digit first. Every character shifts the value by
     * one digit; 0-9, a-f and A-F add 0 to 15, and any other character deliberately adds 0, so
     * "1G" with a count of 2 reads as 0x10 and "0x1F" with a count of 0 as 0x1F.
     * A terminating zero ends the text early: the remaining places count 0 like any other
     * non-hex character, and nothing beyond it is read. A null text or a count below 1 gives 0;
     * more than eight digits keep the low 32 bits.
     */
    static int HexaStringToInt(char const *str, int count);
    /// The first two characters as above.
    static BYTE HexaStringToByte(char const *str);
    /// The first four characters as above.
    static WORD HexaStringToWord(char const *str);
    /// The first eight characters as above.
    static DWORD HexaStringToDword(char const *str);

    /**
     * The text as a hexadecimal `long` (QString::toLong rules: an optional sign and 0x prefix).
     * The value must fit 32 bits, as a Windows `long` does, so "FFFFFFFF" does not parse. When
     * it does not parse, a text longer than two characters gives the value of its first two
     * characters by the counting parser above ("1FZZ" is 31); anything else gives 0.
     */
    static int HexaStringToInt(QString str);
    /// HexaStringToInt(QString) as decimal text ("%d").
    static QString HexaStringToIntString(QString str);
    /**
     * The value as exactly 2 × `bytes` upper-case hexadecimal digits, most significant first:
     * (255, 2) is "00FF", (-1, 1) is "FF". Counts above 4 pad with leading zeros; a count below
     * 1 or above 1,024 gives an empty result.
     */
    static QByteArray IntToHexaString(int value, int bytes);
};
