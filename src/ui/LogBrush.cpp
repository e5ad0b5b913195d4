// SPDX-License-Identifier: MIT
#include "LogBrush.h"

#include "LogRecords_p.h"

LogBrush::LogBrush()
    : m_nStyle(0)
    , m_nHatch(4)
    , m_Color(0xFFFFFF)
{ }

LogBrush::~LogBrush() = default;

LogBrush::LogBrush(const LogBrush &other) = default;

LogBrush &LogBrush::operator=(const LogBrush &other)
{
    m_nStyle = other.m_nStyle;
    m_nHatch = other.m_nHatch;
    m_Color = other.m_Color;
    return *this;
}

bool LogBrush::Read(CFile &file)
{
    return VantorRecords::readWordsAndColor(file, m_nStyle, m_nHatch, m_Color);
}

bool LogBrush::Write(CFile &file)
{
    return VantorRecords::writeWordsAndColor(file, m_nStyle, m_nHatch, m_Color);
}

void LogBrush::WriteXml(TreeXml::CXmlEx &xml, TreeXml::CXmlNode *node)
{
    if (!node)
        return;
    // The colour comes before the hatch here, unlike the file layout.
    VantorRecords::addElement(xml, node, "Style", m_nStyle);
    VantorRecords::addElement(xml, node, "Color", (unsigned int)m_Color);
    VantorRecords::addElement(xml, node, "Hatch", m_nHatch);
}
