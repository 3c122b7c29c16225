#include "automation/module_xml_hold.h"

#include <mutex>
#include <optional>

#include "qvscriptwells/registry.h"
#include "xml/xml_library_guard.h"

namespace qv {
namespace {

std::mutex mutex;
std::optional<bool> isAsked;  // empty until the registry is read
bool isHeld = false;          // at the end of a process the guard releases it

}  // namespace

void HoldXmlLibraryIfAsked() noexcept {
  try {
    const std::lock_guard<std::mutex> lock(mutex);
    if (!isAsked) isAsked = ReadRegistryValue(kHoldWhileLoadedKey).view() == u"1";
    if (!*isAsked || isHeld) return;
    XmlLibraryGuard::Process().Acquire();
    isHeld = true;
  } catch (...) {  // NOLINT(bugprone-empty-catch): the next call tries again; see the header
  }
}

void DropXmlLibraryHold() noexcept {
  try {
    const std::lock_guard<std::mutex> lock(mutex);
    if (isHeld) XmlLibraryGuard::Process().Release();
    isHeld = false;
  } catch (...) {  // NOLINT(bugprone-empty-catch): it stays started
  }
}

}  // namespace qv
