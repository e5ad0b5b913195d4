// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QList>

/**
 * An index-addressed array of unsigned integers, with the member names of the Windows class-library
 * unsigned integer array. Copies are cheap (implicitly shared) until one side changes.
 */
class VANTOR_EXPORT CUIntArray
{
public:
    /// An empty array.
    CUIntArray();

    /// The number of elements; GetSize and GetCount are the same.
    ///@{
    int GetSize() const;
    int GetCount() const;
    ///@}

    /**
     * The element at the index. The index is not checked as part of the contract: callers pass
     * 0 to GetSize() - 1 (anything else gives 0, never a crash).
     */
    unsigned int GetAt(int index) const;
    /// As GetAt.
    unsigned int operator[](int index) const;
    /// Replaces the element at the index; like GetAt, a valid index is the caller's duty
    /// (an invalid one changes nothing).
    void SetAt(int index, unsigned int value);

    /// Appends the value at the end.
    void Add(unsigned int value);
    /// Inserts before the index (0 to GetSize()); a bad index is clamped to that range.
    void InsertAt(int index, unsigned int value);
    /// Removes the element at the index; an index that is negative or not below the size is
    /// ignored.
    void RemoveAt(int index);
    /// Removes every element.
    void RemoveAll();

private:
    QList<unsigned int> m_List;
};
