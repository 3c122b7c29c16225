#include "xml/xml_library_start.h"

#include <mutex>
#include <utility>

#include "xml/xml_parts.h"

namespace qv {
namespace {

bool isPutOff = false;
bool isStarted = false;  // what is put off

}  // namespace

void PutOffXmlLibraryStart() noexcept {
  isPutOff = true;
}

void StartXmlLibrary() {
  if (!isPutOff) RequireXmlParts().start();
}

const XmlParts& RequireXmlLibrary() {
  const XmlParts& parts = RequireXmlParts();
  if (!isPutOff) return parts;
  static std::mutex mutex;
  const std::lock_guard<std::mutex> lock(mutex);
  if (!isStarted) parts.start();
  isStarted = true;
  return parts;
}

void StopXmlLibrary() {
  if (isPutOff && !std::exchange(isStarted, false)) return;
  RequireXmlParts().stop();
}

XmlFailure CurrentXmlFailure() noexcept {
  const XmlParts* const parts = PresentXmlParts();
  return parts == nullptr ? XmlFailure() : parts->currentFailure();
}

}  // namespace qv
