// SPDX-License-Identifier: MIT
#include "LogPen.h"

#include "LogRecords_p.h"

static_assert(sizeof(unsigned short) == 2 && sizeof(COLORREF) == 4,
              "a pen record is two 16-bit words and a 32-bit colour in a file");

LogPen::LogPen()
    : m_nStyle(0)
    , m_nWidth(1)
    , m_Color(0)
{ }

LogPen::~LogPen() = default;

LogPen::LogPen(const LogPen &other) = default;

LogPen &LogPen::operator=(const LogPen &other)
{
    m_nStyle = other.m_nStyle;
    m_nWidth = other.m_nWidth;
    m_Color = other.m_Color;
    return *this;
}

bool LogPen::Read(CFile &file)
{
    return VantorRecords::readWordsAndColor(file, m_nStyle, m_nWidth, m_Color);
}

bool LogPen::Write(CFile &file)
{
    return VantorRecords::writeWordsAndColor(file, m_nStyle, m_nWidth, m_Color);
}

void LogPen::WriteXml(TreeXml::CXmlEx &xml, TreeXml::CXmlNode *node)
{
    if (!node)
        return;
    std::unique_ptr<TreeXml::CXmlNode> pen(xml.CreateNode(node, "LogPen"));
    VantorRecords::addElement(xml, pen.get(), "LogPenStyle", m_nStyle);
    VantorRecords::addElement(xml, pen.get(), "LogPenWidth", m_nWidth);
    VantorRecords::addElement(xml, pen.get(), "LogPenColor", (unsigned int)m_Color);
}
