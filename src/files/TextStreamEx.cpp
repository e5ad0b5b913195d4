// SPDX-License-Identifier: MIT
#include "TextStreamEx.h"
#include "TextStreamEx_p.h"

#include "QtCompat_p.h"
#include "VantorStrings.h"

#include <QTextCodec>

namespace {

QTextCodec *languageCodec()
{
    switch (GetLanguage()) {
    case 1:
        return QTextCodec::codecForName("euc-KR");
    case 2:
        if (QTextCodec *codec = QTextCodec::codecForName("zh-CN"))
            return codec;
        return QTextCodec::codecForName("GB18030");
    default:
        return nullptr;
    }
}

} // namespace

QTextCodec *VantorPrivate::textStreamCodec(bool byLanguage)
{
    if (QTextCodec *codec = byLanguage ? languageCodec() : nullptr)
        return codec;
#if QT_VERSION >= QT_VERSION_CHECK(6, 0, 0)
    return QTextCodec::codecForName("UTF-8");
#else
    return QTextCodec::codecForLocale();
#endif
}

TextStreamEx::TextStreamEx(QIODevice *device, bool byLanguage)
    : QTextStream(device)
{
    if (byLanguage)
        VantorCompat::setCodec(*this, languageCodec());
}

TextStreamEx::~TextStreamEx()
{
    VantorCompat::releaseCodec(*this);
}
