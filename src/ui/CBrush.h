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
    CBrush();

    /// Solid pattern in `color`; returns true.
    bool CreateSolidBrush(unsigned long color);
    /// Takes `color`; the pattern is solid for every `hatch` but 5, which gives no brush.
    /// Returns true.
    bool CreateHatchBrush(int hatch, unsigned long color);
    /// Index 5 (the null brush) gives no brush; any other index a solid pattern in the brush's
    /// current colour (black for a new brush). Returns true.
    bool CreateStockObject(int index);
};
