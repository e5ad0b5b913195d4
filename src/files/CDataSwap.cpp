// SPDX-License-Identifier: MIT
#include "CDataSwap.h"

#include <algorithm>

CDataSwap::CDataSwap() = default;

CDataSwap::~CDataSwap() = default;

void CDataSwap::Execute(void *data, int size, int elementSize)
{
    if (!data || size < 1 || elementSize < 1 || size % elementSize != 0)
        return;
    auto *bytes = static_cast<unsigned char *>(data);
    for (int offset = 0; offset < size; offset += elementSize)
        std::reverse(bytes + offset, bytes + offset + elementSize);
}
