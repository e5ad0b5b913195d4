// SPDX-License-Identifier: MIT
#include "CMapPtrToOb.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CMapPtrToOb::CMapPtrToOb() = default;

int CMapPtrToOb::GetCount() const
{
    return m_Map.size();
}

bool CMapPtrToOb::Lookup(void *key, QObject *&value)
{
    return lookup(m_Map, key, value, isSet);
}

QObject *CMapPtrToOb::GetAt(void *key)
{
    QObject *value = nullptr;
    Lookup(key, value);
    return value;
}

void CMapPtrToOb::SetAt(void *key, QObject *value)
{
    m_Map.insert(key, value);
}

void CMapPtrToOb::RemoveKey(void *key)
{
    m_Map.remove(key);
}

void CMapPtrToOb::RemoveAll()
{
    m_Map.clear();
}

QList<void *> CMapPtrToOb::GetKeyList() const
{
    return m_Map.keys();
}
