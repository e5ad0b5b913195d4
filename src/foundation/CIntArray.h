// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QList>

/**
 * An index-addressed array of signed integers, with the member names of the Windows class-library
 * integer array. Copies are cheap (implicitly shared) until one side changes.
 */
class VANTOR_EXPORT CIntArray
{
public:
    /// An empty array.
    CIntArray();

    /// The number of elements; GetSize and GetCount are the same.
    ///@{
    int GetSize() const;
    int GetCount() const;
    ///@}

    /**
     * The element at the index. The index is not checked as part of the contract: callers pass
     * 0 to GetSize() - 1 (anything else gives 0, never a crash).
     */
    int GetAt(int index) const;
    /// As GetAt.
    int operator[](int index) const;
    /// Replaces the element at the index; like GetAt, a valid index is the caller's duty
    /// (an invalid one changes nothing).
    void SetAt(int index, int value);

    /// Appends the value at the end.
    void Add(int value);
    /// Inserts before the index (0 to GetSize()); a bad index is clamped to that range.
    void InsertAt(int index, int value);
    /// Removes the element at the index; an index that is negative or not below the size is
    /// ignored.
    void RemoveAt(int index);
    /// Removes every element.
    void RemoveAll();

    /// Empties this array, then appends every element of `other` in order.
    void Copy(CIntArray other);

private:
    QList<int> m_List;
};
