// SPDX-License-Identifier: MIT
#include "CIntArray.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CIntArray::CIntArray() = default;

int CIntArray::GetSize() const
{
    return m_List.size();
}

int CIntArray::GetCount() const
{
    return m_List.size();
}

int CIntArray::GetAt(int index) const
{
    return valueAt(m_List, index);
}

int CIntArray::operator[](int index) const
{
    return valueAt(m_List, index);
}

void CIntArray::SetAt(int index, int value)
{
    setAt(m_List, index, value);
}

void CIntArray::Add(int value)
{
    m_List.append(value);
}

void CIntArray::InsertAt(int index, int value)
{
    insertAt(m_List, index, value);
}

void CIntArray::RemoveAt(int index)
{
    removeAt(m_List, index);
}

void CIntArray::RemoveAll()
{
    m_List.clear();
}

void CIntArray::Copy(CIntArray other)
{
    // `other` is a copy, so copying an array into itself keeps its elements.
    m_List = other.m_List;
}
