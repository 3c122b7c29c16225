#include "qvscriptwells/class_registry.h"

#include <map>
#include <mutex>

#include "platform/builtin_classes.h"

namespace qv {
namespace {

struct Registry {
  Registry() {
    for (const BuiltinClass& builtin : BuiltinClasses()) creators[builtin.classId] = builtin.creator;
  }
  std::mutex mutex;
  std::map<Guid, ClassCreator> creators;
};

Registry& TheRegistry() {
  static Registry registry;
  return registry;
}

ClassCreator FindCreator(const Guid& classId) {
  Registry& registry = TheRegistry();
  const std::lock_guard<std::mutex> lock(registry.mutex);
  const auto found = registry.creators.find(classId);
  return found == registry.creators.end() ? nullptr : found->second;
}

}  // namespace

ClassCreator RegisterClassCreator(const Guid& classId, ClassCreator creator) {
  Registry& registry = TheRegistry();
  const std::lock_guard<std::mutex> lock(registry.mutex);
  ClassCreator& place = registry.creators[classId];
  const ClassCreator before = place;
  place = creator;
  return before;
}

HRESULT CoCreateInstance(const Guid& classId, IUnknown* outer, std::uint32_t, const Guid& iid,
                         void** object) {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr) return CLASS_E_NOAGGREGATION;
  const ClassCreator creator = FindCreator(classId);
  return creator == nullptr ? REGDB_E_CLASSNOTREG : creator(iid, object);
}

HRESULT OleRun(IUnknown* object) {
  if (object == nullptr) return E_POINTER;
  void* raw = nullptr;
  const HRESULT code = object->QueryInterface(IRunnableObject::kIid, &raw);
  if (code == E_NOINTERFACE) return S_OK;
  if (Failed(code)) return code;
  return IRunnableObjectPtr(static_cast<IRunnableObject*>(raw), false)->Run();
}

}  // namespace qv
