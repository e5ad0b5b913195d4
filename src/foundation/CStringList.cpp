// SPDX-License-Identifier: MIT
#include "CStringList.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CStringList::CStringList() = default;

int CStringList::GetCount() const
{
    return m_List.size();
}

CString CStringList::GetAt(int index) const
{
    return CString(valueAt(m_List, index));
}

CString CStringList::operator[](int index) const
{
    return GetAt(index);
}

void CStringList::SetAt(int index, CString text)
{
    setAt(m_List, index, text.text);
}

char const *CStringList::Find(CString text) const
{
    if (!m_List.contains(text.text, Qt::CaseSensitive))
        return nullptr;
    // The argument dies with this call, so the returned text is kept per thread.
    static thread_local QByteArray found;
    found = text.text.toUtf8();
    return found.constData();
}

void CStringList::Add(CString text)
{
    m_List.append(text.text);
}

void CStringList::AddTail(CString text)
{
    m_List.append(text.text);
}

void CStringList::RemoveAt(int index)
{
    removeAt(m_List, index);
}

void CStringList::RemoveAll()
{
    m_List.clear();
}
