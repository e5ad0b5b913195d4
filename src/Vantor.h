// SPDX-License-Identifier: MIT
#pragma once

/**
 * @file Vantor.h
 * The library-wide header: includes every public header of Vantor, and declares the module
 * class. Applications may include this one header, or only the class headers they use.
 */

#include "vantor_export.h"
#include "vantor_headers.h" // generated at configure time: one #include per public header

/// The library's module class. It carries no state.
class VANTOR_EXPORT Vantor
{
public:
    Vantor();
};
