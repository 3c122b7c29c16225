// Values of calls, both ways.
#pragma once

#include <pybind11/pybind11.h>

#include "qvscriptwells/variant.h"

namespace scriptwells::late {

// Throws TypeError for a type that no member takes, OverflowError, scriptwells.ConversionError, and
// LateFailure for an object of another thread.
qv::Variant FromPython(pybind11::handle value);

// Objects become an Object of this module. Throws scriptwells.ConversionError for what Python has no value
// for.
pybind11::object ToPython(qv::Variant value);

[[noreturn]] void RefuseValue(const std::string& message);  // as scriptwells.ConversionError

}  // namespace scriptwells::late
