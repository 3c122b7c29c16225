#include "tools/service/private_home.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <system_error>
#include <vector>

#include "tools/report/failure.h"
#include "tools/service/home_directory.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

constexpr std::size_t kLongestPath = 256;
constexpr std::size_t kMostPaths = 4;

// What a signal handler removes, in this order: files, then directories. Empty texts are unused.
char g_paths[kMostPaths][kLongestPath];

void RemoveAtOnce() {
  for (const auto& path : g_paths)
    if (path[0] != '\0' && unlink(path) != 0) rmdir(path);
}

void Keep(char (&slot)[kLongestPath], const std::string& path) {
  if (path.size() < kLongestPath) slot[path.copy(slot, path.size())] = '\0';
}

std::vector<std::string> Places() {
  std::vector<std::string> places;
  for (const char* name : {"TEMP", "TMP"}) {
    const char* value = std::getenv(name);
    if (value != nullptr && value[0] == '/') places.emplace_back(value);
  }
  places.emplace_back("/tmp");
  return places;
}

// Empty if that fails, or if the library could not open scripts below it.
std::string MakeIn(const std::string& place) {
  std::string path = place + "/scriptwells-XXXXXX";
  try {
    CheckHomePath(path);
  } catch (const Failure&) {
    return "";
  }
  return ::mkdtemp(path.data()) != nullptr ? path : "";
}

}  // namespace

PrivateHome::PrivateHome() {
  for (const std::string& place : Places())
    if (path_.empty()) path_ = MakeIn(place);
  if (path_.empty()) throw Failure(ExitStatus::kLocal, "cannot make a temporary directory");
  try {
    Fill();
  } catch (...) {
    Remove();
    throw;
  }
}

PrivateHome::~PrivateHome() {
  Remove();
}

void PrivateHome::Fill() {
  const std::vector<std::string> scripts = UploadScripts(path_);
  Keep(g_paths[0], scripts[0]);
  Keep(g_paths[1], scripts[1]);
  Keep(g_paths[2], std::filesystem::path(scripts[0]).parent_path().string());
  Keep(g_paths[3], path_);
  OnForcedExit(&RemoveAtOnce);
  InstallMissingScripts(path_);
}

void PrivateHome::Remove() noexcept {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
  OnForcedExit(nullptr);
}

}  // namespace qv::cli
