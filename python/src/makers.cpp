#include "makers.h"

#include <pybind11/stl.h>

#include <string>
#include <vector>

#include "from_value.h"
#include "python_types.h"
#include "to_value.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;

struct WholeMaker {
  const char* name;
  Value (*make)(std::int64_t value);
};
constexpr WholeMaker kWholeMakers[] = {
    {"byte", &Byte},
    {"short", &Short},
    {"int_", &Int},
    {"long", &Long},
};

struct RealMaker {
  const char* name;
  Value (*make)(double value);
};
constexpr RealMaker kRealMakers[] = {
    {"float_", &Float},
    {"double", &Double},
};

double ToReal(py::handle object) {
  const double value = PyFloat_AsDouble(object.ptr());
  if (value == -1 && PyErr_Occurred() != nullptr) throw py::error_already_set();
  return value;
}

std::vector<std::string> Losses(py::handle object) {
  const char* loss = nullptr;
  std::vector<std::string> losses = LossesOnTheWire(ToValue(object, loss));
  if (loss != nullptr) losses.insert(losses.begin(), loss);
  return losses;
}

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
    module.def(maker.name, [make = maker.make](py::handle value) { return Typed{make(ToWhole(value))}; });
  for (const RealMaker& maker : kRealMakers)
    module.def(maker.name, [make = maker.make](py::handle value) { return Typed{make(ToReal(value))}; });
  module.def("losses_on_the_wire", &Losses);
  module.def("parse_duration", [](const std::string& text) { return FromDuration(Duration::Parse(text)); });
  module.def("duration_text", [](py::handle duration) { return ToDuration(duration).ToString(); });
}

}  // namespace scriptwells::python
