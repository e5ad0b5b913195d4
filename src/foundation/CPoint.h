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
    CPoint(int x, int y);
    CPoint(QPoint &point);
    CPoint(const CPoint &other) = default;
    CPoint &operator=(CPoint const &other) = default;

    bool operator==(CPoint const &other) const;
    bool operator==(QPoint const &other) const;

    /// The same point as a QPoint.
    QPoint GetPoint() const;
};

static_assert(sizeof(CPoint) == sizeof(QPoint), "CPoint keeps the layout of QPoint");
Q_DECLARE_TYPEINFO(CPoint, Q_MOVABLE_TYPE);
