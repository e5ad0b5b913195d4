// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

class CFile;
namespace TreeXml {
class CXmlEx;
class CXmlNode;
} // namespace TreeXml

/**
 * The stored form of a font: family, point size, weight, writing system and a word of flags.
 *
 * In a file: the family as a CString (32-bit byte count and UTF-8 bytes), then the size as a
 * 32-bit integer, weight and writing system as one byte each and the flags as a 16-bit word.
 * The flag bits are the application's; they are kept exactly as stored.
 */
class VANTOR_EXPORT LogFont
{
public:
    /// The library's initial font name (VantorStrings::InitFontName as it is at this moment),
    /// size 10, weight 0, writing system 0, no flags.
    LogFont();
    virtual ~LogFont();
    /// Copies every field; the copy is independent of the original.
    ///@{
    LogFont(const LogFont &other);
    LogFont &operator=(const LogFont &other);
    ///@}

    /**
     * Reads the fields in their file order. Returns false, leaving the fields unchanged, when
     * the file ends before the record does or the family's length is corrupt.
     */
    bool Read(CFile &file);
    /// Writes the fields in their file order; false when the file did not take every byte.
    bool Write(CFile &file);
    /**
     * Adds the elements "Family", "Size", "Weight", "WritingSystem" and "Flag", in this order,
     * directly under `node`; numbers in decimal. Does nothing for a null node.
     */
    void WriteXml(TreeXml::CXmlEx &xml, TreeXml::CXmlNode *node);

    /// Font family name.
    CString m_strFamily;
    /// Font size (10 by default), as the application applies it; 32 bits in the file.
    int m_nSize;
    /// Weight byte, kept as the application stores it (0 by default); one byte in the file.
    unsigned char m_nWeight;
    /// Writing-system byte, kept as the application stores it (0 by default).
    unsigned char m_nWritingSystem;
    /// Flag bits of the application's own meaning, stored unchanged.
    unsigned short m_nFlag;
};
