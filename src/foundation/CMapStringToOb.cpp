// SPDX-License-Identifier: MIT
#include "CMapStringToOb.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CMapStringToOb::CMapStringToOb() = default;

int CMapStringToOb::GetCount() const
{
    return m_Map.size();
}

bool CMapStringToOb::Lookup(char const *text, QObject *&value)
{
    return lookup(m_Map, key(text), value, isSet);
}

QObject *CMapStringToOb::GetAt(char const *text)
{
    QObject *value = nullptr;
    Lookup(text, value);
    return value;
}

void CMapStringToOb::SetAt(char const *text, QObject *value)
{
    m_Map.insert(key(text), value);
}

void CMapStringToOb::RemoveKey(char const *text)
{
    m_Map.remove(key(text));
}

void CMapStringToOb::RemoveAll()
{
    m_Map.clear();
}

QList<QString> CMapStringToOb::GetKeyList() const
{
    return m_Map.keys();
}
