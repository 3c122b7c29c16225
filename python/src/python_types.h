// The classes of the package that are written in Python: C++ code makes and reads their objects.
#pragma once

#include <pybind11/pybind11.h>

#include "scriptwells/exchange.h"
#include "scriptwells/options.h"
#include "scriptwells/table.h"
#include "scriptwells/types.h"

namespace scriptwells::python {

struct PythonTypes {
  pybind11::object duration;
  pybind11::object link;
  pybind11::object table;
  pybind11::object column;
  pybind11::object progress;
  pybind11::object exchange;
  pybind11::object seenRequest;

  static const PythonTypes& Get();
};

// A text of the library, which is UTF-8.
pybind11::str Text(std::string_view text);

pybind11::object FromDuration(const Duration& value);
// Raises OverflowError and TypeError for counts that are none.
Duration ToDuration(pybind11::handle object);
pybind11::object FromLink(const Link& value);
pybind11::object FromTable(const Table& value);
// The table of an object of the class Table.
const Table& ToTable(pybind11::handle object);
pybind11::object FromProgress(const Progress& progress);
pybind11::object FromExchange(const Exchange& exchange);

}  // namespace scriptwells::python
