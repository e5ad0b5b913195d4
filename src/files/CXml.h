// SPDX-License-Identifier: MIT
#pragma once

#include "CXmlNode.h"
#include "vantor_export.h"

#include <QDomDocument>

namespace TreeXml {

/**
 * An XML document and its root node, written once with SaveWithFormatted.
 *
 * The root node never has a document pointer; its element is set by CXmlEx::Create.
 */
class VANTOR_EXPORT CXml
{
public:
    /// An empty document; the root node has no element until CXmlEx::Create.
    CXml();
    ~CXml();

    CXml(const CXml &) = delete;
    CXml &operator=(const CXml &) = delete;

    /// The root node, part of this object.
    CXmlNode *GetRoot();

    /**
     * Writes the document to `path` (UTF-8, existing content replaced) and then empties it.
     * The text starts with the fixed declaration
     * `<?xml version="1.0" encoding="UTF-8" standalone="no"?>` and indents each level with a
     * tab, for up to 10 levels; a deeper line keeps its surplus as spaces before 10 tabs. The
     * indentation rule turns every run of up to 10 spaces directly before "<" into tabs, also
     * inside a text: a value ending in spaces, followed by a child element or its own closing
     * tag, is saved with those spaces as tabs. When the file cannot be opened nothing is written
     * and the document is kept.
     *
     * Saving deliberately ends the document's life: after a save the document is empty, nodes
     * still held refer to elements no longer in it, and a second save writes the declaration
     * alone. Building may start again with CXmlEx::Create.
     */
    void SaveWithFormatted(char const *path);

    /// The document being built; emptied by SaveWithFormatted.
    QDomDocument m_Doc;
    /// The root node that GetRoot returns; its element is the top element once Create ran.
    CXmlNode m_Root;
};

} // namespace TreeXml
