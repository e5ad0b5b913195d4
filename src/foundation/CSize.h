// SPDX-License-Identifier: MIT
#pragma once

#include "WinTypes.h"
#include "vantor_export.h"

#include <QtGlobal>

/// An extent in integer units (cx, cy: 32-bit signed each), extending the Windows SIZE record.
class VANTOR_EXPORT CSize : public tagSIZE
{
public:
    /// The empty extent (0, 0).
    CSize();
    /// The extent (cx, cy), stored as given; negative extents are kept.
    CSize(int cx, int cy);
};

static_assert(sizeof(CSize) == 8, "CSize keeps the layout of the Windows SIZE record");
Q_DECLARE_TYPEINFO(CSize, Q_MOVABLE_TYPE);
