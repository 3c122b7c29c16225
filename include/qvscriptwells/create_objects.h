// Makes the objects of objects.h. Each call makes a new one; failure throws `_com_error` (E_OUTOFMEMORY).
// The raw interfaces of the same object are reached with QueryFor (com_error.h).
#pragma once

#include "qvscriptwells/objects.h"

namespace qv {

IConnectionModelPtr CreateConnectionModel();
IConnectionStringPtr CreateConnectionString();
IParametersPtr CreateParameters();
IParameterPtr CreateParameter();

}  // namespace qv
