// SPDX-License-Identifier: MIT
#include "CByteArray.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CByteArray::CByteArray() = default;

int CByteArray::GetSize() const
{
    return m_List.size();
}

int CByteArray::GetCount() const
{
    return m_List.size();
}

unsigned char CByteArray::GetAt(int index) const
{
    return valueAt(m_List, index);
}

unsigned char CByteArray::operator[](int index) const
{
    return valueAt(m_List, index);
}

void CByteArray::Add(unsigned char value)
{
    m_List.append(value);
}

void CByteArray::InsertAt(int index, unsigned char value)
{
    insertAt(m_List, index, value);
}

void CByteArray::RemoveAt(int index)
{
    removeAt(m_List, index);
}

void CByteArray::RemoveAll()
{
    m_List.clear();
}

void CByteArray::Copy(CByteArray other)
{
    // `other` is a copy, so copying an array into itself keeps its elements.
    m_List = other.m_List;
}
