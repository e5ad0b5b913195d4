// SPDX-License-Identifier: MIT
#include "CObList.h"

CObList::CObList() = default;
