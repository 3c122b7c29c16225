#include "python_text.h"

#include <string_view>

namespace scriptwells::late {

namespace py = pybind11;

py::str TextOf(const qv::WideString& text) {
  int byteOrder = -1;
  PyObject* const made = PyUnicode_DecodeUTF16(
      text.IsEmpty() ? "" : reinterpret_cast<const char*>(text.data()),
      static_cast<py::ssize_t>(text.size() * sizeof(char16_t)), "surrogatepass", &byteOrder);
  if (made == nullptr) throw py::error_already_set();
  return py::reinterpret_steal<py::str>(made);
}

qv::WideString WideOf(py::handle text) {
  const auto bytes =
      py::reinterpret_steal<py::bytes>(PyUnicode_AsEncodedString(text.ptr(), "utf-16-le", "surrogatepass"));
  if (!bytes) throw py::error_already_set();
  const auto size = static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.ptr()));
  const auto* const units = reinterpret_cast<const char16_t*>(PyBytes_AS_STRING(bytes.ptr()));
  return {std::u16string_view(units, size / sizeof(char16_t))};
}

}  // namespace scriptwells::late
