// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

/**
 * Turns short texts (settings, stored credentials) into printable scrambled text with a 64-bit
 * key and back, and gives the one-way SHA-256 digest of a text. The scrambling hides text from
 * casual reading; it is not strong encryption. Every member is static.
 *
 * The scrambled form is the base64 text of a container: a version byte (always 3), a flags byte
 * (1 = body compressed with zlib, 2 = 16-bit checksum present, 4 = SHA-1 present), then the
 * body: one random byte, the big-endian checksum or the 20-byte SHA-1, and the data, all of it
 * chained-XORed with the eight bytes of the key (lowest byte first).
 */
class VANTOR_EXPORT CEncoder
{
public:
    /**
     * The UTF-8 text scrambled with `key`, as base64 text. The data is compressed only when that
     * makes it smaller, and protected by the checksum. A random byte makes two encodings of the
     * same text differ.
     */
    static CString Encode(CString text, long long key);
    /**
     * The text that Encode scrambled with the same key. Anything else (another key, a changed
     * byte, text that is not such a container) gives an empty text; a container whose version is
     * not 3 also logs "Invalid version or not a cyphertext." as a Qt warning. A container
     * without checksum or SHA-1 is accepted unchecked, as its format allows.
     *
     * A compressed body is checked before anything is allocated for it: a body that claims
     * more than 16 MiB of text, or more than 1,032 times its own size (more than deflate can
     * give), is refused with the same warning and an empty text.
     */
    static CString Decode(CString text, long long key);
    /**
     * The SHA-256 digest of the text's local 8-bit form, as 44 characters of base64.
     * Deliberately, an empty text comes back unchanged (empty).
     */
    static CString EncodeSha256(CString text);
};
