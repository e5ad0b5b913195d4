// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QList>

/**
 * An index-addressed array of untyped pointers, with the member names of the Windows
 * class-library pointer array. The array never owns what the pointers refer to.
 */
class VANTOR_EXPORT CPtrArray
{
public:
    /// An empty array.
    CPtrArray();

    /// The number of elements; GetSize and GetCount are the same.
    ///@{
    int GetSize() const;
    int GetCount() const;
    ///@}
    /// True when the array holds no element.
    bool IsEmpty() const;

    /**
     * The pointer at the index. Unlike CObArray the index is not checked as part of the
     * contract: callers pass 0 to GetSize() - 1 (anything else gives null, never a crash).
     */
    void const *GetAt(int index) const;
    /// As GetAt.
    void const *operator[](int index) const;
    /// The index of the first element equal to the pointer, scanning from 0, or -1.
    int Find(void const *pointer) const;

    /// Appends the pointer at the end; the array does not take ownership.
    void Add(void const *pointer);
    /// Inserts before the index (0 to GetSize()); a bad index is clamped to that range.
    void InsertAt(int index, void const *pointer);
    /// Removes the element at the index; an index that is negative or not below the size is
    /// ignored.
    void RemoveAt(int index);
    /// Forgets every pointer; nothing is freed.
    void RemoveAll();

private:
    QList<void const *> m_List;
};
