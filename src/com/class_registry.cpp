#include "qvscriptwells/class_registry.h"

#include <map>
#include <mutex>
#include <new>
#include <utility>

#include "com/builtin_classes.h"
#include "com/class_libraries.h"
#include "com/module_hooks.h"
#include "qvscriptwells/class_factory.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"

namespace qv {
namespace {

// The changes to the built-in classes; null for a class that was removed.
struct Registry {
  std::mutex mutex;
  std::map<Guid, ClassCreator> changed;
};

Registry& TheRegistry() {
  static Registry registry;
  return registry;
}

ClassCreator BuiltinCreator(const Guid& classId) noexcept {
  for (const BuiltinClass* row = BuiltinClasses(); row->creator != nullptr; ++row)
    if (row->classId == classId) return row->creator;
  return nullptr;
}

ClassCreator FindOwnCreator(const Guid& classId) noexcept {
  Registry& registry = TheRegistry();
  const std::lock_guard<std::mutex> lock(registry.mutex);
  const auto found = registry.changed.find(classId);
  return found == registry.changed.end() ? BuiltinCreator(classId) : found->second;
}

// A creator is a program's code and may throw, even if the contract forbids it.
HRESULT RunCreator(ClassCreator creator, const Guid& iid, void** object) noexcept {
  try {
    return creator(iid, object);
  } catch (const _com_error& error) {
    return error.Error();
  } catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
  } catch (...) {
    return E_UNEXPECTED;
  }
}

HRESULT CreateByClassObject(const Guid& classId, IUnknown* outer, std::uint32_t context, const Guid& iid,
                            void** object) noexcept {
  void* raw = nullptr;
  const HRESULT code = CoGetClassObject(classId, context, IClassFactory::kIid, &raw);
  if (Failed(code)) return code;
  if (raw == nullptr) return E_UNEXPECTED;
  return IClassFactoryPtr(static_cast<IClassFactory*>(raw), false)->CreateInstance(outer, iid, object);
}

}  // namespace

ClassCreator FindClassCreator(const Guid& classId) noexcept {
  const ModuleHooks* const host = Host();
  const ClassCreator hosts = host != nullptr ? host->findClassCreator(classId) : nullptr;
  return hosts != nullptr ? hosts : FindOwnCreator(classId);
}

ClassCreator RegisterClassCreator(const Guid& classId, ClassCreator creator) {
  Registry& registry = TheRegistry();
  const std::lock_guard<std::mutex> lock(registry.mutex);
  ClassCreator& place = registry.changed.try_emplace(classId, BuiltinCreator(classId)).first->second;
  return std::exchange(place, creator);
}

HRESULT CoCreateInstance(const Guid& classId, IUnknown* outer, std::uint32_t context, const Guid& iid,
                         void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  const ClassCreator creator = FindClassCreator(classId);
  if (creator == nullptr) return CreateByClassObject(classId, outer, context, iid, object);
  return outer != nullptr ? CLASS_E_NOAGGREGATION : RunCreator(creator, iid, object);
}

HRESULT CoGetClassObject(const Guid& classId, std::uint32_t context, const Guid& iid,
                         void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  const HRESULT own = OwnClassObject(classId, iid, object);
  if (own != CLASS_E_CLASSNOTAVAILABLE) return own;
  const ModuleHooks* const host = Host();
  if (host != nullptr) return host->getClassObject(classId, context, iid, object);
  return LibraryClassObject(classId, iid, object);
}

void CoFreeUnusedLibraries() noexcept {
  const ModuleHooks* const host = Host();
  return host != nullptr ? host->freeUnusedLibraries() : UnloadUnusedLibraries();
}

HRESULT OleRun(IUnknown* object) {
  if (object == nullptr) return E_POINTER;
  void* raw = nullptr;
  const HRESULT code = object->QueryInterface(IRunnableObject::kIid, &raw);
  if (code == E_NOINTERFACE) return S_OK;
  if (Failed(code)) return code;
  return IRunnableObjectPtr(static_cast<IRunnableObject*>(raw), false)->Run();
}

IUnknownPtr CreateComponent(const Guid& classId) {
  IUnknownPtr object;
  const HRESULT created = CoCreateInstance(classId, nullptr, CLSCTX_ALL, IUnknown::kIid, Put(object));
  if (Failed(created)) _com_raise_error(created);
  const HRESULT started = OleRun(object.get());
  if (Failed(started)) _com_raise_error(started);
  return object;
}

}  // namespace qv
