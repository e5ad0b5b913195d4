// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

#include <QList>
#include <QString>

/**
 * An index-addressed array of strings, with the member names of the Windows class-library
 * string array. The texts are kept as QString; GetAt builds a new CString on the way out.
 */
class VANTOR_EXPORT CStringArray
{
public:
    /// An empty array.
    CStringArray();

    /// The number of elements; GetSize and GetCount are the same.
    ///@{
    int GetSize() const;
    int GetCount() const;
    ///@}

    /**
     * A new CString with the text at the index. The index is not checked as part of the
     * contract: callers pass 0 to GetSize() - 1 (anything else gives an empty string).
     */
    CString GetAt(int index) const;
    /// As GetAt.
    CString operator[](int index) const;
    /// Replaces the text at the index; a valid index is the caller's duty (an invalid one changes
    /// nothing).
    void SetAt(int index, CString text);

    /// Appends the text at the end.
    void Add(CString text);
    /// Inserts before the index (0 to GetSize()); a bad index is clamped to that range.
    void InsertAt(int index, CString text);
    /// Removes the text at the index; an index that is negative or not below the size is ignored.
    void RemoveAt(int index);
    /// Removes every element.
    void RemoveAll();

    /**
     * Empties the array, then appends `size` empty strings (none for zero or a negative size).
     * Deliberately, existing elements are never kept, not even those below the new size.
     */
    void SetSize(int size);
    /// Empties this array, then appends every text of `other` in order.
    void Copy(CStringArray other);

private:
    QList<QString> m_List;
};
