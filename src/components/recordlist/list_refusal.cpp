#include "components/recordlist/list_refusal.h"

#include <cstdio>
#include <cstring>

#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

[[noreturn]] void Throw(HRESULT code, const char* words) {
  ListRefusal refusal{code, {}};
  static_cast<void>(std::snprintf(refusal.words, sizeof refusal.words, "%s", words));
  throw ListRefusal(refusal);
}

WideString Widened(const char* words) {
  char16_t units[sizeof ListRefusal::words];
  std::size_t length = 0;
  for (; words[length] != '\0'; ++length) units[length] = static_cast<unsigned char>(words[length]);
  return std::u16string_view(units, length);
}

// Words may run out of memory themselves; then the record has none.
HRESULT Post(HRESULT code, const char* words) noexcept {
  ErrorInfo info;
  try {
    info.description = Widened(words);
  } catch (...) {
    info.description = WideString();
  }
  SetErrorInfo(info);
  return code;
}

}  // namespace

void ThrowLocked(const char* words) {
  Throw(E_ACCESSDENIED, words);
}

void ThrowNoColumn(std::int32_t index, std::size_t count) {
  ListRefusal refusal{DISP_E_BADINDEX, {}};
  static_cast<void>(std::snprintf(refusal.words, sizeof refusal.words,
                                  "There is no column %ld; the list has %zu.", static_cast<long>(index),
                                  count));
  throw ListRefusal(refusal);
}

void ThrowNoMoreRecords() {
  Throw(DISP_E_BADINDEX, "There are no more records.");
}

void ThrowBadTag(VARTYPE tag) {
  ListRefusal refusal{DISP_E_BADVARTYPE, {}};
  static_cast<void>(std::snprintf(refusal.words, sizeof refusal.words, "A value of tag %u cannot be stored.",
                                  static_cast<unsigned>(tag)));
  throw ListRefusal(refusal);
}

void CheckPlace(const void* place) {
  if (place == nullptr) Throw(E_POINTER, "There is no place for the answer.");
}

HRESULT ReportListFailure() noexcept {
  try {
    throw;
  } catch (const ListRefusal& refusal) {
    return Post(refusal.code, refusal.words);
  } catch (...) {
    return Post(E_OUTOFMEMORY, "There is not enough memory.");
  }
}

}  // namespace qv
