// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QList>

class QObject;

/**
 * An index-addressed array of object pointers, with the member names of the Windows
 * class-library object array.
 *
 * The array never owns the objects: RemoveAt and RemoveAll only forget the pointers. Copies are
 * cheap (implicitly shared) until one side changes.
 */
class VANTOR_EXPORT CObArray
{
public:
    /// An empty array.
    CObArray();

    /// The number of elements; GetSize and GetCount are the same.
    ///@{
    int GetSize() const;
    int GetCount() const;
    ///@}
    /// True when the array holds no element.
    bool IsEmpty() const;

    /// The pointer at the index; null when the index is negative or not below the size.
    QObject const *GetAt(int index) const;
    /// As GetAt: by value and bounds-checked.
    QObject const *operator[](int index) const;
    /// The index of the first element equal to the pointer, scanning from 0, or -1.
    int Find(QObject const *object) const;

    /// Appends the pointer at the end; the array does not take ownership.
    void Add(QObject const *object);
    /// Inserts before the index (0 to GetSize()); a bad index is clamped to that range.
    void InsertAt(int index, QObject const *object);
    /// Removes the element at the index; an index that is negative or not below the size is
    /// ignored.
    void RemoveAt(int index);
    /// Forgets every pointer; the objects pointed to are not deleted.
    void RemoveAll();

private:
    QList<QObject const *> m_List;
};
