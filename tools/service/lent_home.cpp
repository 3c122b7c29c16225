#include "tools/service/lent_home.h"

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <system_error>

#include "tools/service/home_directory.h"

namespace qv::cli {

namespace {

constexpr char kVariable[] = "QV_REGISTRY";

// A temporary value of the variable, which names the first file of the registry.
class RegistryVariable {
 public:
  explicit RegistryVariable(const std::string& file) {
    if (const char* before = std::getenv(kVariable)) before_ = before;
    ::setenv(kVariable, file.c_str(), 1);
  }
  ~RegistryVariable() {
    if (before_)
      ::setenv(kVariable, before_->c_str(), 1);
    else
      ::unsetenv(kVariable);
  }
  RegistryVariable(const RegistryVariable&) = delete;
  RegistryVariable& operator=(const RegistryVariable&) = delete;

 private:
  std::optional<std::string> before_;
};

}  // namespace

LentHome::LentHome(const std::string& home) : registry_(home + "/serve.reg") {
  InstallMissingScripts(home);
  const RegistryVariable variable(registry_);
  SetHomeDirectory(home);
}

LentHome::~LentHome() {
  std::error_code ignored;
  std::filesystem::remove(registry_, ignored);
}

}  // namespace qv::cli
