// The parts that need the XML library, in a library of commands: loaded for the first answer that is not
// plain, or for a script document. Loading the XML library and what it links takes 4 ms and as many MB. That
// library has its own copy of the rooms, so the ceiling of xml_memory.h, which this program does not set,
// would not reach it.
#include <dlfcn.h>

#include <atomic>
#include <mutex>
#include <string>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/wide_string.h"
#include "scriptwells/version.h"
#include "src/xml/xml_library_start.h"
#include "tools/system/own_files.h"
#include "tools/xml_library.h"

namespace qv {
namespace {

std::atomic<const XmlParts*> present{nullptr};

[[noreturn]] void Refuse(const std::string& why) {
  throw EQvException(FromUtf8(why));
}

// Never unloaded, as the library of commands.
const XmlParts* Load(const std::string& path) {
  void* library = ::dlopen(path.c_str(), RTLD_LAZY | RTLD_LOCAL);
  void* entry = library == nullptr ? nullptr : ::dlsym(library, cli::kXmlPartsEntry);
  if (entry == nullptr) Refuse(std::string("cannot load the XML library of this program: ") + ::dlerror());
  const XmlParts* const parts = reinterpret_cast<cli::XmlPartsEntry>(entry)(SCRIPTWELLS_VERSION);
  if (parts == nullptr) Refuse("the library " + path + " belongs to another version of this program");
  return parts;
}

}  // namespace

const XmlParts& RequireXmlParts() {
  static std::mutex mutex;
  const std::lock_guard<std::mutex> lock(mutex);
  if (PresentXmlParts() == nullptr) present = Load(cli::XmlLibrary());
  return *PresentXmlParts();
}

const XmlParts* PresentXmlParts() noexcept {
  return present;
}

}  // namespace qv
