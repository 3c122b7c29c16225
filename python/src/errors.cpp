#include "errors.h"

#include <pybind11/pybind11.h>

#include <string>
#include <typeinfo>

#include "python_types.h"
#include "scriptwells/error.h"

namespace scriptwells::python {

namespace {

namespace py = pybind11;

struct ClassRow {
  const std::type_info& type;
  const char* name;
};
const ClassRow kClasses[] = {
    {typeid(ConnectionError), "ConnectionError"}, {typeid(TimeoutError), "TimeoutError"},
    {typeid(SessionError), "SessionError"},       {typeid(ScriptError), "ScriptError"},
    {typeid(CancelledError), "CancelledError"},   {typeid(ConversionError), "ConversionError"},
};

// In the order of Remedy, as options of Python.
constexpr const char* kRemedies[] = {
    "",
    " (connect(authorities=...) names your own authority)",
    " (the server wants to see a certificate: connect(certificate=..., key=...))",
    " (connect(replace_files=True) replaces it)",
    " (connect(hidden_files=True) allows it)",
    " (the option timeout)",
    " (without a user name: connect(url, user, password))",
    " (connect(home_directory=...) names the directory that holds them)",
    " (a file belongs to the session that made it)",
};

const char* ClassOf(const Error& error) {
  for (const ClassRow& row : kClasses)
    if (typeid(error) == row.type) return row.name;
  return "Error";
}

template <class T>
py::object OrNone(bool has, T value) {
  return has ? py::cast(value) : py::none();
}

void Raise(const Error& error) {
  const ErrorDetails& details = error.details();
  const bool isOfServer = error.phase() == Phase::kScript || error.phase() == Phase::kSession;
  const py::object type = py::module_::import("scriptwells._errors").attr(ClassOf(error));
  const py::object exception =
      type(Text(error.message() + kRemedies[static_cast<std::size_t>(details.remedy)]),
           py::arg("phase") = ToString(error.phase()),
           py::arg("code") = OrNone(details.number.has_value(), details.number.value_or(0)),
           py::arg("server_message") =
               isOfServer && !details.text.empty() ? py::object(Text(details.text)) : py::none(),
           py::arg("line") = OrNone(details.line > 0, details.line),
           py::arg("column") = OrNone(details.column > 0, details.column),
           py::arg("status") = OrNone(details.status > 0, details.status));
  PyErr_SetObject(type.ptr(), exception.ptr());
}

}  // namespace

void TranslateErrors() {
  py::register_local_exception_translator([](std::exception_ptr thrown) {
    try {
      std::rethrow_exception(thrown);
    } catch (const Error& error) {
      Raise(error);
    }
  });
}

}  // namespace scriptwells::python
