// SPDX-License-Identifier: MIT
#include "CRectArray.h"

#include <QtAlgorithms>

CRectArray::CRectArray() = default;

CRectArray::CRectArray(const CRectArray &other)
{
    m_List.reserve(other.m_List.size());
    for (const CRect *rect : other.m_List)
        m_List.append(new CRect(*rect));
}

CRectArray::~CRectArray()
{
    qDeleteAll(m_List);
}

CRectArray &CRectArray::operator=(CRectArray &other)
{
    if (&other == this)
        return *this;
    CRectArray copy(other);
    m_List.swap(copy.m_List); // the old rectangles go with `copy`
    return *this;
}

int CRectArray::GetCount() const
{
    return m_List.size();
}

CRect *CRectArray::Get(int index) const
{
    return m_List.value(index);
}

int CRectArray::Set(CRect const &rect, int index)
{
    if (index >= 0 && index < m_List.size())
        *m_List.at(index) = rect;
    else
        m_List.append(new CRect(rect));
    return 1;
}

int CRectArray::InsertAt(CRect const &rect, int index)
{
    if (index < 0)
        return 0;
    m_List.insert(qMin(index, m_List.size()), new CRect(rect));
    return 1;
}

void CRectArray::Delete(int index)
{
    if (index < 0) {
        qDeleteAll(m_List);
        m_List.clear();
    } else if (index < m_List.size()) {
        delete m_List.takeAt(index);
    }
}
