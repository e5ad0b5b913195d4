// SPDX-License-Identifier: MIT
#pragma once

#include <QLoggingCategory>

// The process launcher's logging category ("vantor"). The launcher is the only part of the
// library that writes to Qt's debug stream; every other diagnostic goes through PrintMessage
// (see PrintMessage.h).
Q_DECLARE_LOGGING_CATEGORY(lcVantor)
