// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QTextStream>

class QIODevice;

/**
 * A text stream that reads and writes in the encoding of the library's language
 * (GetLanguage()): "euc-KR" for Korean, "zh-CN" for Chinese. Qt has no codec by the name
 * "zh-CN"; its Chinese national encoding GB18030 (a superset of GB2312 and GBK) stands in for
 * it. English keeps the stream's default, the locale's codec.
 */
class VANTOR_EXPORT TextStreamEx : public QTextStream
{
public:
    /// A stream on `device`; with `byLanguage` false it always keeps the default codec.
    explicit TextStreamEx(QIODevice *device, bool byLanguage = true);
    /// Flushes what is still buffered into the device.
    ~TextStreamEx() override;
};
