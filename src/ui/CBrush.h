// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QBrush>

/**
 * A brush with the creation calls of the Windows class library, on QBrush. Colours are
 * COLORREF values (0x00BBGGRR).
 *
 * Hatch patterns are deliberately not drawn: a hatch brush fills solid, except hatch 5, which
 * like the null stock brush gives no brush at all.
 */
class VANTOR_EXPORT CBrush : public QBrush
{
public:
    /**
     * The stock object numbers of the Windows class library that a brush understands. Only the
     * null brush differs: every other number gives a solid brush in the current colour, the
     * grey shades included. CreateStockObject keeps taking a plain int, so ported calls with
     * bare numbers compile and mean the same.
     */
    enum StockObject {
        WhiteBrush = 0,
        LightGrayBrush = 1,
        GrayBrush = 2,
        DarkGrayBrush = 3,
        BlackBrush = 4,
        NullBrush = 5, ///< no brush; hatch index 5 has the same meaning
        HollowBrush = NullBrush
    };

    /// Qt's default brush: no fill, black. Call a Create member to fill.
    CBrush();

    /// Solid pattern in `color`; returns true.
    bool CreateSolidBrush(unsigned long color);
    /// Takes `color`; the pattern is solid for every `hatch` but 5, which gives no brush.
    /// Returns true.
    bool CreateHatchBrush(int hatch, unsigned long color);
    /// NullBrush (5) gives no brush; any other index a solid pattern in the brush's
    /// current colour (black for a new brush). Returns true.
    bool CreateStockObject(int index);
};
