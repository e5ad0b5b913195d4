// SPDX-License-Identifier: MIT
#include "CUIntArray.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CUIntArray::CUIntArray() = default;

int CUIntArray::GetSize() const
{
    return m_List.size();
}

int CUIntArray::GetCount() const
{
    return m_List.size();
}

unsigned int CUIntArray::GetAt(int index) const
{
    return valueAt(m_List, index);
}

unsigned int CUIntArray::operator[](int index) const
{
    return valueAt(m_List, index);
}

void CUIntArray::SetAt(int index, unsigned int value)
{
    setAt(m_List, index, value);
}

void CUIntArray::Add(unsigned int value)
{
    m_List.append(value);
}

void CUIntArray::InsertAt(int index, unsigned int value)
{
    insertAt(m_List, index, value);
}

void CUIntArray::RemoveAt(int index)
{
    removeAt(m_List, index);
}

void CUIntArray::RemoveAll()
{
    m_List.clear();
}
