#include "components/http/wire_tap.h"

#include <utility>

namespace qv {
namespace {

[[gnu::tls_model("initial-exec")]] thread_local WireTap* current = nullptr;

}  // namespace

WireTap* ThreadWireTap() noexcept {
  return current;
}

WireTap* SetThreadWireTap(WireTap* tap) noexcept {
  return std::exchange(current, tap);
}

HRESULT TappedFailure(HRESULT code) noexcept {
  if (current != nullptr) current->OnFailure(code);
  return code;
}

}  // namespace qv
