// SPDX-License-Identifier: MIT
#include "CMapIntToOb.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CMapIntToOb::CMapIntToOb() = default;

int CMapIntToOb::GetCount() const
{
    return m_Map.size();
}

bool CMapIntToOb::Lookup(int key, QObject *&value)
{
    return lookup(m_Map, key, value, isSet);
}

QObject *CMapIntToOb::GetAt(int key)
{
    QObject *value = nullptr;
    Lookup(key, value);
    return value;
}

void CMapIntToOb::SetAt(int key, QObject *value)
{
    m_Map.insert(key, value);
}

void CMapIntToOb::RemoveKey(int key)
{
    m_Map.remove(key);
}

void CMapIntToOb::RemoveAll()
{
    m_Map.clear();
}

QList<int> CMapIntToOb::GetKeyList() const
{
    return m_Map.keys();
}
