// SPDX-License-Identifier: MIT
#pragma once

#include "WinTypes.h"
#include "vantor_export.h"

#include <QPoint>

/**
 * A point in integer coordinates, with the member names of the Windows class-library point.
 *
 * It extends the Windows POINT record and has the layout of QPoint (x, then y, 32-bit signed
 * each), so a CPoint array may be handed to QPainter as a QPoint array.
 */
class VANTOR_EXPORT CPoint : public tagPOINT
{
public:
    /// The origin (0, 0).
    CPoint();
    /// The point (x, y).
    CPoint(int x, int y);
    /// The same point as the QPoint (taken by non-const reference, as ported code passes it).
    CPoint(QPoint &point);
    /// Copies x and y; a CPoint is a plain value.
    ///@{
    CPoint(const CPoint &other) = default;
    CPoint &operator=(CPoint const &other) = default;
    ///@}

    /// True when both coordinates are equal; a CPoint compares with a QPoint directly.
    ///@{
    bool operator==(CPoint const &other) const;
    bool operator==(QPoint const &other) const;
    ///@}

    /// The same point as a QPoint.
    QPoint GetPoint() const;
};

static_assert(sizeof(CPoint) == sizeof(QPoint), "CPoint keeps the layout of QPoint");
Q_DECLARE_TYPEINFO(CPoint, Q_MOVABLE_TYPE);
