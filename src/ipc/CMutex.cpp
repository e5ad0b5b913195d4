// SPDX-License-Identifier: MIT
#include "CMutex.h"

CMutex::CMutex(int bInitiallyOwn, char const *lpszName, _SECURITY_ATTRIBUTES *lpsaAttribute)
{
    Q_UNUSED(bInitiallyOwn)
    Q_UNUSED(lpszName)
    Q_UNUSED(lpsaAttribute)
}

CMutex::CMutex(int bInitiallyOwn, CString strName, _SECURITY_ATTRIBUTES *lpsaAttribute)
    : CMutex(bInitiallyOwn, strName.GetData(), lpsaAttribute)
{ }

BOOL CMutex::Lock()
{
    lock();
    return TRUE;
}

BOOL CMutex::Unlock()
{
    unlock();
    return TRUE;
}
