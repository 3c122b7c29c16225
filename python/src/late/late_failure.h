// Failures of late-bound calls, and how they become scriptwells.DispatchError.
#pragma once

#include <optional>
#include <string_view>

#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/result_codes.h"

namespace scriptwells::late {

constexpr qv::HRESULT kWrongThread = qv::MakeResult(0x8001010E);

struct LateFailure {
  qv::HRESULT code;
  qv::WideString message;  // for people
  qv::WideString source{};
  qv::WideString description{};
  std::optional<std::size_t> argument{};  // in the order of the call, from 1
};

// The failure of a member, from its exception record or, if that has no text, from its code.
LateFailure FailureOf(std::string_view member, qv::HRESULT code, const qv::EXCEPINFO& record,
                      std::optional<std::size_t> argument);
// The failure of another operation, with the thread's error record, which is taken.
LateFailure FailureOf(std::string_view what, qv::HRESULT code);

// For this module.
void TranslateFailures();

}  // namespace scriptwells::late
