// SPDX-License-Identifier: MIT
#pragma once

#include "CString.h"
#include "vantor_export.h"

#include <QStringList>

/**
 * A list of strings with the member names of the Windows class-library string list, kept as a
 * QStringList.
 */
class VANTOR_EXPORT CStringList
{
public:
    /// An empty list.
    CStringList();

    /// The number of strings held.
    int GetCount() const;

    /**
     * A new CString with the text at the index. The index is not checked as part of the
     * contract: callers pass 0 to GetCount() - 1 (anything else gives an empty string).
     */
    CString GetAt(int index) const;
    /// As GetAt.
    CString operator[](int index) const;
    /// Replaces the text at the index; a valid index is the caller's duty (an invalid one changes
    /// nothing).
    void SetAt(int index, CString text);

    /**
     * A found test: when the list holds a string equal to `text` (case-sensitive), the
     * zero-terminated UTF-8 form of `text`; otherwise null. The pointer stays valid until the
     * next Find in the same thread.
     */
    char const *Find(CString text) const;

    /// Appends.
    void Add(CString text);
    /// Appends, as Add.
    void AddTail(CString text);
    /// Removes the text at the index; an index that is negative or not below the count is ignored.
    void RemoveAt(int index);
    /// Removes every string.
    void RemoveAll();

private:
    QStringList m_List;
};
