// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "CXml.h"
#include "CXmlNode.h"
#include "vantor_export.h"

namespace TreeXml {

/**
 * The XML document an application builds: Create gives it its top element, CreateNode and
 * CXmlNode::GetChild add elements, m_Xml.SaveWithFormatted writes it.
 */
class VANTOR_EXPORT CXmlEx
{
public:
    /// An empty document; call Create to give it its top element.
    CXmlEx();
    virtual ~CXmlEx();

    /**
     * Creates the element `name`, makes it the root node's element and the document's top
     * element. The other two arguments are not used. Returns 1.
     *
     * Element names here and in CreateNode and CXmlNode::GetChild must be XML names without a
     * prefix (a letter or "_" first, then letters, digits, "-", "." or "_"): any other name
     * ("", "a b", "a<b>", "x:y") makes no element and is reported through PrintMessage, so a
     * saved file is always well-formed. Create then returns 0 and changes nothing.
     */
    int Create(char const *name, char const *unused1 = nullptr, char const *unused2 = nullptr);
    /**
     * Appends a new element `name` to the parent's element and returns it as a new node owned
     * by the caller. Under a parent without element (the root before Create) the new element
     * stays outside the document and is not saved. For a name that is refused the node comes
     * back without element: nothing added under it or set on it is saved.
     */
    CXmlNode *CreateNode(CXmlNode *parent, char const *name);

    /// The document and its root node; save it with m_Xml.SaveWithFormatted.
    CXml m_Xml;
    /// Carried for the application; empty at first.
    CString m_strUser;
    /// Carried for the application; 0 at first.
    int m_nUser;
};

} // namespace TreeXml
