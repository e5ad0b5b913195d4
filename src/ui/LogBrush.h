// SPDX-License-Identifier: MIT
#pragma once

#include "WinTypes.h"
#include "vantor_export.h"

class CFile;
namespace TreeXml {
class CXmlEx;
class CXmlNode;
} // namespace TreeXml

/**
 * The stored form of a brush: style, hatch index and COLORREF colour.
 *
 * In a file it takes 8 bytes with the layout of LogPen: style and hatch as 16-bit words, then
 * the colour as a 32-bit word, little-endian. Its XML form names the colour before the hatch.
 */
class VANTOR_EXPORT LogBrush
{
public:
    /// Style 0, hatch 4, white (0xFFFFFF).
    LogBrush();
    virtual ~LogBrush();
    /// Copies every field; the copy is independent of the original.
    ///@{
    LogBrush(const LogBrush &other);
    LogBrush &operator=(const LogBrush &other);
    ///@}

    /**
     * Reads style, hatch and colour. Returns false, leaving the fields unchanged, when the file
     * ends before the record does.
     */
    bool Read(CFile &file);
    /// Writes style, hatch and colour; false when the file did not take all 8 bytes.
    bool Write(CFile &file);
    /**
     * Adds the elements "Style", "Color" and "Hatch", in this order, directly under `node`;
     * the colour as a decimal number. Does nothing for a null node.
     */
    void WriteXml(TreeXml::CXmlEx &xml, TreeXml::CXmlNode *node);

    /// Brush style number, kept for the application; the library only stores it. 0 by default.
    unsigned short m_nStyle;
    /// Hatch index as CBrush::CreateHatchBrush takes it: 5 means no fill, every other value a
    /// solid one (hatch patterns are not drawn). 4 by default.
    unsigned short m_nHatch;
    /// Colour as 0x00BBGGRR; stored as a 32-bit word.
    COLORREF m_Color;
};
