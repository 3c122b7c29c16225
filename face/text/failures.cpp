#include "face/text/failures.h"

#include <cstdio>
#include <new>

#include "qvscriptwells/result_codes.h"

namespace scriptwells {

void RefuseConversion(const std::string& reason) {
  throw ConversionError(Phase::kConversion, reason);
}

std::string MessageOf(const qv::_com_error& error) {
  std::string message = qv::ToUtf8(error.Description());
  if (!message.empty()) return message;
  char code[32];
  static_cast<void>(std::snprintf(code, sizeof code, "failure 0x%08X", static_cast<unsigned>(error.Error())));
  return code;
}

void ThrowFailure(Phase phase, const qv::_com_error& error) {
  if (error.Error() == qv::E_OUTOFMEMORY) throw std::bad_alloc();
  ErrorDetails details;
  details.result = static_cast<std::uint32_t>(error.Error());
  details.text = qv::ToUtf8(error.Description());
  throw Error(phase, MessageOf(error), std::move(details));
}

}  // namespace scriptwells
