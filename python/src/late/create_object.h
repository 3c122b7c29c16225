// Objects by the name of their class.
#pragma once

#include <pybind11/pybind11.h>

namespace scriptwells::late {

void DefineCreation(pybind11::module_& module);

}  // namespace scriptwells::late
