// SPDX-License-Identifier: MIT
#pragma once

// Shared by the drawing-object records: LogPen and LogBrush have one file layout, and all
// three write their XML elements the same way.

#include "CFile.h"
#include "CXmlEx.h"
#include "CXmlNode.h"
#include "WinTypes.h"

#include <memory>

namespace VantorRecords {

/// Two 16-bit words and a 32-bit colour. On a short read the outputs are left unchanged.
inline bool readWordsAndColor(CFile &file, unsigned short &first, unsigned short &second,
                              COLORREF &color)
{
    unsigned short a = 0;
    unsigned short b = 0;
    unsigned int c = 0;
    if (file.Read(a) != int(sizeof a) || file.Read(b) != int(sizeof b) ||
        file.Read(c) != int(sizeof c))
        return false;
    first = a;
    second = b;
    color = c;
    return true;
}

inline bool writeWordsAndColor(CFile &file, unsigned short first, unsigned short second,
                               COLORREF color)
{
    const bool a = file.Write(first) == int(sizeof first);
    const bool b = file.Write(second) == int(sizeof second);
    const bool c = file.Write((unsigned int)color) == int(sizeof(unsigned int));
    return a && b && c;
}

/// Appends the element `name` with the text of `value` to `parent`. The node made for it is
/// released at once; the element stays in the document.
template<typename T>
void addElement(TreeXml::CXmlEx &xml, TreeXml::CXmlNode *parent, const char *name, T value)
{
    std::unique_ptr<TreeXml::CXmlNode> node(xml.CreateNode(parent, name));
    if (node)
        node->SetValue(value);
}

} // namespace VantorRecords
