#include "python_types.h"

#include <string>

namespace scriptwells::python {

namespace {

namespace py = pybind11;

template <class T>
T Field(py::handle object, const char* name) {
  const py::object value = object.attr(name);
  try {
    return value.cast<T>();
  } catch (const py::cast_error&) {
    throw py::type_error("a Duration with " + std::string(name) + "=" + std::string(py::repr(value)) +
                         " cannot be sent");
  }
}

double Seconds(std::chrono::microseconds time) {
  return std::chrono::duration<double>(time).count();
}

// The path of a file, whose bytes may be no UTF-8; None for a message.
py::object Path(std::string_view path) {
  if (path.empty()) return py::none();
  return py::reinterpret_steal<py::object>(
      PyUnicode_DecodeFSDefaultAndSize(path.data(), static_cast<py::ssize_t>(path.size())));
}

}  // namespace

const PythonTypes& PythonTypes::Get() {
  // Never destroyed: it would come after the interpreter's end.
  static const PythonTypes* const types = [] {
    const py::module_ module = py::module_::import("scriptwells._types");
    const py::module_ tables = py::module_::import("scriptwells._table");
    return new PythonTypes{module.attr("Duration"),   module.attr("Link"),     tables.attr("Table"),
                           tables.attr("Column"),     module.attr("Progress"), module.attr("Exchange"),
                           module.attr("SeenRequest")};
  }();
  return *types;
}

py::str Text(std::string_view text) {
  PyObject* const made = PyUnicode_DecodeUTF8(text.data(), static_cast<py::ssize_t>(text.size()), "replace");
  if (made == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(made);
}

std::string_view TextOf(py::handle object, const char* what) {
  if (PyUnicode_Check(object.ptr()) == 0)
    throw py::type_error("the " + std::string(what) + " must be a str, not " +
                         std::string(py::str(py::type::handle_of(object).attr("__name__"))));
  py::ssize_t size = 0;
  const char* const bytes = PyUnicode_AsUTF8AndSize(object.ptr(), &size);
  if (bytes == nullptr) throw py::error_already_set();  // a surrogate without its other half
  return {bytes, static_cast<std::size_t>(size)};
}

py::object FromDuration(const Duration& value) {
  return PythonTypes::Get().duration(value.negative, value.years, value.months, value.days, value.hours,
                                     value.minutes, value.seconds);
}

Duration ToDuration(py::handle object) {
  return {Field<bool>(object, "negative"), Field<int>(object, "years"), Field<int>(object, "months"),
          Field<int>(object, "days"),      Field<int>(object, "hours"), Field<int>(object, "minutes"),
          Field<double>(object, "seconds")};
}

py::object FromLink(const Link& value) {
  return PythonTypes::Get().link(Text(value.url), Text(value.caption));
}

py::object FromTable(const Table& value) {
  return PythonTypes::Get().table(value);
}

const Table& ToTable(py::handle object) {
  return object.attr("_cells").cast<const Table&>();
}

py::object FromEvent(const Progress& progress) {
  const py::object total = progress.total < 0 ? py::object(py::none()) : py::int_(progress.total);
  return PythonTypes::Get().progress(progress.sending, progress.done, total, Path(progress.file));
}

py::object FromEvent(const Exchange& exchange) {
  using py::arg;
  const auto begin = std::chrono::duration<double>(exchange.begin.time_since_epoch());
  return PythonTypes::Get().exchange(
      arg("purpose") = ToString(exchange.purpose), arg("server") = Text(exchange.server),
      arg("proxy") = Text(exchange.proxy), arg("request_head") = py::bytes(exchange.requestHead),
      arg("request_body") = py::bytes(exchange.requestBody),
      arg("answer_head") = py::bytes(exchange.answerHead),
      arg("answer_body") = py::bytes(exchange.answerBody), arg("status") = exchange.status,
      arg("file") = Path(exchange.file), arg("sent_bytes") = exchange.sentBytes,
      arg("received_bytes") = exchange.receivedBytes, arg("failure") = Text(exchange.failure),
      arg("begin") = begin.count(), arg("connecting") = Seconds(exchange.connecting),
      arg("waiting") = Seconds(exchange.waiting), arg("total") = Seconds(exchange.total),
      arg("summary") = Text(Summary(exchange)));
}

}  // namespace scriptwells::python
