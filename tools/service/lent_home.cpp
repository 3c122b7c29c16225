#include "tools/service/lent_home.h"

#include <filesystem>
#include <system_error>

#include "tools/service/home_directory.h"
#include "tools/system/registry_variable.h"

namespace qv::cli {

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
