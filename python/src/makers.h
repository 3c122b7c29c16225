// Values whose type on the wire is chosen, and the texts of durations.
#pragma once

#include <pybind11/pybind11.h>

namespace scriptwells::python {

void DefineMakers(pybind11::module_& module);

}  // namespace scriptwells::python
