// SPDX-License-Identifier: MIT
#include "CPoint.h"

CPoint::CPoint()
    : CPoint(0, 0)
{ }

CPoint::CPoint(int px, int py)
    : tagPOINT {px, py}
{ }

CPoint::CPoint(QPoint &point)
    : CPoint(point.x(), point.y())
{ }

bool CPoint::operator==(CPoint const &other) const
{
    return x == other.x && y == other.y;
}

bool CPoint::operator==(QPoint const &other) const
{
    return x == other.x() && y == other.y();
}

QPoint CPoint::GetPoint() const
{
    return QPoint(x, y);
}
