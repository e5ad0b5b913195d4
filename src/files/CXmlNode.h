// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

#include <QDomElement>

namespace TreeXml {

class CXmlEx;

/**
 * One element of an XML tree under construction.
 *
 * Nodes made by CXmlEx::CreateNode and GetChild are allocated on the heap and belong to the
 * caller. A node neither owns nor frees its children, and deleting a node leaves its element in
 * the document. Names and texts given as `char const*` are taken as Latin-1.
 */
class VANTOR_EXPORT CXmlNode
{
public:
    /// A node without document or element: nothing set on it is saved.
    CXmlNode();

    /**
     * Appends a new element `name` to this node's element and returns it as a new node, also
     * kept as m_pLastChild. Deliberately never looks for an existing child: every call adds an
     * element, even under a name that is already there. A name that is not an XML name makes
     * no element (see CXmlEx::Create); the node comes back without one.
     */
    CXmlNode *GetChild(CXmlEx &doc, char const *name);
    /// Appends the other node's element here, moving it from its former parent.
    void AttachChild(CXmlNode *child);
    /// Always false: the tree is write-only.
    bool HasChildren();
    /// Does nothing: the tree is write-only.
    void RemoveChildren();

    /**
     * Each SetValue appends one more text node, so two calls give both texts one after the
     * other. A node without document (the root node) or without element takes no text.
     * Characters that XML cannot hold (control characters other than tab, line feed and
     * carriage return) are left out.
     */
    void SetValue(char const *text); ///< Nothing for an empty text.
    /// The string's text; nothing for an empty string.
    void SetValue(CString text);
    void SetValue(char value); ///< The character's numeric code, in decimal.
    /// The number in decimal, with a minus sign when negative.
    ///@{
    void SetValue(unsigned char value);
    void SetValue(bool value); ///< 0 or 1.
    void SetValue(short value);
    void SetValue(unsigned short value);
    void SetValue(int value);
    void SetValue(unsigned int value);
    void SetValue(long value);
    void SetValue(unsigned long value);
    void SetValue(long long value);
    void SetValue(unsigned long long value);
    ///@}
    void SetValue(float value);  ///< "%f": fixed point with six decimals, 1.5 gives 1.500000.
    void SetValue(double value); ///< "%f": fixed point with six decimals, 0.1 gives 0.100000.

    /// The document that made this node; null for the root node and for a default node.
    CXmlEx *m_pDoc;
    /// The element; null until created.
    QDomElement m_Element;
    /// The node last made by GetChild; not owned.
    CXmlNode *m_pLastChild;

private:
    void appendText(const QString &text);
};

} // namespace TreeXml
