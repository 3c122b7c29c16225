#include "face/session/process_hold.h"

#include <new>

#include "qvscriptwells/qv_exception.h"
#include "qvscriptwells/value_types_hold.h"
#include "qvscriptwells/wide_string.h"
#include "qvscriptwells/xml_library_hold.h"
#include "scriptwells/error.h"

namespace scriptwells {

namespace {

struct ProcessHold {
  qv::XmlLibraryHold library;
  qv::ValueTypesHold types;
};

}  // namespace

void HoldLibrary() {
  try {
    // Never destroyed: threads may still use their sessions while the process ends.
    alignas(ProcessHold) static unsigned char place[sizeof(ProcessHold)];
    [[maybe_unused]] static const ProcessHold* const hold = new (place) ProcessHold;
  } catch (const qv::QvException& error) {
    throw Error(Phase::kAddress, error.what());
  }
}

}  // namespace scriptwells
