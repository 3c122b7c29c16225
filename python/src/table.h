// The C++ half of the class Table (scriptwells/_table.py), and the class Row.
#pragma once

#include <pybind11/pybind11.h>

namespace scriptwells::python {

void DefineTable(pybind11::module_& module);

}  // namespace scriptwells::python
