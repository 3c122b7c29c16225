#include "tools/shell/file_names.h"

#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace qv::cli {

namespace {

constexpr std::size_t kMostNames = 1000;

bool Matches(const std::string& name, const std::string& begun) {
  const bool isShown = name.front() != '.' || (!begun.empty() && begun.front() == '.');
  return isShown && name.compare(0, begun.size(), begun) == 0;
}

}  // namespace

std::string WithoutTilde(const std::string& path) {
  const char* home = std::getenv("HOME");
  const bool isBelow = path == "~" || path.compare(0, 2, "~/") == 0;
  return isBelow && home != nullptr ? home + path.substr(1) : path;
}

std::vector<std::string> FileNames(const std::string& begun) {
  namespace fs = std::filesystem;
  const std::string folder = begun.substr(0, begun.rfind('/') + 1);  // also for npos
  const std::string name = begun.substr(folder.size());
  const std::string read = WithoutTilde(folder);
  std::vector<std::string> names;
  std::error_code error;
  fs::directory_iterator entry(read.empty() ? "." : read, error);
  for (; !error && entry != fs::directory_iterator() && names.size() < kMostNames; entry.increment(error)) {
    const std::string found = entry->path().filename();
    std::error_code ignored;
    if (Matches(found, name)) names.push_back(folder + found + (entry->is_directory(ignored) ? "/" : ""));
  }
  return names;
}

}  // namespace qv::cli
