// SPDX-License-Identifier: MIT
#include "CommonSM.h"

#include <algorithm>
#include <cstring>

CommonSM::CommonSM()
    : m_pData(nullptr)
    , m_nSize(0)
{ }

CommonSM::CommonSM(int nSize, QString strKey)
    : QSharedMemory(strKey)
    , m_pData(nullptr)
    , m_nSize(nSize)
    , m_strName(strKey)
{ }

CommonSM::~CommonSM()
{
    m_strName.clear();
}

void CommonSM::SetInfo(int nSize, QString strKey)
{
    setKey(strKey);
    m_nSize = nSize;
    m_strName = strKey;
    // Changing the key detaches: a pointer into the old segment must not survive that.
    if (!isAttached())
        m_pData = nullptr;
}

void *CommonSM::GetSharedMem()
{
    if (m_pData)
        return m_pData;
    if (isAttached() || attach(QSharedMemory::ReadWrite))
        m_pData = data();
    return m_pData;
}

bool CommonSM::Init()
{
    if (GetSharedMem())
        return true;
    if (m_nSize <= 0 || !create(m_nSize, QSharedMemory::ReadWrite))
        return false;
    m_pData = data();
    if (!m_pData)
        return false;
    std::memset(m_pData, 0, size_t(std::min<qint64>(m_nSize, size())));
    return true;
}

bool CommonSM::Set(void *pData)
{
    if (!pData || !GetSharedMem() || m_nSize <= 0)
        return false;
    // Never past the end of a segment that another process made smaller.
    std::memcpy(m_pData, pData, size_t(std::min<qint64>(m_nSize, size())));
    return true;
}

void *CommonSM::Get()
{
    return GetSharedMem();
}
