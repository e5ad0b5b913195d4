// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

#include <QList>
#include <QMap>
#include <QString>

/**
 * A map from text keys to strings, with the member names of the Windows class-library map.
 * The keys are kept in ascending order. Keys are UTF-8 text, compared exactly (case-sensitive);
 * a null key is the empty text.
 */
class VANTOR_EXPORT CMapStringToString
{
public:
    /// An empty map.
    CMapStringToString();

    /// The number of keys, counting those added by a failed Lookup or GetAt.
    int GetCount() const;

    /**
     * Sets `value` to the string stored for the key and returns true when it is not empty.
     * Deliberately, an absent key is added with an empty string: `value` becomes empty, false
     * is returned and the key is counted and listed from then on. A key stored with an empty
     * string also gives false.
     */
    bool Lookup(char const *key, CString &value);
    /// The string for the key through Lookup, so an absent key is added; empty when unset.
    CString GetAt(char const *key);
    /// Inserts the key with the string, or replaces the string of an existing key.
    void SetAt(char const *key, CString value);
    /// Removes the key if present.
    void RemoveKey(char const *key);
    /// Removes every key.
    void RemoveAll();

    /// Every key in ascending order.
    QList<QString> Keys() const;

private:
    QMap<QString, QString> m_Map;
};
