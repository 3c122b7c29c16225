#include "qvscriptwells/error_info.h"

#include <optional>

#include "platform/module_hooks.h"

namespace qv {
namespace {

std::optional<ErrorInfo>& Waiting() noexcept {
  static thread_local std::optional<ErrorInfo> record;
  return record;
}

}  // namespace

void SetErrorInfo(const ErrorInfo& info) noexcept {
  if (const ModuleHooks* const host = Host()) return host->setErrorInfo(info);
  Waiting() = info;
}

bool GetErrorInfo(ErrorInfo* info) noexcept {
  if (const ModuleHooks* const host = Host()) return host->getErrorInfo(info);
  if (!Waiting().has_value()) return false;
  *info = *Waiting();
  Waiting().reset();
  return true;
}

void ClearErrorInfo() noexcept {
  if (const ModuleHooks* const host = Host()) return host->clearErrorInfo();
  Waiting().reset();
}

}  // namespace qv
