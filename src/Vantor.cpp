// SPDX-License-Identifier: MIT
#include "Vantor.h"

Vantor::Vantor() = default;
