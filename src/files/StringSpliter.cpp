// SPDX-License-Identifier: MIT
#include "StringSpliter.h"

QStringList StringSpliter::Execute(QString text, QString separator)
{
    QStringList items;
    if (separator.isEmpty())
        return items;

    int start = 0;
    for (;;) {
        const int found = text.indexOf(separator, start, Qt::CaseSensitive);
        if (found < 0)
            break;
        items.append(text.mid(start, found - start));
        // One character on, not past the whole separator: ported callers depend on it.
        start = found + 1;
    }
    // The tail counts only with at least two characters left.
    if (start + 1 < text.size())
        items.append(text.mid(start));
    return items;
}
