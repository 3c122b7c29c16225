// A home directory for this process alone, so that it can upload files to its own service on any machine.
#pragma once

#include <optional>
#include <string>

#include "tools/system/registry_variable.h"

namespace qv::cli {

// Creates a directory that nobody else may enter, with the upload scripts and a registry file that names it,
// and sets QV_REGISTRY. Destruction removes everything, and so does an interrupt that ends the program at
// once. One object at a time; to be created and destroyed while there is no second thread. Throws Failure
// (kLocal).
class PrivateHome {
 public:
  PrivateHome();
  ~PrivateHome();
  PrivateHome(const PrivateHome&) = delete;
  PrivateHome& operator=(const PrivateHome&) = delete;

  const std::string& Path() const noexcept { return path_; }

 private:
  void Fill();
  void Remove() noexcept;

  std::string path_;
  std::optional<RegistryVariable> variable_;
};

}  // namespace qv::cli
