// SPDX-License-Identifier: MIT
#include "CMapUIntToPtr.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CMapUIntToPtr::CMapUIntToPtr() = default;

int CMapUIntToPtr::GetCount() const
{
    return m_Map.size();
}

bool CMapUIntToPtr::Lookup(unsigned int key, void *&value)
{
    return lookup(m_Map, key, value, isSet);
}

void *CMapUIntToPtr::GetAt(unsigned int key)
{
    void *value = nullptr;
    Lookup(key, value);
    return value;
}

void CMapUIntToPtr::SetAt(unsigned int key, void *value)
{
    m_Map.insert(key, value);
}

void CMapUIntToPtr::RemoveAll()
{
    m_Map.clear();
}

QList<void *> CMapUIntToPtr::GetList() const
{
    return m_Map.values();
}
