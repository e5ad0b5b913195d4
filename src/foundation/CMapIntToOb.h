// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QList>
#include <QMap>

class QObject;

/**
 * A map from integer keys to object pointers, with the member names of the Windows class-library
 * map. The keys are kept in ascending order; the map never owns what its values point to.
 */
class VANTOR_EXPORT CMapIntToOb
{
public:
    /// An empty map.
    CMapIntToOb();

    /// The number of keys, counting those added by a failed Lookup or GetAt.
    int GetCount() const;

    /**
     * Sets `value` to the value stored for the key and returns true when it is not null.
     * Deliberately, an absent key is added with a null value: `value` becomes null, false
     * is returned and the key is counted and listed from then on. A key stored with a null
     * value also gives false.
     */
    bool Lookup(int key, QObject *&value);
    /// The value for the key through Lookup, so an absent key is added; null when unset.
    QObject *GetAt(int key);
    /// Inserts the key with the value, or replaces the value of an existing key.
    void SetAt(int key, QObject *value);
    /// Removes the key if present.
    void RemoveKey(int key);
    /// Removes every key; the objects are not deleted.
    void RemoveAll();

    /// Every key in ascending order.
    QList<int> GetKeyList() const;

private:
    QMap<int, QObject *> m_Map;
};
