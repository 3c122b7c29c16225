// Values of results.
#include <string>

#include "late_object.h"
#include "late_values.h"
#include "python_text.h"
#include "serial_dates.h"

namespace scriptwells::late {

namespace {

namespace py = pybind11;

// Exactly: the constructor of a Decimal does not round, unlike its arithmetic.
py::object DecimalOf(const std::string& number, int scale) {
  return py::module_::import("decimal").attr("Decimal")(number + "E-" + std::to_string(scale));
}

py::object FromDecimal(const qv::DECIMAL& decimal) {
  const py::object high = py::int_(decimal.Hi32).attr("__lshift__")(64);
  const std::string digits = py::str(high.attr("__or__")(py::int_(decimal.Lo64)));
  return DecimalOf((decimal.sign != 0 ? "-" : "") + digits, decimal.scale);
}

py::object FromObject(qv::Variant& value) {
  const qv::IUnknownPtr object(value.Object());
  value.Clear();
  if (!object) return py::none();
  return py::cast(new LateObject(object), py::return_value_policy::take_ownership);
}

}  // namespace

py::object ToPython(qv::Variant value) {
  const qv::VariantData& data = value.Data();
  switch (value.Tag()) {
    case qv::VT_EMPTY:
    case qv::VT_NULL:
      return py::none();
    case qv::VT_BOOL:
      return py::bool_(data.boolVal != qv::VARIANT_FALSE);
    case qv::VT_I1:
      return py::int_(static_cast<int>(data.cVal));
    case qv::VT_UI1:
      return py::int_(static_cast<int>(data.bVal));
    case qv::VT_I2:
      return py::int_(data.iVal);
    case qv::VT_UI2:
      return py::int_(data.uiVal);
    case qv::VT_I4:
    case qv::VT_INT:
      return py::int_(data.lVal);
    case qv::VT_UI4:
    case qv::VT_UINT:
      return py::int_(data.ulVal);
    case qv::VT_I8:
      return py::int_(data.llVal);
    case qv::VT_UI8:
      return py::int_(data.ullVal);
    case qv::VT_R4:
      return py::float_(static_cast<double>(data.fltVal));
    case qv::VT_R8:
      return py::float_(data.dblVal);
    case qv::VT_CY:
      return DecimalOf(std::to_string(data.cyVal), 4);
    case qv::VT_DECIMAL:
      return FromDecimal(value.Decimal());
    case qv::VT_DATE:
      return PointOf(data.date);
    case qv::VT_BSTR:
      return TextOf(value.Text());
    case qv::VT_UNKNOWN:
    case qv::VT_DISPATCH:
      return FromObject(value);
    default:
      RefuseValue("Python has no value for the tag " + std::to_string(value.Tag()));
  }
}

}  // namespace scriptwells::late
