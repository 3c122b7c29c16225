// A home directory for clients on this machine while a service runs.
#pragma once

#include <string>

namespace qv::cli {

// Writes the missing upload scripts into a directory, and a registry file that names it as the home
// directory. Clients use it by setting QV_REGISTRY, which this process does from then on; no settings change.
// Destruction removes the registry file and keeps the scripts. To be created while there is no second thread.
// Throws Failure (kLocal).
class LentHome {
 public:
  // `home` is absolute, and checked by CheckHomePath.
  explicit LentHome(const std::string& home);
  ~LentHome();
  LentHome(const LentHome&) = delete;
  LentHome& operator=(const LentHome&) = delete;

  // The value of QV_REGISTRY for clients.
  const std::string& Registry() const noexcept { return registry_; }

 private:
  std::string registry_;
};

}  // namespace qv::cli
