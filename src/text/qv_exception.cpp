#include "qvscriptwells/qv_exception.h"

#include <cstdio>

namespace qv {
namespace {

std::string CodeText(HRESULT code) {
  char digits[11];
  static_cast<void>(std::snprintf(digits, sizeof digits, "0x%08X", static_cast<unsigned>(code)));
  return digits;
}

std::shared_ptr<const std::string> TextOf(const WideString& message, HRESULT code) noexcept {
  try {
    return std::make_shared<const std::string>(message.IsEmpty() ? CodeText(code) : ToUtf8(message));
  } catch (...) {
    return nullptr;
  }
}

}  // namespace

QvException::QvException(const WideString& message, HRESULT code, const char* withoutMemory) noexcept
    : text_(TextOf(message, code)), withoutMemory_(withoutMemory) {}

const char* QvException::what() const noexcept {
  return text_ == nullptr ? withoutMemory_ : text_->c_str();
}

}  // namespace qv
