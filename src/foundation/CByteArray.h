// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QList>

/**
 * An index-addressed array of bytes, with the member names of the Windows class-library
 * byte array. Copies are cheap (implicitly shared) until one side changes.
 */
class VANTOR_EXPORT CByteArray
{
public:
    /// An empty array.
    CByteArray();

    /// The number of elements; GetSize and GetCount are the same.
    ///@{
    int GetSize() const;
    int GetCount() const;
    ///@}

    /**
     * The element at the index. The index is not checked as part of the contract: callers pass
     * 0 to GetSize() - 1 (anything else gives 0, never a crash).
     */
    unsigned char GetAt(int index) const;
    /// As GetAt.
    unsigned char operator[](int index) const;

    /// Appends the value at the end.
    void Add(unsigned char value);
    /// Inserts before the index (0 to GetSize()); a bad index is clamped to that range.
    void InsertAt(int index, unsigned char value);
    /// Removes the element at the index; an index that is negative or not below the size is
    /// ignored.
    void RemoveAt(int index);
    /// Removes every element.
    void RemoveAll();

    /// Empties this array, then appends every element of `other` in order.
    void Copy(CByteArray other);

private:
    QList<unsigned char> m_List;
};
