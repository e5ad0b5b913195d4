// SPDX-License-Identifier: MIT
#include "CWordArray.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CWordArray::CWordArray() = default;

int CWordArray::GetSize() const
{
    return m_List.size();
}

int CWordArray::GetCount() const
{
    return m_List.size();
}

unsigned short CWordArray::GetAt(int index) const
{
    return valueAt(m_List, index);
}

unsigned short CWordArray::operator[](int index) const
{
    return valueAt(m_List, index);
}

void CWordArray::Add(unsigned short value)
{
    m_List.append(value);
}

void CWordArray::InsertAt(int index, unsigned short value)
{
    insertAt(m_List, index, value);
}

void CWordArray::RemoveAt(int index)
{
    removeAt(m_List, index);
}

void CWordArray::RemoveAll()
{
    m_List.clear();
}

void CWordArray::Copy(CWordArray other)
{
    // `other` is a copy, so copying an array into itself keeps its elements.
    m_List = other.m_List;
}
