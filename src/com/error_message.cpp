#include "com/error_message.h"

#include "qvscriptwells/error_info.h"

namespace qv {

void PostErrorMessage(const WideString& message, const Guid& interfaceId) noexcept {
  ErrorInfo info;
  info.interfaceId = interfaceId;
  info.description = message;
  SetErrorInfo(info);
}

void PostErrorMessage(const char* message, const Guid& interfaceId) noexcept {
  try {
    PostErrorMessage(FromUtf8(message), interfaceId);
  } catch (...) {
    PostErrorMessage(WideString(), interfaceId);
  }
}

}  // namespace qv
