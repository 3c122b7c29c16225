#include "tools/prompt/history_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utf8.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "tools/shell/history_text.h"

namespace qv::cli {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMostEntries = 1000;
constexpr std::uintmax_t kLongestFile = std::uintmax_t{16} << 20;

std::string Variable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// Of its owner only, also if it was there before. -1 if that is not possible.
int OpenedForOwner(const std::string& path, int flags) {
  const int descriptor =
      ::open(path.c_str(), flags | O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600);
  struct stat facts = {};
  if (descriptor < 0) return -1;
  if (::fstat(descriptor, &facts) == 0 && S_ISREG(facts.st_mode) && facts.st_uid == ::geteuid() &&
      ::fchmod(descriptor, 0600) == 0)
    return descriptor;
  ::close(descriptor);
  return -1;
}

bool Append(int descriptor, const std::string& text) {
  if (descriptor < 0) return false;
  const bool written = ::write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  return ::close(descriptor) == 0 && written;
}

}  // namespace

std::string UsualHistoryFile() {
  const std::string state = Variable("XDG_STATE_HOME");
  const std::string home = Variable("HOME");
  if (!state.empty() && state.front() == '/') return state + "/scriptwells/history";
  return home.empty() ? "" : home + "/.local/state/scriptwells/history";
}

std::vector<std::string> HistoryFile::Load() const {
  std::error_code error;
  if (path_.empty() || !fs::is_regular_file(path_, error) || fs::file_size(path_, error) > kLongestFile)
    return {};
  std::ifstream file(path_);
  std::vector<std::string> entries;
  for (std::string line; std::getline(file, line);)
    if (!line.empty() && utf8::is_valid(line.begin(), line.end())) entries.push_back(EntryOf(line));
  if (entries.size() <= kMostEntries) return entries;
  const bool isLong = entries.size() > 2 * kMostEntries;
  entries.erase(entries.begin(), entries.end() - kMostEntries);
  if (isLong) Replace(entries);
  return entries;
}

void HistoryFile::Add(const std::string& entry) const {
  if (path_.empty()) return;
  const fs::path folder = fs::path(path_).parent_path();
  std::error_code ignored;
  const bool isNew = fs::create_directories(folder, ignored);
  if (isNew) fs::permissions(folder, fs::perms::owner_all, ignored);
  Append(OpenedForOwner(path_, O_APPEND), HistoryLine(entry) + "\n");
}

void HistoryFile::Remove(const std::function<bool(const std::string&)>& isUnwanted) const {
  std::vector<std::string> entries = Load();
  const auto wanted = std::remove_if(entries.begin(), entries.end(), isUnwanted);
  if (wanted == entries.end()) return;
  entries.erase(wanted, entries.end());
  Replace(entries);
}

void HistoryFile::Replace(const std::vector<std::string>& entries) const {
  std::string text;
  for (const std::string& entry : entries) text += HistoryLine(entry) + "\n";
  const std::string fresh = path_ + "." + std::to_string(::getpid());
  std::error_code ignored;
  if (Append(OpenedForOwner(fresh, O_EXCL), text))
    fs::rename(fresh, path_, ignored);
  else
    fs::remove(fresh, ignored);
}

}  // namespace qv::cli
