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
 * The stored form of a pen: style (Qt's pen style number), width and COLORREF colour.
 *
 * In a file it takes 8 bytes: style and width as 16-bit words, then the colour as a 32-bit
 * word, little-endian. LogBrush has the same layout.
 */
class VANTOR_EXPORT LogPen
{
public:
    /// Style 0, width 1, black.
    LogPen();
    virtual ~LogPen();
    /// Copies every field; the copy is independent of the original.
    ///@{
    LogPen(const LogPen &other);
    LogPen &operator=(const LogPen &other);
    ///@}

    /**
     * Reads style, width and colour. Returns false, leaving the fields unchanged, when the file
     * ends before the record does.
     */
    bool Read(CFile &file);
    /// Writes style, width and colour; false when the file did not take all 8 bytes.
    bool Write(CFile &file);
    /**
     * Adds an element "LogPen" under `node` holding "LogPenStyle", "LogPenWidth" and
     * "LogPenColor" in this order, the colour as a decimal number. Does nothing for a null node.
     */
    void WriteXml(TreeXml::CXmlEx &xml, TreeXml::CXmlNode *node);

    /// Qt pen style number 0-5 (0 no pen, 1 solid, 2 dash, 3 dot, 4 dash-dot, 5 dash-dot-dot);
    /// CPen::CreatePenIndirect makes any other value solid.
    unsigned short m_nStyle;
    /// Pen width in pixels; 0 is Qt's cosmetic one-pixel pen.
    unsigned short m_nWidth;
    /// Colour as 0x00BBGGRR; stored as a 32-bit word.
    COLORREF m_Color;
};
