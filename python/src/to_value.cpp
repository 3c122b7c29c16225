#include "to_value.h"

#include <datetime.h>

#include <string>
#include <utility>

#include "python_types.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;

constexpr int kMostDays = 32767;
constexpr const char* kNoNanoseconds = "travels without its nanoseconds";

[[noreturn]] void Refuse(const std::string& reason) {
  throw ConversionError(Phase::kConversion, reason);
}

std::string TypeName(py::handle object) {
  return py::str(py::type::handle_of(object).attr("__name__"));
}

std::int64_t Whole(PyObject* object) {
  int overflow = 0;
  const long long value = PyLong_AsLongLongAndOverflow(object, &overflow);
  if (overflow != 0) {
    PyErr_SetString(PyExc_OverflowError, "an int beyond 64 bits cannot be sent");
    throw py::error_already_set();
  }
  if (value == -1 && PyErr_Occurred() != nullptr) throw py::error_already_set();
  return value;
}

Value FromWhole(std::int64_t value) {
  const auto narrow = static_cast<std::int32_t>(value);
  if (narrow == value) return narrow;
  return value;
}

int Milliseconds(int microseconds, const char*& loss) {
  if (microseconds % 1000 != 0) loss = "travels without its microseconds";
  return microseconds / 1000;
}

// pandas' types are Python's with more digits.
void LookForNanoseconds(py::handle object, const char* name, const char*& loss) {
  const py::object count = py::getattr(object, name, py::none());
  if (!count.is_none() && !count.equal(py::int_(0))) loss = kNoNanoseconds;
}

Date DateOf(PyObject* object) {
  return {PyDateTime_GET_YEAR(object), PyDateTime_GET_MONTH(object), PyDateTime_GET_DAY(object)};
}

Value FromDateTime(PyObject* object, const char*& loss) {
  // pandas' missing value calls itself a datetime.
  if (PyDateTime_CheckExact(object) == 0 && TypeName(object) == "NaTType") return {};
  if (PyDateTime_DATE_GET_TZINFO(object) != Py_None)
    Refuse(
        "a datetime with a time zone cannot be sent, since the protocol has none; choose one, and leave it "
        "out: value.astimezone(datetime.timezone.utc).replace(tzinfo=None)");
  if (PyDateTime_CheckExact(object) == 0) LookForNanoseconds(object, "nanosecond", loss);
  return DateTime{
      DateOf(object),
      {PyDateTime_DATE_GET_HOUR(object), PyDateTime_DATE_GET_MINUTE(object),
       PyDateTime_DATE_GET_SECOND(object), Milliseconds(PyDateTime_DATE_GET_MICROSECOND(object), loss)}};
}

Value FromTime(PyObject* object, const char*& loss) {
  if (PyDateTime_TIME_GET_TZINFO(object) != Py_None)
    Refuse(
        "a time with a time zone cannot be sent, since the protocol has none; leave it out: "
        "value.replace(tzinfo=None)");
  return Time{PyDateTime_TIME_GET_HOUR(object), PyDateTime_TIME_GET_MINUTE(object),
              PyDateTime_TIME_GET_SECOND(object),
              Milliseconds(PyDateTime_TIME_GET_MICROSECOND(object), loss)};
}

// Python keeps a negative span as negative days and positive seconds.
Value FromSpan(PyObject* object, const char*& loss) {
  constexpr std::int64_t kSecond = 1'000'000;
  constexpr std::int64_t kDay = 86'400 * kSecond;
  if (PyDelta_CheckExact(object) == 0) LookForNanoseconds(object, "nanoseconds", loss);
  const int days = PyDateTime_DELTA_GET_DAYS(object);
  if (days > kMostDays || days < -kMostDays) Refuse("a timedelta of more than 32767 days cannot be sent");
  const std::int64_t span = days * kDay + PyDateTime_DELTA_GET_SECONDS(object) * kSecond +
                            PyDateTime_DELTA_GET_MICROSECONDS(object);
  std::int64_t rest = span < 0 ? -span : span;
  const auto take = [&rest](std::int64_t unit) {
    const std::int64_t count = rest / unit;
    rest %= unit;
    return static_cast<int>(count);
  };
  Duration duration;
  duration.negative = span < 0;
  duration.days = take(kDay);
  duration.hours = take(3600 * kSecond);
  duration.minutes = take(60 * kSecond);
  duration.seconds = static_cast<double>(rest) / static_cast<double>(kSecond);
  return duration;
}

// NumPy's item is a count where Python's type has a narrower range.
py::object PointItem(py::handle object, const char* unit, const char*& loss) {
  const py::object point = object.attr("astype")(unit);
  py::object item = point.attr("item")();
  if (PyLong_Check(item.ptr()) != 0)
    Refuse("'" + std::string(py::str(object)) + "' is outside the years 1 to 9999");
  if (!item.is_none() && !point.equal(object)) loss = kNoNanoseconds;
  return item;
}

