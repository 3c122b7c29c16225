// A class library as small as one can be: one class, whose objects do nothing. The build makes several of it,
// all but one with a flaw.
#include <atomic>
#include <new>

#include "com/class_library.h"
#include "com/counted_object.h"
#include "com/module_hooks.h"
#include "qvscriptwells/class_factory.h"

namespace {

std::atomic<int> inUse{0};
const qv::ModuleHooks* hostHooks = nullptr;

class EmptyObject final : public qv::CountedObject<qv::IUnknown> {
 public:
  EmptyObject() { ++inUse; }

 private:
  ~EmptyObject() override { --inUse; }
};

// A request for an interface that its object does not have leaves a message in the host's error record.
class EmptyFactory final : public qv::ComObject<qv::IClassFactory> {
 public:
  std::uint32_t AddRef() noexcept override { return static_cast<std::uint32_t>(++inUse); }
  std::uint32_t Release() noexcept override { return static_cast<std::uint32_t>(--inUse); }
  qv::HRESULT CreateInstance(qv::IUnknown*, const qv::Guid& iid, void** object) noexcept override {
    *object = nullptr;
    const qv::IUnknownPtr made(new (std::nothrow) EmptyObject);
    if (made == nullptr) return qv::E_OUTOFMEMORY;
    const qv::HRESULT code = made->QueryInterface(iid, object);
    qv::ErrorInfo info;
    info.description = u"words of the class library";
    if (code != qv::S_OK) hostHooks->setErrorInfo(info);
    return code;
  }
  qv::HRESULT LockServer(bool lock) noexcept override {
    lock ? ++inUse : --inUse;
    return qv::S_OK;
  }
};

EmptyFactory factory;

}  // namespace

#pragma GCC visibility push(default)

extern "C" {

#ifndef CLASS_LIBRARY_NO_MAIN
// A thorough one: it uses the host's classes while it starts, its own among them, and tries to be unloaded.
int DllMain(void*, std::uint32_t reason, void* hooks) {
  if (reason != 1) return 1;
  hostHooks = static_cast<const qv::ModuleHooks*>(hooks);
  void* own = nullptr;
  if (hostHooks->getClassObject(qv::kClassOfLibrary, 0, qv::IClassFactory::kIid, &own) == qv::S_OK)
    static_cast<qv::IClassFactory*>(own)->Release();
  hostHooks->freeUnusedLibraries();
#ifdef CLASS_LIBRARY_REFUSES
  return 0;
#else
  return 1;
#endif
}
#endif

#ifndef CLASS_LIBRARY_NO_CLASS_OBJECT
qv::HRESULT DllGetClassObject(const qv::Guid& classId, const qv::Guid& iid, void** object) {
  if (classId != qv::kClassOfLibrary) return qv::CLASS_E_CLASSNOTAVAILABLE;
  return factory.QueryInterface(iid, object);
}
#endif

#ifndef CLASS_LIBRARY_NO_UNLOAD
qv::HRESULT DllCanUnloadNow() {
  return inUse == 0 ? qv::S_OK : qv::S_FALSE;
}
#endif
}

#pragma GCC visibility pop
