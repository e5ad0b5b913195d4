// SPDX-License-Identifier: MIT
#include "CMapStringToPtr.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CMapStringToPtr::CMapStringToPtr() = default;

int CMapStringToPtr::GetCount() const
{
    return m_Map.size();
}

bool CMapStringToPtr::Lookup(char const *text, void *&value)
{
    return lookup(m_Map, key(text), value, isSet);
}

void *CMapStringToPtr::GetAt(char const *text)
{
    void *value = nullptr;
    Lookup(text, value);
    return value;
}

void CMapStringToPtr::SetAt(char const *text, void *value)
{
    m_Map.insert(key(text), value);
}

void CMapStringToPtr::RemoveKey(char const *text)
{
    m_Map.remove(key(text));
}

void CMapStringToPtr::RemoveAll()
{
    m_Map.clear();
}

void CMapStringToPtr::Clear()
{
    m_Map.clear();
}

void *CMapStringToPtr::Take(char const *text)
{
    return m_Map.take(key(text));
}

QList<QString> CMapStringToPtr::Keys() const
{
    return m_Map.keys();
}
