// SPDX-License-Identifier: MIT
#pragma once

// The checks that keep every file the XML writer saves well-formed.

#include <QDomDocument>
#include <QDomElement>
#include <QString>

namespace TreeXml {
namespace Detail {

/**
 * True when `name` is an XML name without namespace prefix: a letter or "_" first, then
 * letters, digits, "-", "." or "_" (with the wider Unicode ranges of XML 1.0). A colon is
 * refused, since the writer declares no namespaces. Names starting with "xml" are allowed.
 */
bool isElementName(const QString &name);

/**
 * A new element of `doc` named `name` (Latin-1), or a null element when the name is not an
 * element name; the refusal is logged through PrintMessage.
 */
QDomElement createElement(QDomDocument &doc, char const *name);

/// `text` without the characters that XML 1.0 cannot hold (control characters other than
/// tab, line feed and carriage return, U+FFFE, U+FFFF and unpaired surrogates).
QString xmlText(const QString &text);

} // namespace Detail
} // namespace TreeXml
