// SPDX-License-Identifier: MIT
#include "CPtrArray.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CPtrArray::CPtrArray() = default;

int CPtrArray::GetSize() const
{
    return m_List.size();
}

int CPtrArray::GetCount() const
{
    return m_List.size();
}

bool CPtrArray::IsEmpty() const
{
    return m_List.isEmpty();
}

void const *CPtrArray::GetAt(int index) const
{
    return valueAt(m_List, index);
}

void const *CPtrArray::operator[](int index) const
{
    return valueAt(m_List, index);
}

int CPtrArray::Find(void const *pointer) const
{
    return m_List.indexOf(pointer);
}

void CPtrArray::Add(void const *pointer)
{
    m_List.append(pointer);
}

void CPtrArray::InsertAt(int index, void const *pointer)
{
    insertAt(m_List, index, pointer);
}

void CPtrArray::RemoveAt(int index)
{
    removeAt(m_List, index);
}

void CPtrArray::RemoveAll()
{
    m_List.clear();
}
