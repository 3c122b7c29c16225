// A temporary value of QV_REGISTRY, which names the first file of the registry.
#pragma once

#include <optional>
#include <string>

namespace qv::cli {

// Sets QV_REGISTRY to `file` and restores its former value at the end. To be created and destroyed while
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
