// SPDX-License-Identifier: MIT
#include "CXmlEx.h"

#include "XmlNames_p.h"

namespace TreeXml {

CXmlEx::CXmlEx()
    : m_nUser(0)
{ }

CXmlEx::~CXmlEx() = default;

int CXmlEx::Create(char const *name, char const *unused1, char const *unused2)
{
    Q_UNUSED(unused1)
    Q_UNUSED(unused2)
    QDomElement top = Detail::createElement(m_Xml.m_Doc, name);
    if (top.isNull())
        return 0;
    m_Xml.m_Root.m_Element = top;
    m_Xml.m_Doc.appendChild(top);
    return 1;
}

CXmlNode *CXmlEx::CreateNode(CXmlNode *parent, char const *name)
{
    CXmlNode *node = new CXmlNode;
    node->m_pDoc = this;
    node->m_Element = Detail::createElement(m_Xml.m_Doc, name);
    if (parent && !parent->m_Element.isNull() && !node->m_Element.isNull())
        parent->m_Element.appendChild(node->m_Element);
    return node;
}

} // namespace TreeXml
