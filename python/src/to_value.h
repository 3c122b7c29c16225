// Python objects as values and arguments of the library.
#pragma once

#include <pybind11/pybind11.h>

#include <cstdint>

#include "scriptwells/session.h"

namespace scriptwells::python {

// A value whose type on the wire was chosen with a maker, such as byte(5).
struct Typed {
  Value value;
};

// The natural value of an object. Raises OverflowError for an int beyond 64 bits, TypeError for an object
// that cannot be sent, ConversionError for a date with a time zone. `loss` becomes what the value no longer
// has of the object, such as its microseconds, as a phrase; else it stays.
Value ToValue(pybind11::handle object, const char*& loss);

// Raises OverflowError beyond 64 bits, and TypeError for anything but a whole number.
std::int64_t ToWhole(pybind11::handle object);

// `parameters` is a mapping or None. A path becomes a file. Errors name the argument.
Arguments ToArguments(pybind11::handle parameters, const pybind11::dict& named, bool strict);

}  // namespace scriptwells::python
