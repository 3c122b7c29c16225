// Points in time: datetime.date, time and datetime are the numbers of VT_DATE.
#pragma once

#include <pybind11/pybind11.h>

#include <optional>

namespace scriptwells::late {

// Nothing for a value of another type. Throws scriptwells.ConversionError for one with a time zone.
std::optional<double> SerialOf(pybind11::handle value);

// A time on day 0, a date at midnight, else a datetime: as scripts' values of these types arrive. Throws
// scriptwells.ConversionError outside the years 1 to 9999.
pybind11::object PointOf(double serial);

}  // namespace scriptwells::late
