// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QList>
#include <QMap>

/**
 * A map from unsigned integer keys to untyped pointers, with the member names of the Windows
 * class-library map. The keys are kept in ascending order; the map never owns what its values point
 * to.
 */
class VANTOR_EXPORT CMapUIntToPtr
{
public:
    /// An empty map.
    CMapUIntToPtr();

    /// The number of keys, counting those added by a failed Lookup or GetAt.
    int GetCount() const;

    /**
     * Sets `value` to the value stored for the key and returns true when it is not null.
     * Deliberately, an absent key is added with a null value: `value` becomes null, false
     * is returned and the key is counted and listed from then on. A key stored with a null
     * value also gives false.
     */
    bool Lookup(unsigned int key, void *&value);
    /// The value for the key through Lookup, so an absent key is added; null when unset.
    void *GetAt(unsigned int key);
    /// Inserts the key with the value, or replaces the value of an existing key.
    void SetAt(unsigned int key, void *value);
    /// Removes every key; the pointers are not deleted.
    void RemoveAll();

    /// The values (not the keys), in ascending order of their keys.
    QList<void *> GetList() const;

private:
    QMap<unsigned int, void *> m_Map;
};
