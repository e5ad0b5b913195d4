// SPDX-License-Identifier: MIT
#include "CObArray.h"

#include "VantorContainers_p.h"

using namespace VantorContainers;

CObArray::CObArray() = default;

int CObArray::GetSize() const
{
    return m_List.size();
}

int CObArray::GetCount() const
{
    return m_List.size();
}

bool CObArray::IsEmpty() const
{
    return m_List.isEmpty();
}

QObject const *CObArray::GetAt(int index) const
{
    return valueAt(m_List, index);
}

QObject const *CObArray::operator[](int index) const
{
    return valueAt(m_List, index);
}

int CObArray::Find(QObject const *object) const
{
    return m_List.indexOf(object);
}

void CObArray::Add(QObject const *object)
{
    m_List.append(object);
}

void CObArray::InsertAt(int index, QObject const *object)
{
    insertAt(m_List, index, object);
}

void CObArray::RemoveAt(int index)
{
    removeAt(m_List, index);
}

void CObArray::RemoveAll()
{
    m_List.clear();
}
