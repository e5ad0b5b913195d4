// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

/// In-place byte-order reversal of an array of fixed-size elements.
class VANTOR_EXPORT CDataSwap
{
public:
    /// Holds no state.
    CDataSwap();
    ~CDataSwap();

    /**
     * Reverses the bytes of each `elementSize`-byte element of the `size` bytes at `data`
     * (2 swaps byte pairs, 4 reverses each group of four). Nothing happens when `size` is below
     * 1 or not a multiple of `elementSize`, or when `elementSize` is below 1 (callers must not
     * pass 0; it is ignored rather than trusted).
     */
    static void Execute(void *data, int size, int elementSize);
};
