// SPDX-License-Identifier: MIT
#include "LogFont.h"

#include "LogRecords_p.h"
#include "VantorStrings.h"

LogFont::LogFont()
    : m_strFamily(VantorStrings::InitFontName)
    , m_nSize(10)
    , m_nWeight(0)
    , m_nWritingSystem(0)
    , m_nFlag(0)
{ }

LogFont::~LogFont() = default;

LogFont::LogFont(const LogFont &other) = default;

LogFont &LogFont::operator=(const LogFont &other)
{
    m_strFamily = other.m_strFamily;
    m_nSize = other.m_nSize;
    m_nWeight = other.m_nWeight;
    m_nWritingSystem = other.m_nWritingSystem;
    m_nFlag = other.m_nFlag;
    return *this;
}

bool LogFont::Read(CFile &file)
{
    CString family;
    // A family cut short by the end of the file leaves nothing for the fields below, whose reads
    // then fail: every truncated record is refused.
    if (file.Read(family) < 0)
        return false;
    int size = 0;
    unsigned char weight = 0;
    unsigned char writingSystem = 0;
    unsigned short flag = 0;
    if (file.Read(size) != int(sizeof size) || file.Read(weight) != 1 ||
        file.Read(writingSystem) != 1 || file.Read(flag) != int(sizeof flag))
        return false;
    m_strFamily = family;
    m_nSize = size;
    m_nWeight = weight;
    m_nWritingSystem = writingSystem;
    m_nFlag = flag;
    return true;
}

bool LogFont::Write(CFile &file)
{
    const qint64 start = file.Pos();
    file.Write(m_strFamily);
    const bool family = file.Pos() == start + 4 + m_strFamily.GetLength(true);
    const bool size = file.Write(m_nSize) == int(sizeof m_nSize);
    const bool weight = file.Write(m_nWeight) == 1;
    const bool writingSystem = file.Write(m_nWritingSystem) == 1;
    const bool flag = file.Write(m_nFlag) == int(sizeof m_nFlag);
    return family && size && weight && writingSystem && flag;
}

void LogFont::WriteXml(TreeXml::CXmlEx &xml, TreeXml::CXmlNode *node)
{
    if (!node)
        return;
    VantorRecords::addElement(xml, node, "Family", m_strFamily);
    VantorRecords::addElement(xml, node, "Size", m_nSize);
    VantorRecords::addElement(xml, node, "Weight", m_nWeight);
    VantorRecords::addElement(xml, node, "WritingSystem", m_nWritingSystem);
    VantorRecords::addElement(xml, node, "Flag", m_nFlag);
}
