// SPDX-License-Identifier: MIT
#include "CPen.h"

#include "CDrawTools_p.h"
#include "LogPen.h"

CPen::CPen() = default;

bool CPen::CreatePen(int style, int width, unsigned long color)
{
    setStyle(style >= 0 && style <= 5 ? Qt::PenStyle(style) : Qt::SolidLine);
    setWidth(width < 0 ? 1 : width);
    setColor(VantorDraw::colorFromRef(color));
    return true;
}

bool CPen::CreatePenIndirect(LogPen *logPen)
{
    if (!logPen)
        return false;
    return CreatePen(logPen->m_nStyle, logPen->m_nWidth, logPen->m_Color);
}
