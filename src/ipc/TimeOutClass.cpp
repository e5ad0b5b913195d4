// SPDX-License-Identifier: MIT
#include "TimeOutClass.h"

#include <QDateTime>

TimeOutClass::TimeOutClass()
{
    Reset();
}

void TimeOutClass::Reset()
{
    m_nRefTime = QDateTime::currentMSecsSinceEpoch();
}

bool TimeOutClass::IsTimeOut(int nLimit)
{
    const qint64 now = QDateTime::currentMSecsSinceEpoch();
    if (m_nRefTime <= now)
        return nLimit < now - m_nRefTime;
    // The clock was set back: start again from the new time.
    m_nRefTime = now;
    return nLimit < 0;
}
