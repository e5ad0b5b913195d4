// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QString>
#include <QStringList>

/**
 * Cuts a text into a list at every occurrence of a separator, in one call.
 *
 * The rules are the library's own, not those of QString::split, and ported code relies on them:
 * - after a separator is found the search resumes one character later, not after the whole
 *   separator, so with a separator of several characters the rest of it begins the next item
 *   ("a::b" cut at "::" gives "a" and ":b");
 * - the text after the last separator becomes an item only when it has at least two
 *   characters, so a final one-character item and an empty item after a trailing separator are
 *   both dropped ("a,b,c" gives "a" and "b").
 * The search is case-sensitive. An empty separator gives an empty list.
 */
class VANTOR_EXPORT StringSpliter
{
public:
    /// Cuts `text` at every occurrence of `separator` (see the class rules).
    static QStringList Execute(QString text, QString separator);
};
