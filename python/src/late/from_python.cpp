// Values of arguments.
#include <string>

#include "host_services.h"
#include "late_object.h"
#include "late_values.h"
#include "python_text.h"
#include "serial_dates.h"

namespace scriptwells::late {

namespace {

namespace py = pybind11;

constexpr int kMostScale = 28;  // of a DECIMAL
constexpr int kDecimalBits = 96;

std::string TypeName(py::handle object) {
  return py::str(py::type::handle_of(object).attr("__name__"));
}

[[noreturn]] void RefuseSize(const char* what) {
  PyErr_SetString(PyExc_OverflowError, what);
  throw py::error_already_set();
}

qv::Variant FromUnsigned(PyObject* number) {
  qv::VariantData data;
  data.ullVal = PyLong_AsUnsignedLongLong(number);
  if (PyErr_Occurred() != nullptr) {
    PyErr_Clear();
    RefuseSize("an int beyond 64 bits cannot be passed");
  }
  return qv::Variant::FromRaw(qv::VT_UI8, data);
}

qv::Variant FromWhole(PyObject* number) {
  int overflow = 0;
  const long long value = PyLong_AsLongLongAndOverflow(number, &overflow);
  if (overflow != 0) return FromUnsigned(number);
  const auto narrow = static_cast<std::int32_t>(value);
  return narrow == value ? qv::Variant::FromInt(narrow) : qv::Variant::FromLong(value);
}

// The digits of a decimal.Decimal as one whole number, without its point.
py::int_ Coefficient(const py::tuple& digits, int zeros) {
  std::string text;
  for (const py::handle digit : digits) text += std::to_string(digit.cast<int>());
  text.append(static_cast<std::size_t>(zeros), '0');
  PyObject* const number = PyLong_FromString(text.c_str(), nullptr, 10);
  if (number == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::int_>(number);
}

qv::Variant FromDecimal(py::handle value) {
  const py::tuple parts = value.attr("as_tuple")();
  if (PyLong_Check(py::object(parts[2]).ptr()) == 0)
    RefuseValue(std::string(py::str(value)) + " is no number");
  const auto exponent = py::object(parts[2]).cast<int>();
  if (exponent < -kMostScale || exponent > kMostScale)
    RefuseSize("a Decimal beyond 96 bits or 28 decimal places cannot be passed");
  const py::int_ coefficient = Coefficient(parts[1], exponent > 0 ? exponent : 0);
  if (coefficient.attr("bit_length")().cast<int>() > kDecimalBits)
    RefuseSize("a Decimal beyond 96 bits or 28 decimal places cannot be passed");
  qv::DECIMAL decimal;
  decimal.scale = static_cast<std::uint8_t>(exponent < 0 ? -exponent : 0);
  decimal.sign = py::object(parts[0]).cast<int>() != 0 ? qv::DECIMAL_NEG : std::uint8_t{0};
  decimal.Lo64 = PyLong_AsUnsignedLongLongMask(coefficient.ptr());
  decimal.Hi32 = coefficient.attr("__rshift__")(64).cast<std::uint32_t>();
  return qv::Variant::FromDecimal(decimal);
}

struct MakerRow {
  const char* type;
  qv::Variant (*make)(py::handle value);
};
// Those of scriptwells.byte(5) and its like, which have checked the range.
constexpr MakerRow kMakers[] = {
    {"byte", [](py::handle value) { return qv::Variant::FromByte(value.cast<std::int8_t>()); }},
    {"short", [](py::handle value) { return qv::Variant::FromShort(value.cast<std::int16_t>()); }},
    {"int", [](py::handle value) { return qv::Variant::FromInt(value.cast<std::int32_t>()); }},
    {"long", [](py::handle value) { return qv::Variant::FromLong(value.cast<std::int64_t>()); }},
    {"float", [](py::handle value) { return qv::Variant::FromFloat(value.cast<float>()); }},
    {"double", [](py::handle value) { return qv::Variant::FromDouble(value.cast<double>()); }},
};

qv::Variant FromTyped(py::handle typed) {
  const auto type = typed.attr("type").cast<std::string>();
  for (const MakerRow& row : kMakers)
    if (type == row.type) return row.make(typed.attr("value"));
  RefuseValue("a value of the type " + type + " cannot be passed");
}

bool IsOf(py::handle value, const char* module, const char* type) {
  return py::isinstance(value, py::module_::import(module).attr(type));
}

[[noreturn]] void RefuseType(py::handle value) {
  throw py::type_error(
      "a " + TypeName(value) +
      " cannot be passed: members take bool, int, float, str, Decimal, date, time, datetime, None, "
      "scriptwells.byte(5) and its like, and objects; the client's Duration() makes a duration, its "
      "AttachedFile() a file");
}

qv::Variant FromObject(py::handle value) {
  if (py::isinstance<LateObject>(value)) return value.cast<const LateObject&>().ToVariant();
  if (py::isinstance<HostServices>(value)) return value.cast<const HostServices&>().ToVariant();
  if (const auto serial = SerialOf(value)) return qv::Variant::FromDate(*serial);
  if (IsOf(value, "decimal", "Decimal")) return FromDecimal(value);
  if (IsOf(value, "scriptwells._core", "Typed")) return FromTyped(value);
  if (PyIndex_Check(value.ptr()) == 0) RefuseType(value);
  const auto number = py::reinterpret_steal<py::object>(PyNumber_Index(value.ptr()));
  if (!number) throw py::error_already_set();
  return FromWhole(number.ptr());
}

}  // namespace

qv::Variant FromPython(py::handle value) {
  PyObject* const raw = value.ptr();
  if (raw == Py_None) return qv::Variant::Null();
  if (PyBool_Check(raw)) return qv::Variant::FromBool(raw == Py_True);
  if (PyLong_Check(raw)) return FromWhole(raw);
  if (PyFloat_Check(raw)) return qv::Variant::FromDouble(PyFloat_AS_DOUBLE(raw));
  if (PyUnicode_Check(raw)) return qv::Variant::FromString(WideOf(value));
  return FromObject(value);
}

void RefuseValue(const std::string& message) {
  const py::object type = py::module_::import("scriptwells._errors").attr("ConversionError");
  PyErr_SetObject(type.ptr(), type(message, py::arg("phase") = "conversion").ptr());
  throw py::error_already_set();
}

}  // namespace scriptwells::late
