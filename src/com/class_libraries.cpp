#include "com/class_libraries.h"

#include <dlfcn.h>

#include <algorithm>
#include <list>
#include <mutex>
#include <string>

#include "com/class_names.h"
#include "com/error_message.h"
#include "com/guid_text.h"
#include "com/library_file.h"
#include "com/module_hooks.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/error_info.h"
#include "qvscriptwells/registry.h"
#include "system/regular_file.h"

namespace qv {
namespace {

constexpr std::uint32_t kProcessDetach = 0;
constexpr std::uint32_t kProcessAttach = 1;

using Main = int (*)(void* library, std::uint32_t reason, void* hooks);
using GetClassObject = HRESULT (*)(const Guid& classId, const Guid& iid, void** object);
using CanUnloadNow = HRESULT (*)();

struct Library {
  std::string path;
  void* handle;
  Main main;
  GetClassObject getClassObject;
  CanUnloadNow canUnloadNow;
  int calls = 0;  // in progress: it cannot be unloaded meanwhile
};

struct Libraries {
  std::recursive_mutex mutex;
  std::list<Library> loaded;
};

// Never destroyed, since objects of the libraries may be released by the destructors of the program's
// globals.
Libraries& TheLibraries() {
  static Libraries& libraries = *new Libraries;
  return libraries;
}

// Closes a handle unless it was released.
class OpenLibrary {
 public:
  explicit OpenLibrary(const std::string& path) : handle_(dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) {
    if (handle_ == nullptr) RaiseWithWords(CO_E_DLLNOTFOUND, dlerror());
  }
  OpenLibrary(const OpenLibrary&) = delete;
  OpenLibrary& operator=(const OpenLibrary&) = delete;
  ~OpenLibrary() {
    if (handle_ != nullptr) dlclose(handle_);
  }
  void* Get() const noexcept { return handle_; }
  void Keep() noexcept { handle_ = nullptr; }

 private:
  void* handle_;
};

void* EntryPoint(const std::string& path, void* handle, const char* name) {
  void* const entry = dlsym(handle, name);
  if (entry == nullptr) RaiseWithWords(CO_E_ERRORINDLL, path + ": it has no entry point " + name);
  return entry;
}

void RequireUsable(const std::string& path) {
  if (path.empty() || path.front() != '/')
    RaiseWithWords(CO_E_DLLNOTFOUND, "The library \"" + path + "\" is not named by an absolute path");
  // The system's loader would wait for a pipe's writer.
  if (OpenRegularFile(path).error == kNotRegular)
    RaiseWithWords(CO_E_DLLNOTFOUND, path + ": Not a regular file");
  if (IsCutOff(path)) RaiseWithWords(CO_E_DLLNOTFOUND, path + ": The file is cut off");
}

Library* Find(Libraries& libraries, const std::string& path) {
  for (Library& library : libraries.loaded)
    if (library.path == path) return &library;
  return nullptr;
}

Library* Find(Libraries& libraries, const void* handle) {
  for (Library& library : libraries.loaded)
    if (library.handle == handle) return &library;
  return nullptr;
}

void* SharedHooks() noexcept {
  return const_cast<ModuleHooks*>(OwnHooks());
}

Library WithEntryPoints(const std::string& path, void* handle) {
  Library library{path, handle, nullptr, nullptr, nullptr};
  library.main = reinterpret_cast<Main>(EntryPoint(path, handle, "DllMain"));
  library.getClassObject = reinterpret_cast<GetClassObject>(EntryPoint(path, handle, "DllGetClassObject"));
  library.canUnloadNow = reinterpret_cast<CanUnloadNow>(EntryPoint(path, handle, "DllCanUnloadNow"));
  return library;
}

// Added to the table before its start, which may call this code again.
Library& Load(Libraries& libraries, const std::string& path) {
  RequireUsable(path);
  OpenLibrary opened(path);
  // One library under two paths.
  if (Library* const known = Find(libraries, opened.Get())) return *known;
  const auto library = libraries.loaded.insert(libraries.loaded.end(), WithEntryPoints(path, opened.Get()));
  library->calls = 1;
  if (library->main(library->handle, kProcessAttach, SharedHooks()) == 0) {
    libraries.loaded.erase(library);
    RaiseWithWords(CO_E_ERRORINDLL, path + ": it refused to start");
  }
  library->calls = 0;
  opened.Keep();
  return *library;
}

// Keeps a library loaded for the length of one call.
class LibraryCall {
 public:
  explicit LibraryCall(const std::string& path) {
    Libraries& libraries = TheLibraries();
    const std::lock_guard<std::recursive_mutex> lock(libraries.mutex);
    Library* const known = Find(libraries, path);
    library_ = known != nullptr ? known : &Load(libraries, path);
    ++library_->calls;
  }
  LibraryCall(const LibraryCall&) = delete;
  LibraryCall& operator=(const LibraryCall&) = delete;
  ~LibraryCall() {
    const std::lock_guard<std::recursive_mutex> lock(TheLibraries().mutex);
    --library_->calls;
  }
  HRESULT ClassObject(const Guid& classId, const Guid& iid, void** object) const {
    return library_->getClassObject(classId, iid, object);
  }

 private:
  Library* library_;
};

HRESULT AskLibrary(const Guid& classId, const Guid& iid, void** object) {
  ClearErrorInfo();
  const WideString path = ReadRegistryValue(ClassKey(classId, u"InprocServer32"));
  if (path.IsNull())
    RaiseWithWords(REGDB_E_CLASSNOTREG, "The registry names no library for the class " +
                                            ToUtf8(StringFromIID(classId)) + SearchedRegistry());
  return LibraryCall(ToUtf8(path)).ClassObject(classId, iid, object);
}

// Removed from the table first: a library that is being unloaded may call this code again.
std::list<Library> TakeUnused(Libraries& libraries) {
  std::list<Library> unused;
  for (auto next = libraries.loaded.begin(); next != libraries.loaded.end();) {
    const auto library = next++;
    if (library->calls == 0 && library->canUnloadNow() == S_OK)
      unused.splice(unused.end(), libraries.loaded, library);
  }
  return unused;
}

}  // namespace

HRESULT LibraryClassObject(const Guid& classId, const Guid& iid, void** object) noexcept {
  try {
    return AskLibrary(classId, iid, object);
  } catch (const _com_error& error) {
    if (!error.Description().IsNull()) PostErrorMessage(error.Description());
    return error.Error();
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

void UnloadUnusedLibraries() noexcept {
  try {
    Libraries& libraries = TheLibraries();
    const std::lock_guard<std::recursive_mutex> lock(libraries.mutex);
    for (const Library& library : TakeUnused(libraries)) {
      library.main(library.handle, kProcessDetach, SharedHooks());
      dlclose(library.handle);
    }
  } catch (...) {  // from a library that violates its contract; it stays loaded
  }
}

}  // namespace qv
