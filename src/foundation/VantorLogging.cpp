// SPDX-License-Identifier: MIT
#include "VantorLogging_p.h"

Q_LOGGING_CATEGORY(lcVantor, "vantor")
