// A temporary home directory, so that this process can upload files to its own service on any machine.
#pragma once

#include <string>

namespace qv::cli {

// Creates a directory that nobody else may enter, with the upload scripts. Destruction removes everything,
// and so does an interrupt that ends the program at once. One object at a time. Throws Failure (kLocal).
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
};

}  // namespace qv::cli
