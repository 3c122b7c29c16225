// The classes of the package that are written in Python: C++ code makes and reads their objects.
#pragma once

#include <pybind11/pybind11.h>

#include <string_view>

#include "scriptwells/options.h"
#include "scriptwells/types.h"
#include "scriptwells/value.h"

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

// The UTF-8 of a str, which the object keeps. Raises TypeError for another type; `what` is for the message,
// which does not repeat the object.
std::string_view TextOf(pybind11::handle object, const char* what);

pybind11::object FromDuration(const Duration& value);
// Raises TypeError for counts that do not fit.
Duration ToDuration(pybind11::handle object);
pybind11::object FromLink(const Link& value);
pybind11::object FromTable(const Table& value);
// The table of an object of the class Table.
const Table& ToTable(pybind11::handle object);
pybind11::object FromEvent(const Progress& progress);
pybind11::object FromEvent(const Exchange& exchange);

}  // namespace scriptwells::python
