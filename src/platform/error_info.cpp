#include "qvscriptwells/error_info.h"

#include <optional>

namespace qv {
namespace {

std::optional<ErrorInfo>& Waiting() noexcept {
  static thread_local std::optional<ErrorInfo> record;
  return record;
}

}  // namespace

void SetErrorInfo(const ErrorInfo& info) noexcept {
  Waiting() = info;
}

bool GetErrorInfo(ErrorInfo* info) noexcept {
  if (!Waiting().has_value()) return false;
  *info = *Waiting();
  Waiting().reset();
  return true;
}

void ClearErrorInfo() noexcept {
  Waiting().reset();
}

}  // namespace qv
