// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QList>

/**
 * An index-addressed array of 16-bit unsigned words, with the member names of the Windows
 * class-library word array. Copies are cheap (implicitly shared) until one side changes.
 */
class VANTOR_EXPORT CWordArray
{
public:
    /// An empty array.
    CWordArray();

    /// The number of elements; GetSize and GetCount are the same.
    ///@{
    int GetSize() const;
    int GetCount() const;
    ///@}

    /**
     * The element at the index. The index is not checked as part of the contract: callers pass
     * 0 to GetSize() - 1 (anything else gives 0, never a crash).
     */
    unsigned short GetAt(int index) const;
    /// As GetAt.
    unsigned short operator[](int index) const;

    /// Appends the value at the end.
    void Add(unsigned short value);
    /// Inserts before the index (0 to GetSize()); a bad index is clamped to that range.
    void InsertAt(int index, unsigned short value);
    /// Removes the element at the index; an index that is negative or not below the size is
    /// ignored.
    void RemoveAt(int index);
    /// Removes every element.
    void RemoveAll();

    /// Empties this array, then appends every element of `other` in order.
    void Copy(CWordArray other);

private:
    QList<unsigned short> m_List;
};
