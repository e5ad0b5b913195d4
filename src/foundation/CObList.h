// SPDX-License-Identifier: MIT
#pragma once

#include "vantor_export.h"

#include <QList>

class QObject;

/// A list of object pointers with the name of the Windows class-library object list. It offers
/// only its constructor: ported code that declares one keeps compiling. It owns no objects.
class VANTOR_EXPORT CObList
{
public:
    /// An empty list.
    CObList();

private:
    QList<QObject *> m_List;
};
