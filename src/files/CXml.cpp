// SPDX-License-Identifier: MIT
#include "CXml.h"

#include "QtCompat_p.h"

#include <QFile>
#include <QTextStream>

namespace TreeXml {

CXml::CXml() = default;

CXml::~CXml() = default;

CXmlNode *CXml::GetRoot()
{
    return &m_Root;
}

void CXml::SaveWithFormatted(char const *path)
{
    QFile file(QString::fromLatin1(path ? path : ""));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Text))
        return;
    QTextStream stream(&file);
    VantorCompat::setUtf8(stream);

    QString text = QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"no\"?>\n");
    text += m_Doc.toString(1);
    // One space per level becomes one tab per level, deepest level first so that a shallower
    // pass cannot split a deeper run. Deeper than ten levels is left: the surplus stays spaces.
    for (int n = 10; n >= 1; --n) {
        text.replace(QString(n, QLatin1Char(' ')) + QLatin1Char('<'),
                     QString(n, QLatin1Char('\t')) + QLatin1Char('<'));
    }
    stream << text;
    stream.flush();
    file.close();

    // Saving ends the document's life.
    m_Doc.clear();
}

} // namespace TreeXml
