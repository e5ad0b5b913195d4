// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QList>
#include <QMap>
#include <QString>

/**
 * A map from text keys to untyped pointers, with the member names of the Windows class-library map.
 * The keys are kept in ascending order; the map never owns what its values point to.
 * Keys are UTF-8 text, compared exactly (case-sensitive); a null key is the empty text.
 */
class VANTOR_EXPORT CMapStringToPtr
{
public:
    /// An empty map.
    CMapStringToPtr();

    /// The number of keys, counting those added by a failed Lookup or GetAt.
    int GetCount() const;

    /**
     * Sets `value` to the value stored for the key and returns true when it is not null.
     * Deliberately, an absent key is added with a null value: `value` becomes null, false
     * is returned and the key is counted and listed from then on. A key stored with a null
     * value also gives false.
     */
    bool Lookup(char const *key, void *&value);
    /// The value for the key through Lookup, so an absent key is added; null when unset.
    void *GetAt(char const *key);
    /// Inserts the key with the value, or replaces the value of an existing key.
    void SetAt(char const *key, void *value);
    /// Removes the key if present.
    void RemoveKey(char const *key);
    /// Removes every key; the pointers are not deleted.
    void RemoveAll();
    /// The same as RemoveAll.
    void Clear();
    /// Removes the key and returns its value; null, and nothing added, when it is absent.
    void *Take(char const *key);

    /// Every key in ascending order.
    QList<QString> Keys() const;

private:
    QMap<QString, void *> m_Map;
};
