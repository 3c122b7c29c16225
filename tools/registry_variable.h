// The registry's file of first choice, for a while.
#pragma once

#include <optional>
#include <string>

namespace qv::cli {

// Points QV_REGISTRY to `file` and, when it goes, to what was there before. To be made and destroyed while
// there is no second thread.
class RegistryVariable {
 public:
  explicit RegistryVariable(const std::string& file);
  ~RegistryVariable();
  RegistryVariable(const RegistryVariable&) = delete;
  RegistryVariable& operator=(const RegistryVariable&) = delete;

 private:
  std::optional<std::string> before_;
};

}  // namespace qv::cli
