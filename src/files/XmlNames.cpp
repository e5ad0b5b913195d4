// SPDX-License-Identifier: MIT
#include "XmlNames_p.h"

#include "PrintMessage.h"

namespace TreeXml {
namespace Detail {

namespace {

// The name characters of XML 1.0 (fifth edition), without the colon.
bool isNameStart(uint c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_' ||
        (c >= 0xC0 && c <= 0xD6) || (c >= 0xD8 && c <= 0xF6) || (c >= 0xF8 && c <= 0x2FF) ||
        (c >= 0x370 && c <= 0x37D) || (c >= 0x37F && c <= 0x1FFF) || c == 0x200C || c == 0x200D ||
        (c >= 0x2070 && c <= 0x218F) || (c >= 0x2C00 && c <= 0x2FEF) ||
        (c >= 0x3001 && c <= 0xD7FF) || (c >= 0xF900 && c <= 0xFDCF) ||
        (c >= 0xFDF0 && c <= 0xFFFD);
}

bool isNameChar(uint c)
{
    return isNameStart(c) || c == '-' || c == '.' || (c >= '0' && c <= '9') || c == 0xB7 ||
        (c >= 0x300 && c <= 0x36F) || c == 0x203F || c == 0x2040;
}

bool isXmlChar(uint c)
{
    return c == 0x9 || c == 0xA || c == 0xD || (c >= 0x20 && c <= 0xD7FF) ||
        (c >= 0xE000 && c <= 0xFFFD) || (c >= 0x10000 && c <= 0x10FFFF);
}

} // namespace

bool isElementName(const QString &name)
{
    if (name.isEmpty() || !isNameStart(name.at(0).unicode()))
        return false;
    for (const QChar c : name) {
        if (!isNameChar(c.unicode()))
            return false;
    }
    return true;
}

QDomElement createElement(QDomDocument &doc, char const *name)
{
    const QString text = QString::fromLatin1(name ? name : "");
    if (!isElementName(text)) {
        PrintMessage("XML element name \"%s\" is not valid: no element made.\n",
                     text.toUtf8().constData());
        return QDomElement();
    }
    return doc.createElement(text);
}

QString xmlText(const QString &text)
{
    QString out;
    out.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        uint c = text.at(i).unicode();
        if (text.at(i).isHighSurrogate() && i + 1 < text.size() &&
            text.at(i + 1).isLowSurrogate()) {
            out.append(text.at(i)).append(text.at(i + 1));
            ++i;
            continue;
        }
        if (isXmlChar(c))
            out.append(text.at(i));
    }
    return out;
}

} // namespace Detail
} // namespace TreeXml
