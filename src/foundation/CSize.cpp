// SPDX-License-Identifier: MIT
#include "CSize.h"

CSize::CSize()
    : CSize(0, 0)
{ }

CSize::CSize(int w, int h)
    : tagSIZE {w, h}
{ }
