#include "xml/linked_start.h"

#include <new>

#include <xercesc/util/PanicHandler.hpp>
#include <xercesc/util/PlatformUtils.hpp>

#include "com/module.h"
#include "xml/start_memory.h"

namespace qv {
namespace {

namespace xc = XERCES_CPP_NAMESPACE;

struct StartFailure {};

// The default handler ends the process.
class ThrowingPanicHandler : public xc::PanicHandler {
 public:
  void panic(PanicReasons /*reason*/) override { throw StartFailure(); }
};

struct Lent {
  ThrowingPanicHandler panicHandler;
  StartMemory memory;
};

// What the started XML library borrows. Never destroyed, since the process's guard may stop the library
// during the destruction of static objects.
Lent& ToLibrary() {
  alignas(Lent) static unsigned char place[sizeof(Lent)];
  static Lent& lent = *new (place) Lent;
  return lent;
}

bool failedInside = false;

void Initialize() {
  try {
    xc::XMLPlatformUtils::Initialize(xc::XMLUni::fgXercescDefaultLocale, nullptr, &ToLibrary().panicHandler,
                                     &ToLibrary().memory);
  } catch (...) {
    failedInside = true;
    LockModule();  // the library keeps using the borrowed objects
    throw;
  }
}

}  // namespace

void InitializeXmlLibrary() {
  if (failedInside) throw StartFailure();
  StartMemory& memory = ToLibrary().memory;
  if (!memory.Reserve()) throw std::bad_alloc();
  const StartMemory::Serving serving(memory);
  Initialize();
}

void TerminateXmlLibrary() {
  StartMemory& memory = ToLibrary().memory;
  {
    const StartMemory::Serving serving(memory);
    xc::XMLPlatformUtils::Terminate();
  }
  memory.GiveBack();
}

}  // namespace qv
