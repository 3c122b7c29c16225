#include "xml/xml_library_guard.h"

#include <exception>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/xml_library_hold.h"
#include "xml/xml_library_start.h"
#include "xml/xml_parts.h"

namespace qv {
namespace {

// Runs a start or stop and turns each failure into an EQvException with the documented message.
void RunControl(void (*function)(), const char16_t* otherFailure) {
  try {
    function();
  } catch (...) {
    const XmlFailure failure = CurrentXmlFailure();
    if (failure.kind == XmlFailure::kLibrary) throw EQvException(WideString(failure.text));
    throw EQvException(WideString(otherFailure));
  }
}

}  // namespace

XmlLibraryGuard& XmlLibraryGuard::Process() {
  static XmlLibraryGuard guard(XmlLibraryControl{StartXmlLibrary, StopXmlLibrary});
  return guard;
}

XmlLibraryGuard::~XmlLibraryGuard() {
  try {
    while (Count() > 0) Release();
  } catch (...) {  // NOLINT(bugprone-empty-catch): at the end of the process or of a test
  }
}

void XmlLibraryGuard::Acquire() {
  if (CountIfRunning()) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  if (count_.load() == 0) RunControl(control_.start, u"Xerces initialization failed.");
  ++count_;
}

// Counts without the lock while the library is started. A compare-and-swap, since another thread may
// decrement to 0 between a test and the increment.
bool XmlLibraryGuard::CountIfRunning() noexcept {
  std::int32_t seen = count_.load();
  while (seen != 0) {
    if (count_.compare_exchange_weak(seen, seen + 1)) return true;
  }
  return false;
}

void XmlLibraryGuard::Release() {
  if (count_.load() <= 0) return;
  const std::lock_guard<std::mutex> lock(mutex_);
  if (count_.load() <= 0) return;  // another thread released the last count meanwhile
  if (--count_ == 0) Stop();
}

void XmlLibraryGuard::Stop() {
  try {
    RunControl(control_.stop, u"Xerces termination failed.");
  } catch (...) {
    ++count_;
    throw;
  }
}

XmlLibraryGuardScope::XmlLibraryGuardScope(XmlLibraryGuard& guard)
    : guard_(guard), exceptionsAtEntry_(std::uncaught_exceptions()) {
  guard_.Acquire();
}

XmlLibraryGuardScope::~XmlLibraryGuardScope() noexcept(false) {
  try {
    guard_.Release();
  } catch (...) {
    if (std::uncaught_exceptions() == exceptionsAtEntry_) throw;
  }
}

XmlLibraryHold::XmlLibraryHold() {
  XmlLibraryGuard::Process().Acquire();
}

XmlLibraryHold::~XmlLibraryHold() {
  try {
    XmlLibraryGuard::Process().Release();
  } catch (...) {  // NOLINT(bugprone-empty-catch): a destructor cannot report it
  }
}

}  // namespace qv
