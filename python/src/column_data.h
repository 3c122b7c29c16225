// The cells of one column, for pandas.
#pragma once

#include <pybind11/pybind11.h>

#include "scriptwells/value.h"

namespace scriptwells::python {

// A list of Python's own types, with None for empty cells.
pybind11::list ListOfColumn(const Table& table, std::size_t column);

// A tuple of a NumPy type and the cells as bytes of it, and a byte for each cell that is 1 where it is empty;
// or of "O", the list, and None. Dates are counts of milliseconds since 1970, durations of microseconds.
pybind11::tuple DataOfColumn(const Table& table, std::size_t column);

}  // namespace scriptwells::python
