// SPDX-License-Identifier: MIT
#include "ThreadBase.h"

#include "VantorStrings.h"

ThreadBase::ThreadBase()
    : QThread(nullptr)
    , m_bControl(false)
    , m_bExited(false)
{ }

BOOL ThreadBase::CheckExited()
{
    for (int i = 0; i < 50 && !m_bExited; ++i)
        Sleep(100);
    return TRUE;
}
