// SPDX-License-Identifier: MIT
#pragma once

#include "CRect.h"
#include "vantor_export.h"

#include <QList>

/**
 * An index-addressed array of rectangles that, unlike the other arrays, owns its elements: each
 * rectangle lives in a block of its own, allocated by the array and freed by Delete, by
 * assignment and by the destructor. Pointers from Get stay valid until their rectangle is
 * deleted, whatever is inserted before them.
 */
class VANTOR_EXPORT CRectArray
{
public:
    /// An empty array.
    CRectArray();
    /// Copies every rectangle into blocks of its own.
    CRectArray(const CRectArray &other);
    /// Frees every rectangle.
    ~CRectArray();
    /// Replaces the contents by copies of the other array's rectangles.
    CRectArray &operator=(CRectArray &other);

    /// The number of rectangles held.
    int GetCount() const;
    /// The rectangle at the index; null when the index is negative or not below the count.
    CRect *Get(int index) const;
    /**
     * Copies `rect` into the rectangle at `index`. Deliberately, an index that is negative or
     * not below the count appends a new rectangle instead of failing. Returns 1.
     */
    int Set(CRect const &rect, int index);
    /**
     * Inserts a copy of `rect` before `index`, or appends it when the index is not below the
     * count; returns 1. A negative index changes nothing and returns 0.
     */
    int InsertAt(CRect const &rect, int index);
    /**
     * Frees and removes the rectangle at `index`; an index beyond the end does nothing.
     * A negative index frees every rectangle and empties the array.
     */
    void Delete(int index);

private:
    QList<CRect *> m_List;
};
