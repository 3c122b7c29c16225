// A home directory for clients on this machine, as long as a service runs.
#pragma once

#include <string>

namespace qv::cli {

// Puts the upload scripts that are missing into a directory, with a registry file that names it as the home
// directory. Clients find it with QV_REGISTRY; nobody's settings change. The registry file goes with the
// object, the scripts stay. To be made and destroyed while there is no second thread. Throws Failure
// (kLocal).
class LentHome {
 public:
  // `home` is absolute, and checked by CheckHomePath.
  explicit LentHome(const std::string& home);
  ~LentHome();
  LentHome(const LentHome&) = delete;
  LentHome& operator=(const LentHome&) = delete;

  // What clients set QV_REGISTRY to.
  const std::string& Registry() const noexcept { return registry_; }

 private:
  std::string registry_;
};

}  // namespace qv::cli
