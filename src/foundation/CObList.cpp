#include "CObList.h"

CObList::CObList() = default;
