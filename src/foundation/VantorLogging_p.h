// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

// The one category under which the library writes to Qt's debug stream ("vantor").
Q_DECLARE_LOGGING_CATEGORY(lcVantor)
