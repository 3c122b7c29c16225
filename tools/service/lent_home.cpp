#include "tools/service/lent_home.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "tools/service/home_directory.h"

namespace qv::cli {

LentHome::LentHome(const std::string& home) : registry_(home + "/serve.reg") {
  InstallMissingScripts(home);
  ::setenv("QV_REGISTRY", registry_.c_str(), 1);  // names the first file of the registry, which is written
  SetHomeDirectory(home);
}

LentHome::~LentHome() {
  std::error_code ignored;
  std::filesystem::remove(registry_, ignored);
}

}  // namespace qv::cli
