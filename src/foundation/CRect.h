// SPDX-License-Identifier: MIT
#pragma once

#include "CPoint.h"
#include "CSize.h"
#include "WinTypes.h"
#include "vantor_export.h"

#include <QRect>

/**
 * A rectangle in integer coordinates, with the member names of the Windows class-library
 * rectangle and the meaning of QRect.
 *
 * The members left, top, right, bottom (32-bit signed each, in this order) have the layout of
 * QRect's x1, y1, x2, y2. Unlike the usual Windows rectangle, right and bottom belong to the
 * rectangle: Width() is right - left + 1. The empty rectangle is (0, 0, -1, -1).
 */
class VANTOR_EXPORT CRect : public tagRECT
{
public:
    /// The empty rectangle (0, 0, -1, -1): width 0, height 0.
    CRect();
    /// Normalised: the smaller x becomes left, the larger right; likewise for y.
    CRect(int l, int t, int r, int b);
    /// Copies the four edges as stored, without normalising: an inverted rectangle stays so.
    ///@{
    CRect(const CRect &other) = default;
    CRect &operator=(CRect other);
    ///@}

    /// Stores the edges exactly as given. Deliberately not normalised, unlike the constructor.
    void SetRect(int l, int t, int r, int b);

    /// right - left + 1 (negative for a rectangle stored inverted with SetRect).
    int Width() const;
    /// bottom - top + 1.
    int Height() const;
    /// (Width(), Height()).
    CSize Size() const;

    /// A corner as stored: (left, top), (right, top), (left, bottom), (right, bottom). Right and
    /// bottom are inside the rectangle, so every corner is one of its pixels.
    ///@{
    CPoint TopLeft() const;
    CPoint TopRight() const;
    CPoint BottomLeft() const;
    CPoint BottomRight() const;
    ///@}
    /**
     * ((left + right - 1) / 2, (top + bottom - 1) / 2), truncated toward zero. The -1 is
     * deliberate: the centre of (0, 0, 9, 9) and of (0, 0, 10, 10) is (4, 4).
     */
    CPoint CenterPoint() const;

    /**
     * True when left <= x <= right and top <= y <= bottom: the edges belong to the rectangle.
     * As QRect::contains, an inverted rectangle (right < left - 1, or bottom < top - 1) is
     * tested with its edges swapped; a zero-width or zero-height one, such as the empty
     * rectangle, is not swapped and contains no point.
     */
    bool PtInRect(CPoint const &point) const;

    /// Shifts the rectangle by dx, dy.
    void Move(int dx, int dy);
    /// Shifts the rectangle by the point's x and y.
    void OffsetRect(CPoint const &point);
    /// Moves the top-left corner to (x, y), keeping the size.
    void MoveToXY(int x, int y);
    /// Grows each side outwards: left - dx, top - dy, right + dx, bottom + dy.
    void InflateRect(int dx, int dy);
    /// Shrinks each side inwards: left + dx, top + dy, right - dx, bottom - dy.
    void DeflateRect(int dx, int dy);

    /// Writes the four edges unchanged, so the record's right and bottom are inclusive too.
    void GetRect(tagRECT *rect) const;
};

static_assert(sizeof(CRect) == sizeof(QRect), "CRect keeps the layout of QRect");
Q_DECLARE_TYPEINFO(CRect, Q_MOVABLE_TYPE);