// Months and years have no fixed length, and Python has no type for them: they are a Duration.
py::object SpanItem(py::handle object, const char*& loss) {
  const std::string type = py::str(object.attr("dtype"));  // "timedelta64[M]", "timedelta64[3M]"
  const char unit = type[type.size() - 2];
  if (type.back() != ']' || (unit != 'M' && unit != 'Y')) return PointItem(object, "timedelta64[us]", loss);
  py::object item = object.attr("astype")(std::string("timedelta64[") + unit + "]").attr("item")();
  if (item.is_none()) return item;
  const py::bool_ isNegative(item < py::int_(0));
  const char* const field = unit == 'M' ? "months" : "years";
  return PythonTypes::Get().duration(py::arg("negative") = isNegative,
                                     py::arg(field) = item.attr("__abs__")());
}

// A scalar of NumPy as Python's own type or the package's; null for anything else. NumPy is not imported.
py::object NumpyItem(py::handle object, const char*& loss) {
  if (!py::hasattr(object, "dtype") || !py::hasattr(object, "item") || py::hasattr(object, "__len__"))
    return {};
  const std::string kind = py::str(object.attr("dtype").attr("kind"));
  // Their items are counts of their unit, unless it is one of Python's.
  if (kind == "M") return PointItem(object, "datetime64[us]", loss);
  if (kind == "m") return SpanItem(object, loss);
  if (kind == "f") return py::float_(py::reinterpret_borrow<py::object>(object));
  return kind == "b" || kind == "i" || kind == "u" ? object.attr("item")() : py::object();
}

[[noreturn]] void RefuseType(py::handle object) {
  PyErr_Format(
      PyExc_TypeError,
      "a %s cannot be sent: a script takes bool, int, float, str, date, time, datetime, timedelta, "
      "Duration, NumPy scalars, and pathlib.Path for a file; send other data as a text, such as that of "
      "json.dumps",
      TypeName(object).c_str());
  throw py::error_already_set();
}

Value FromObject(py::handle object, const char*& loss) {
  if (object.is_none()) return {};
  if (py::isinstance<Typed>(object)) return object.cast<const Typed&>().value;
  const PythonTypes& types = PythonTypes::Get();
  if (py::isinstance(object, types.duration)) return ToDuration(object);
  if (py::isinstance(object, types.table)) return ToTable(object);
  if (py::isinstance(object, types.link))
    return Link{std::string(TextOf(object.attr("url"), "link")),
                std::string(TextOf(object.attr("caption"), "link"))};
  if (const py::object item = NumpyItem(object, loss)) return ToValue(item, loss);
  if (PyIndex_Check(object.ptr()) != 0) {
    if (PyObject* const whole = PyNumber_Index(object.ptr()))
      return FromWhole(Whole(py::reinterpret_steal<py::object>(whole).ptr()));
    PyErr_Clear();  // an array, which is not a number after all
  }
  RefuseType(object);
}

void Add(Arguments& arguments, py::handle name, py::handle object, bool strict) {
  std::string text(TextOf(name, "name of a parameter"));
  if (PyUnicode_Check(object.ptr()) == 0 && py::hasattr(object, "__fspath__")) {
    PyObject* path = nullptr;
    if (PyUnicode_FSConverter(object.ptr(), &path) == 0) throw py::error_already_set();
    arguments.Add(std::move(text), File{std::string(py::reinterpret_steal<py::bytes>(path))});
    return;
  }
  try {
    const char* loss = nullptr;
    Value value = ToValue(object, loss);
    if (strict && loss != nullptr) Refuse(loss);
    arguments.Add(text, std::move(value));
  } catch (const ConversionError& error) {
    Refuse("argument '" + text + "': " + error.message());
  }
}

}  // namespace

Value ToValue(py::handle object, const char*& loss) {
  if (PyDateTimeAPI == nullptr) PyDateTime_IMPORT;
  if (PyDateTimeAPI == nullptr) throw py::error_already_set();
  PyObject* const raw = object.ptr();
  if (PyBool_Check(raw)) return raw == Py_True;
  if (PyLong_Check(raw)) return FromWhole(Whole(raw));
  if (PyFloat_Check(raw)) return PyFloat_AS_DOUBLE(raw);
  if (PyUnicode_Check(raw)) return TextOf(raw, "text");
  if (PyDateTime_Check(raw)) return FromDateTime(raw, loss);
  if (PyDate_Check(raw)) return DateOf(raw);
  if (PyTime_Check(raw)) return FromTime(raw, loss);
  if (PyDelta_Check(raw)) return FromSpan(raw, loss);
  return FromObject(object, loss);
}

std::int64_t ToWhole(py::handle object) {
  const auto whole = py::reinterpret_steal<py::object>(PyNumber_Index(object.ptr()));
  if (!whole) throw py::error_already_set();
  return Whole(whole.ptr());
}

Arguments ToArguments(py::handle parameters, const py::dict& named, bool strict) {
  Arguments arguments;
  if (!parameters.is_none()) {
    const py::dict mapping{py::reinterpret_borrow<py::object>(parameters)};
    for (const auto& [name, value] : mapping) Add(arguments, name, value, strict);
  }
  for (const auto& [name, value] : named) Add(arguments, name, value, strict);
  return arguments;
}

}  // namespace scriptwells::python
