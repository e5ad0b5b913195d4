#pragma once

/**
 * @file Vantor.h
 * The library-wide header: includes every public header of Vantor.
 *
 * Applications may include this one header, or only the class headers they use.
 */

#include "vantor_export.h"

// foundation
#include "WinTypes.h"
#include "CString.h"

/// The library's module class. It carries no state.
class VANTOR_EXPORT Vantor
{
public:
    Vantor();
};
