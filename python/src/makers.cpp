#include "makers.h"

#include <pybind11/stl.h>

#include <string>

#include "from_value.h"
#include "python_types.h"
#include "to_value.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;

struct WholeMaker {
  const char* name;
  Value (*make)(std::int64_t value);
  const char* doc;
};
constexpr WholeMaker kWholeMakers[] = {
    {"byte", &Byte, "A whole number of 8 bits."},
    {"short", &Short, "A whole number of 16 bits."},
    {"int_", &Int, "A whole number of 32 bits."},
    {"long", &Long, "A whole number of 64 bits."},
};

struct RealMaker {
  const char* name;
  Value (*make)(double value);
  const char* doc;
};
constexpr RealMaker kRealMakers[] = {
    {"float_", &Float, "A floating-point number of 32 bits."},
    {"double", &Double, "A floating-point number of 64 bits."},
};

// "scriptwells.byte(5)"
std::string Shown(const Typed& typed) {
  std::string name = ToString(typed.value.type());
  if (name == "int" || name == "float") name += "_";
  return "scriptwells." + name + "(" + std::string(py::repr(FromValue(typed.value))) + ")";
}

}  // namespace

void DefineMakers(py::module_& module) {
  py::class_<Typed>(module, "Typed", "A value whose type on the wire is chosen, such as byte(5).")
      .def_property_readonly(
          "value", [](const Typed& typed) { return FromValue(typed.value); }, "As Python's own type.")
      .def_property_readonly(
          "type", [](const Typed& typed) { return ToString(typed.value.type()); }, "The name of its type.")
      .def("__repr__", &Shown)
      .def("__eq__", [](const Typed& a, const Typed& b) { return a.value == b.value; })
      .attr("__hash__") = py::none();
  for (const WholeMaker& maker : kWholeMakers)
    module.def(
        maker.name, [make = maker.make](std::int64_t value) { return Typed{make(value)}; }, py::arg("value"),
        py::pos_only(), maker.doc);
  for (const RealMaker& maker : kRealMakers)
    module.def(
        maker.name, [make = maker.make](double value) { return Typed{make(value)}; }, py::arg("value"),
        py::pos_only(), maker.doc);
  module.def(
      "losses_on_the_wire", [](const py::object& value) { return LossesOnTheWire(ToValue(value, false)); },
      py::arg("value"), py::pos_only(), "What sending a value would change, one sentence each. Often none.");
  module.def("parse_duration", [](const std::string& text) { return FromDuration(Duration::Parse(text)); });
  module.def("duration_text", [](py::handle duration) { return ToDuration(duration).ToString(); });
}

}  // namespace scriptwells::python
