// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

/**
 * The checksums and CRCs that device protocols put at the end of a frame. Every member is
 * static and reentrant.
 *
 * Each takes the frame and its length; the simple sums also take an initial value, which is
 * what they return for a length below 1. A null buffer counts as an empty one.
 */
class VANTOR_EXPORT CCrc
{
public:
    /// The initial value plus every byte, as a 32-bit sum (deliberately not cut to 16 bits).
    static int GetCrcSum16(unsigned char *buf, int len, int init);
    /// The initial value minus every byte, 32-bit.
    static int GetCrcSub16(unsigned char *buf, int len, int init);
    /// The initial value XOR every byte.
    static int GetCrcXor16(unsigned char *buf, int len, int init);
    /**
     * Only the low byte of the initial value takes part: every byte is added to it modulo 256,
     * and the higher bits of the initial value come back unchanged (0xFF, 0x02 from 0x1200
     * gives 0x1201).
     */
    static int GetCrcSum8(unsigned char *buf, int len, int init);
    /// As GetCrcSum8, with subtraction modulo 256.
    static int GetCrcSub8(unsigned char *buf, int len, int init);
    /// As GetCrcSum8, with XOR.
    static int GetCrcXor8(unsigned char *buf, int len, int init);
    /**
     * GetCrcSum8 of the bytes that the buffer spells in hexadecimal text, two characters a byte
     * (an odd last character is ignored; non-hex characters count 0 as in Hexa).
     */
    static int Get2ByteHexSum8(unsigned char *buf, int len, int init);
    /// (XOR of all bytes) × 256 + (sum of all bytes modulo 256); 0 for a length below 1.
    static int GetCrcXorAdd(unsigned char *buf, int len);

    /// CRC-16/MODBUS computed bit by bit ("123456789" gives 0x4B37); −1 for a length below 1.
    static int GetCrc16_15_13_1(unsigned char *buf, int len);
    /**
     * CRC-16/MODBUS from the two 256-entry byte tables of the MODBUS protocol document, returned
     * with its bytes exchanged: the high byte is the one sent first ("123456789" gives 0x374B).
     * −1 for a length below 1.
     */
    static int GetCrc16_15_2_1(unsigned char *buf, int len);
    /// CRC-16/ARC ("123456789" gives 0xBB3D); 0 for a length below 1.
    static int GetCrc16_5_2_1(unsigned char *buf, int len);
    /**
     * CRC-16/DNP. The final complement is taken over 32 bits, so the high 16 bits of the result
     * are all ones and the CRC is its low half ("123456789" gives 0xFFFFEA82).
     * −1 for a length below 1.
     */
    static int GetCrcDNP(unsigned char *buf, int len);
};
