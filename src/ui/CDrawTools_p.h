// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>

namespace VantorDraw {

/// A Windows COLORREF (0x00BBGGRR: red in the low byte) as an opaque QColor. The high byte,
/// which Windows uses for palette flags, is ignored.
inline QColor colorFromRef(unsigned long color)
{
    return QColor(int(color & 0xFF), int((color >> 8) & 0xFF), int((color >> 16) & 0xFF));
}

} // namespace VantorDraw
