// SPDX-License-Identifier: MIT
#include "CSharedMem.h"

#include <QSharedMemory>

CSharedMem::CSharedMem()
    : m_pSharedMem(nullptr)
    , m_bLocked(false)
{ }

CSharedMem::~CSharedMem()
{
    Delete();
}

void CSharedMem::make(char const *pName)
{
    if (!m_pSharedMem)
        m_pSharedMem = new QSharedMemory(QString::fromLatin1(pName ? pName : ""));
}

bool CSharedMem::Create(char const *pName, int nSize)
{
    make(pName);
    return m_pSharedMem->create(nSize, QSharedMemory::ReadWrite);
}

bool CSharedMem::Create(CString strName, int nSize)
{
    return Create(strName.GetData(), nSize);
}

bool CSharedMem::Open(char const *pName)
{
    make(pName);
    if (m_pSharedMem->isAttached())
        return true;
    return m_pSharedMem->attach(QSharedMemory::ReadWrite);
}

bool CSharedMem::Open(CString strName)
{
    return Open(strName.GetData());
}

int CSharedMem::Size()
{
    return m_pSharedMem ? m_pSharedMem->size() : 0;
}

void *CSharedMem::GetPtr()
{
    return m_pSharedMem ? m_pSharedMem->data() : nullptr;
}

bool CSharedMem::Lock()
{
    if (!m_pSharedMem)
        return false;
    m_bLocked = true;
    return m_pSharedMem->lock();
}

bool CSharedMem::Unlock()
{
    if (!m_pSharedMem)
        return false;
    bool released = false;
    if (m_bLocked)
        released = m_pSharedMem->unlock();
    m_bLocked = false;
    return released;
}

bool CSharedMem::Delete()
{
    if (!m_pSharedMem)
        return true;
    // A lock still held is given back first, so that no other process waits on it for ever.
    if (m_bLocked)
        Unlock();
    const bool detached = m_pSharedMem->detach();
    delete m_pSharedMem;
    m_pSharedMem = nullptr;
    return detached;
}
