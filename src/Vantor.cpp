#include "Vantor.h"

Vantor::Vantor() = default;
