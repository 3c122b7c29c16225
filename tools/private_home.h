// A home directory for this process alone, so that it can upload files to a service of its own whatever is
// installed on the machine.
#pragma once

#include <optional>
#include <string>

#include "tools/registry_variable.h"

namespace qv::cli {

// Makes a directory that nobody else may enter, with the upload scripts and a registry that names it, and
// points QV_REGISTRY there. All goes with the object, also when an interrupt ends the program at once. One at
// a time; to be made and destroyed while there is no second thread. Throws Failure (kLocal).
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
