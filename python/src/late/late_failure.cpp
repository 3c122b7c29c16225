#include "late_failure.h"

#include <pybind11/pybind11.h>

#include <cstdio>
#include <string>

#include "python_text.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/error_info.h"

namespace scriptwells::late {

namespace {

namespace py = pybind11;

struct WordsRow {
  qv::HRESULT code;
  const char* words;
};
// Of codes that come without a message, since Invoke itself found the failure.
constexpr WordsRow kWords[] = {
    {qv::DISP_E_MEMBERNOTFOUND, "there is no such member, or it cannot be used in this way"},
    {qv::DISP_E_PARAMNOTFOUND, "there is no such argument"},
    {qv::DISP_E_TYPEMISMATCH, "the value has another type than the member takes"},
    {qv::DISP_E_NONAMEDARGS, "it takes no named arguments"},
    {qv::DISP_E_BADVARTYPE, "the value has a type that nothing takes"},
    {qv::DISP_E_OVERFLOW, "the value is out of range"},
    {qv::DISP_E_BADPARAMCOUNT, "it takes another number of arguments"},
    {qv::E_OUTOFMEMORY, "there is no memory"},
    {qv::CO_E_CLASSSTRING, "the registry has no class of this name"},
    {qv::E_NOINTERFACE, "its objects cannot be called by name"},
};

const char* WordsOf(qv::HRESULT code) {
  for (const WordsRow& row : kWords)
    if (row.code == code) return row.words;
  return "it failed";
}

std::string CodeText(qv::HRESULT code) {
  char text[16];
  static_cast<void>(std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(code)));
  return text;
}

py::object OrNone(const qv::WideString& text) {
  return text.IsNull() ? py::object(py::none()) : TextOf(text);
}

void Raise(const LateFailure& failure) {
  const py::object type = py::module_::import("scriptwells._errors").attr("DispatchError");
  const py::object exception =
      type(TextOf(failure.message), py::arg("hresult") = failure.code,
           py::arg("source") = OrNone(failure.source), py::arg("description") = OrNone(failure.description),
           py::arg("argument") =
               failure.argument ? py::object(py::int_(*failure.argument)) : py::object(py::none()));
  PyErr_SetObject(type.ptr(), exception.ptr());
}

}  // namespace

LateFailure FailureOf(std::string_view member, qv::HRESULT code, const qv::EXCEPINFO& record,
                      std::optional<std::size_t> argument) {
  LateFailure failure{code, record.bstrDescription, record.bstrSource, record.bstrDescription, argument};
  if (!failure.message.IsEmpty()) return failure;
  std::string message(member);
  if (argument) message += ", argument " + std::to_string(*argument);
  failure.message = qv::FromUtf8(message + ": " + WordsOf(code) + " (" + CodeText(code) + ")");
  return failure;
}

LateFailure FailureOf(std::string_view what, qv::HRESULT code) {
  qv::ErrorInfo record;
  qv::EXCEPINFO failure;
  if (qv::GetErrorInfo(&record)) {
    failure.bstrSource = record.source;
    failure.bstrDescription = record.description;
  }
  return FailureOf(what, code, failure, std::nullopt);
}

void TranslateFailures() {
  py::register_local_exception_translator([](std::exception_ptr thrown) {
    try {
      std::rethrow_exception(thrown);
    } catch (const LateFailure& failure) {
      Raise(failure);
    } catch (const qv::_com_error& error) {
      Raise({error.Error(), qv::FromUtf8(error.what()), {}, error.Description(), {}});
    }
  });
}

}  // namespace scriptwells::late
