// The C++ half of the class Service (scriptwells/_service.py).
#pragma once

#include <pybind11/pybind11.h>

namespace scriptwells::python {

void DefineService(pybind11::module_& module);

}  // namespace scriptwells::python
