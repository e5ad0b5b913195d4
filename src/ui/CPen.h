// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QPen>

class LogPen;

/**
 * A pen with the creation calls of the Windows class library, on QPen.
 *
 * Styles are Qt's pen style numbers: 0 no pen, 1 solid, 2 dash, 3 dot, 4 dash-dot,
 * 5 dash-dot-dot. Colours are COLORREF values (0x00BBGGRR).
 */
class VANTOR_EXPORT CPen : public QPen
{
public:
    /// Qt's default pen: solid black, one pixel wide.
    CPen();

    /**
     * Sets the style, width and colour; always returns true. A style outside 0-5 gives a solid
     * pen and a negative width a width of 1, so a bad value never reaches the painter.
     */
    bool CreatePen(int style, int width, unsigned long color);
    /// CreatePen with the record's style, width and colour; false (pen unchanged) for null.
    bool CreatePenIndirect(LogPen *logPen);
};
