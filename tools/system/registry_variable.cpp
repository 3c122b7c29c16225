#include "tools/system/registry_variable.h"

#include <cstdlib>

namespace qv::cli {

namespace {

constexpr char kVariable[] = "QV_REGISTRY";

}  // namespace

RegistryVariable::RegistryVariable(const std::string& file) {
  const char* before = std::getenv(kVariable);
  if (before != nullptr) before_ = before;
  ::setenv(kVariable, file.c_str(), 1);
}

RegistryVariable::~RegistryVariable() {
  if (before_)
    ::setenv(kVariable, before_->c_str(), 1);
  else
    ::unsetenv(kVariable);
}

}  // namespace qv::cli
