// Values of the library as Python's own types.
#pragma once

#include <pybind11/pybind11.h>

#include "scriptwells/value.h"

namespace scriptwells::python {

// bool, int, float, str, datetime.date, time, datetime, None, Duration, Link, Table. Throws ConversionError
// for a day outside the years 1 to 9999.
pybind11::object FromValue(const Value& value);

}  // namespace scriptwells::python
