// SPDX-License-Identifier: MIT
#include "CMapStringToString.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CMapStringToString::CMapStringToString() = default;

int CMapStringToString::GetCount() const
{
    return m_Map.size();
}

bool CMapStringToString::Lookup(char const *text, CString &value)
{
    QString stored;
    const bool set =
        lookup(m_Map, key(text), stored, [](const QString &s) { return !s.isEmpty(); });
    value = CString(stored);
    return set;
}

CString CMapStringToString::GetAt(char const *text)
{
    CString value;
    Lookup(text, value);
    return value;
}

void CMapStringToString::SetAt(char const *text, CString value)
{
    m_Map.insert(key(text), value.text);
}

void CMapStringToString::RemoveKey(char const *text)
{
    m_Map.remove(key(text));
}

void CMapStringToString::RemoveAll()
{
    m_Map.clear();
}

QList<QString> CMapStringToString::Keys() const
{
    return m_Map.keys();
}
