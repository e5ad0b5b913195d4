// SPDX-License-Identifier: MIT
#include "CRect.h"

#include <QtGlobal>

#include <algorithm>

namespace {

// Edge arithmetic wraps around on overflow, as QRect's does in practice, instead of being
// undefined: a rectangle moved past the integer range stays a valid value.
int wrapped(qint64 value)
{
    return static_cast<int>(static_cast<quint32>(value));
}

} // namespace

CRect::CRect()
    : tagRECT {0, 0, -1, -1}
{ }

CRect::CRect(int l, int t, int r, int b)
    : tagRECT {std::min(l, r), std::min(t, b), std::max(l, r), std::max(t, b)}
{ }

CRect &CRect::operator=(CRect other)
{
    SetRect(other.left, other.top, other.right, other.bottom);
    return *this;
}

void CRect::SetRect(int l, int t, int r, int b)
{
    left = l;
    top = t;
    right = r;
    bottom = b;
}

int CRect::Width() const
{
    return wrapped(qint64(right) - left + 1);
}

int CRect::Height() const
{
    return wrapped(qint64(bottom) - top + 1);
}

CSize CRect::Size() const
{
    return CSize(Width(), Height());
}

CPoint CRect::TopLeft() const
{
    return CPoint(left, top);
}

CPoint CRect::TopRight() const
{
    return CPoint(right, top);
}

CPoint CRect::BottomLeft() const
{
    return CPoint(left, bottom);
}

CPoint CRect::BottomRight() const
{
    return CPoint(right, bottom);
}

CPoint CRect::CenterPoint() const
{
    // Summed in 64 bits; integer division truncates toward zero.
    return CPoint(int((qint64(left) + right - 1) / 2), int((qint64(top) + bottom - 1) / 2));
}

bool CRect::PtInRect(CPoint const &point) const
{
    const auto within = [](qint64 low, qint64 high, qint64 v) {
        if (high < low - 1)
            std::swap(low, high);
        return low <= v && v <= high;
    };
    return within(left, right, point.x) && within(top, bottom, point.y);
}

void CRect::Move(int dx, int dy)
{
    left = wrapped(qint64(left) + dx);
    right = wrapped(qint64(right) + dx);
    top = wrapped(qint64(top) + dy);
    bottom = wrapped(qint64(bottom) + dy);
}

void CRect::OffsetRect(CPoint const &point)
{
    Move(point.x, point.y);
}

void CRect::MoveToXY(int x, int y)
{
    Move(wrapped(qint64(x) - left), wrapped(qint64(y) - top));
}

void CRect::InflateRect(int dx, int dy)
{
    left = wrapped(qint64(left) - dx);
    top = wrapped(qint64(top) - dy);
    right = wrapped(qint64(right) + dx);
    bottom = wrapped(qint64(bottom) + dy);
}

void CRect::DeflateRect(int dx, int dy)
{
    InflateRect(wrapped(-qint64(dx)), wrapped(-qint64(dy)));
}

void CRect::GetRect(tagRECT *rect) const
{
    if (!rect)
        return;
    rect->left = left;
    rect->top = top;
    rect->right = right;
    rect->bottom = bottom;
}
