#include "qvscriptwells/e_qv_exception.h"

namespace qv {
namespace {

constexpr char kWithoutMemory[] = "the call of a script service failed";
constexpr std::uint32_t kServerErrorBits = 0x80040000U;

HRESULT MergedCode(HRESULT code) noexcept {
  return code == 0 ? 0 : MakeResult(static_cast<std::uint32_t>(code) | kServerErrorBits);
}

}  // namespace

EQvException::EQvException(const WideString& description, HRESULT code) noexcept
    : QvException(description, MergedCode(code), kWithoutMemory),
      description_(description),
      code_(MergedCode(code)) {}

}  // namespace qv
