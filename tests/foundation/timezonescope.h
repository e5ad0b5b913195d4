// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <time.h>

/// Makes `zone` the process's local time zone; every test that depends on it sets its own.
inline void useTimeZone(const QByteArray &zone)
{
    qputenv("TZ", zone);
    tzset();
}
