// SPDX-License-Identifier: MIT
#include "CStringArray.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CStringArray::CStringArray() = default;

int CStringArray::GetSize() const
{
    return m_List.size();
}

int CStringArray::GetCount() const
{
    return m_List.size();
}

CString CStringArray::GetAt(int index) const
{
    return CString(valueAt(m_List, index));
}

CString CStringArray::operator[](int index) const
{
    return GetAt(index);
}

void CStringArray::SetAt(int index, CString text)
{
    setAt(m_List, index, text.text);
}

void CStringArray::Add(CString text)
{
    m_List.append(text.text);
}

void CStringArray::InsertAt(int index, CString text)
{
    insertAt(m_List, index, text.text);
}

void CStringArray::RemoveAt(int index)
{
    removeAt(m_List, index);
}

void CStringArray::RemoveAll()
{
    m_List.clear();
}

void CStringArray::SetSize(int size)
{
    m_List.clear();
    if (size <= 0)
        return;
    // Empty strings share one null text, so only the list itself is allocated.
    m_List.reserve(size);
    for (int i = 0; i < size; ++i)
        m_List.append(QString());
}

void CStringArray::Copy(CStringArray other)
{
    m_List = other.m_List;
}
