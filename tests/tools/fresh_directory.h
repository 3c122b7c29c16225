// A directory of a test's own.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

namespace qv::cli::testing {

// Made empty; goes with all that it holds.
class FreshDirectory {
 public:
  FreshDirectory() {
    std::string pattern = std::filesystem::temp_directory_path().string() + "/scriptwells-test-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) std::abort();
    path_ = pattern;
  }
  ~FreshDirectory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  FreshDirectory(const FreshDirectory&) = delete;
  FreshDirectory& operator=(const FreshDirectory&) = delete;

  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

}  // namespace qv::cli::testing
