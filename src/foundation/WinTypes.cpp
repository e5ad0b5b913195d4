// SPDX-License-Identifier: MIT
#include "WinTypes.h"

#ifndef _WIN32
CFileException::~CFileException() = default;
#endif
