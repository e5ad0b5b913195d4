// SPDX-License-Identifier: MIT
#include "CBrush.h"

#include "CDrawTools_p.h"

CBrush::CBrush() = default;

bool CBrush::CreateSolidBrush(unsigned long color)
{
    setColor(VantorDraw::colorFromRef(color));
    setStyle(Qt::SolidPattern);
    return true;
}

bool CBrush::CreateHatchBrush(int hatch, unsigned long color)
{
    setColor(VantorDraw::colorFromRef(color));
    setStyle(hatch == NullBrush ? Qt::NoBrush : Qt::SolidPattern);
    return true;
}

bool CBrush::CreateStockObject(int index)
{
    setStyle(index == NullBrush ? Qt::NoBrush : Qt::SolidPattern);
    return true;
}
