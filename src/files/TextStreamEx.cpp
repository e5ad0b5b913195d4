// SPDX-License-Identifier: MIT
#include "TextStreamEx.h"

#include "QtCompat_p.h"
#include "VantorStrings.h"

#include <QTextCodec>

TextStreamEx::TextStreamEx(QIODevice *device, bool byLanguage)
    : QTextStream(device)
{
    if (!byLanguage)
        return;
    QTextCodec *codec = nullptr;
    switch (GetLanguage()) {
    case 1:
        codec = QTextCodec::codecForName("euc-KR");
        break;
    case 2:
        codec = QTextCodec::codecForName("zh-CN");
        if (!codec)
            codec = QTextCodec::codecForName("GB18030");
        break;
    default:
        break;
    }
    VantorCompat::setCodec(*this, codec);
}

TextStreamEx::~TextStreamEx()
{
    VantorCompat::releaseCodec(*this);
}
