// SPDX-License-Identifier: MIT
#pragma once

#include <QTextCodec>

namespace VantorPrivate {

/**
 * The codec a TextStreamEx reads and writes with: the language's ("euc-KR" for Korean, "zh-CN"
 * or GB18030 for Chinese) when `byLanguage` is set and the language has one, otherwise the
 * stream's default (the locale's codec on Qt 5, UTF-8 on Qt 6).
 */
QTextCodec *textStreamCodec(bool byLanguage);

} // namespace VantorPrivate
