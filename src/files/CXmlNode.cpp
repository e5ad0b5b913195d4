// SPDX-License-Identifier: MIT
#include "CXmlNode.h"

#include "CXmlEx.h"
#include "XmlNames_p.h"

namespace TreeXml {

CXmlNode::CXmlNode()
    : m_pDoc(nullptr)
    , m_pLastChild(nullptr)
{ }

CXmlNode *CXmlNode::GetChild(CXmlEx &doc, char const *name)
{
    CXmlNode *child = new CXmlNode;
    child->m_pDoc = &doc;
    child->m_Element = Detail::createElement(doc.m_Xml.m_Doc, name);
    if (!child->m_Element.isNull() && !m_Element.isNull())
        m_Element.appendChild(child->m_Element);
    m_pLastChild = child;
    return child;
}

void CXmlNode::AttachChild(CXmlNode *child)
{
    if (child)
        m_Element.appendChild(child->m_Element);
}

bool CXmlNode::HasChildren()
{
    return false;
}

void CXmlNode::RemoveChildren() { }

void CXmlNode::appendText(const QString &text)
{
    const QString clean = Detail::xmlText(text);
    if (!m_pDoc || clean.isEmpty() || m_Element.isNull())
        return;
    m_Element.appendChild(m_pDoc->m_Xml.m_Doc.createTextNode(clean));
}

void CXmlNode::SetValue(char const *text)
{
    if (text)
        appendText(QString::fromLatin1(text));
}

void CXmlNode::SetValue(CString text)
{
    appendText(text.text);
}

void CXmlNode::SetValue(char value)
{
    appendText(QString::number(int(value)));
}

void CXmlNode::SetValue(unsigned char value)
{
    appendText(QString::number(uint(value)));
}

void CXmlNode::SetValue(bool value)
{
    appendText(QString::number(value ? 1 : 0));
}

void CXmlNode::SetValue(short value)
{
    appendText(QString::number(value));
}

void CXmlNode::SetValue(unsigned short value)
{
    appendText(QString::number(value));
}

void CXmlNode::SetValue(int value)
{
    appendText(QString::number(value));
}

void CXmlNode::SetValue(unsigned int value)
{
    appendText(QString::number(value));
}

void CXmlNode::SetValue(long value)
{
    appendText(QString::number(value));
}

void CXmlNode::SetValue(unsigned long value)
{
    appendText(QString::number(value));
}

void CXmlNode::SetValue(long long value)
{
    appendText(QString::number(value));
}

void CXmlNode::SetValue(unsigned long long value)
{
    appendText(QString::number(value));
}

void CXmlNode::SetValue(float value)
{
    SetValue(double(value));
}

void CXmlNode::SetValue(double value)
{
    appendText(QString::asprintf("%f", value));
}

} // namespace TreeXml
