#include "components/recordlist/list_refusal.h"

#include <cstdio>

#include "com/error_message.h"

namespace qv {
namespace {

[[noreturn]] void Throw(HRESULT code, const char* message) {
  ListRefusal refusal{code, {}};
  static_cast<void>(std::snprintf(refusal.message, sizeof refusal.message, "%s", message));
  throw ListRefusal(refusal);
}

}  // namespace

void ThrowLocked(const char* message) {
  Throw(E_ACCESSDENIED, message);
}

void ThrowNoColumn(std::int32_t index, std::size_t count) {
  ListRefusal refusal{DISP_E_BADINDEX, {}};
  static_cast<void>(std::snprintf(refusal.message, sizeof refusal.message,
                                  "There is no column %ld; the list has %zu.", static_cast<long>(index),
                                  count));
  throw ListRefusal(refusal);
}

void ThrowNoMoreRecords() {
  Throw(DISP_E_BADINDEX, "There are no more records.");
}

void ThrowBadTag(VARTYPE tag) {
  ListRefusal refusal{DISP_E_BADVARTYPE, {}};
  static_cast<void>(std::snprintf(refusal.message, sizeof refusal.message,
                                  "A value of tag %u cannot be stored.", static_cast<unsigned>(tag)));
  throw ListRefusal(refusal);
}

void CheckPlace(const void* place) {
  if (place == nullptr) Throw(E_POINTER, "There is no place for the answer.");
}

HRESULT ReportListFailure() noexcept {
  try {
    throw;
  } catch (const ListRefusal& refusal) {
    PostErrorMessage(refusal.message);
    return refusal.code;
  } catch (...) {
    PostErrorMessage("There is not enough memory.");
    return E_OUTOFMEMORY;
  }
}

}  // namespace qv
