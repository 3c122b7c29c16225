#include "create_object.h"

#include <strings.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "late_failure.h"
#include "late_object.h"
#include "python_text.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/registry.h"

namespace scriptwells::late {

namespace {

namespace py = pybind11;

constexpr char kVariable[] = "QV_REGISTRY";

std::string NamedFile() {
  const char* const path = std::getenv(kVariable);
  return path == nullptr ? "" : path;
}

// Lets QV_REGISTRY name another file for the length of a call. No Python code runs meanwhile. A variable that
// was not set is empty afterwards, which means the same.
class RegistryOfCall {
 public:
  explicit RegistryOfCall(const std::string& path) : former_(NamedFile()) { Name(path); }
  RegistryOfCall(const RegistryOfCall&) = delete;
  RegistryOfCall& operator=(const RegistryOfCall&) = delete;
  ~RegistryOfCall() { Name(former_); }

 private:
  static void Name(const std::string& path) { static_cast<void>(setenv(kVariable, path.c_str(), 1)); }

  std::string former_;
};

qv::Guid ClassIdOf(const qv::WideString& name) {
  qv::Guid classId{};
  const bool isId = !name.IsEmpty() && name.view().front() == u'{';
  const qv::HRESULT code = isId ? qv::CLSIDFromString(name, &classId) : qv::CLSIDFromProgID(name, &classId);
  if (qv::Failed(code)) throw FailureOf(qv::ToUtf8(name), code);
  return classId;
}

qv::IUnknownPtr Create(const qv::WideString& name) {
  qv::IUnknownPtr object;
  const qv::HRESULT code =
      qv::CoCreateInstance(ClassIdOf(name), nullptr, qv::CLSCTX_ALL, qv::IDispatch::kIid, Put(object));
  if (qv::Failed(code)) throw FailureOf(qv::ToUtf8(name), code);
  return object;
}

bool HasKey(const qv::RegistryLayer& layer, const std::string& key) {
  return std::any_of(layer.entries.begin(), layer.entries.end(), [&key](const qv::RegistryEntry& entry) {
    return strcasecmp(qv::ToUtf8(entry.key).c_str(), key.c_str()) == 0;
  });
}

// Whether the file of QV_REGISTRY has the class `name`.
bool IsNamedByTheUser(const qv::WideString& name) {
  const std::string file = NamedFile();
  if (file.empty()) return false;
  const std::string key = qv::ToUtf8(qv::kClassesKey) + "\\" + qv::ToUtf8(name) + "\\CLSID";
  const std::vector<qv::RegistryLayer> layers = qv::ReadRegistry();
  return std::any_of(layers.begin(), layers.end(), [&](const qv::RegistryLayer& layer) {
    return layer.path == file && HasKey(layer, key);
  });
}

}  // namespace

void DefineCreation(py::module_& module) {
  module.def("create", [](const py::str& name) { return new LateObject(Create(WideOf(name))); });
  module.def("create", [](const py::str& name, const std::string& registry) {
    const qv::WideString wide = WideOf(name);
    if (IsNamedByTheUser(wide)) return new LateObject(Create(wide));
    const RegistryOfCall own(registry);
    return new LateObject(Create(wide));
  });
  module.def("free_unused_libraries", &qv::CoFreeUnusedLibraries);
}

}  // namespace scriptwells::late
