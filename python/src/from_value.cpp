#include "from_value.h"

#include <datetime.h>

#include <string>
#include <variant>

#include "python_types.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;

void ImportDates() {
  if (PyDateTimeAPI == nullptr) PyDateTime_IMPORT;
  if (PyDateTimeAPI == nullptr) throw py::error_already_set();
}

// Takes a new reference. Python's dates have the years 1 to 9999.
template <class T>
py::object Point(PyObject* made, const T& value) {
  if (made != nullptr) return py::reinterpret_steal<py::object>(made);
  PyErr_Clear();
  throw ConversionError(Phase::kConversion,
                        "'" + value.ToString() + "' is outside the years 1 to 9999 that Python's dates have");
}

struct Maker {
  py::object operator()(std::monostate) const { return py::none(); }
  py::object operator()(bool value) const { return py::bool_(value); }
  py::object operator()(std::int8_t value) const { return py::int_(static_cast<int>(value)); }
  py::object operator()(float value) const { return py::float_(static_cast<double>(value)); }
  py::object operator()(double value) const { return py::float_(value); }
  py::object operator()(const std::string& value) const { return Text(value); }
  py::object operator()(const Date& value) const {
    ImportDates();
    return Point(PyDate_FromDate(value.year, value.month, value.day), value);
  }
  py::object operator()(const Time& value) const {
    ImportDates();
    return Point(PyTime_FromTime(value.hour, value.minute, value.second, value.millisecond * 1000), value);
  }
  py::object operator()(const DateTime& value) const {
    ImportDates();
    const Time& time = value.time;
    return Point(PyDateTime_FromDateAndTime(value.date.year, value.date.month, value.date.day, time.hour,
                                            time.minute, time.second, time.millisecond * 1000),
                 value);
  }
  py::object operator()(const Duration& value) const { return FromDuration(value); }
  py::object operator()(const Link& value) const { return FromLink(value); }
  py::object operator()(const Table& value) const { return FromTable(value); }
  template <class Whole>
  py::object operator()(Whole value) const {
    return py::int_(value);
  }
};

}  // namespace

py::object FromValue(const Value& value) {
  return value.Visit(Maker());
}

}  // namespace scriptwells::python
