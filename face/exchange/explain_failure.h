// Turns a failed call of the library below into an Error.
#pragma once

#include <string>

#include "face/exchange/call_settings.h"
#include "face/exchange/exchange_record.h"
#include "qvscriptwells/com_error.h"

namespace scriptwells {

struct FailedCall {
  Purpose purpose;  // of the call; that of its last exchange may be another
  const CallSettings& settings;
  const ExchangeRecord& last;   // of the last exchange; as it was made if there was none
  std::string refusedUpload{};  // CallTap::RefusedUpload
  std::string document{};       // the file of a script document; empty for none
};

// Throws the Error for `error`, or std::bad_alloc for lack of memory.
[[noreturn]] void ThrowExplained(const FailedCall& call, const qv::_com_error& error);

// Whether the failure is one of reaching the server.
bool CouldNotConnect(const ExchangeRecord& record) noexcept;

}  // namespace scriptwells
