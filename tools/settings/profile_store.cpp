#include "tools/settings/profile_store.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "tools/report/failure.h"
#include "tools/system/replaced_file.h"

namespace qv::cli {

namespace {

constexpr std::size_t kLongestFile = std::size_t{1} << 20;
constexpr char kName[] = "/scriptwells/config.toml";

std::string AbsoluteVariable(const char* name) {
  const char* value = std::getenv(name);
  return value != nullptr && *value == '/' ? value : "";
}

[[noreturn]] void Refuse(const std::string& path, const std::string& reason) {
  throw Failure(ExitStatus::kLocal, "cannot read the profiles " + path + ": " + reason);
}

class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int Number() const { return number_; }

 private:
  int number_;
};

// As ssh treats its own file.
void CheckFacts(const std::string& path, int file) {
  struct stat facts = {};
  if (::fstat(file, &facts) != 0) Refuse(path, std::strerror(errno));
  if (S_ISDIR(facts.st_mode)) Refuse(path, std::strerror(EISDIR));
  if (!S_ISREG(facts.st_mode)) Refuse(path, "Not a regular file");
  if (facts.st_uid != 0 && facts.st_uid != ::geteuid()) Refuse(path, "It belongs to another user");
  if ((facts.st_mode & (S_IWGRP | S_IWOTH)) != 0)
    Refuse(path, "Others can write to it, and its commands are run; change that with chmod go-w");
}

std::string ReadAll(const std::string& path, int file) {
  std::string text;
  char bytes[16384];
  for (;;) {
    const ssize_t count = ::read(file, bytes, sizeof bytes);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) Refuse(path, std::strerror(errno));
    if (count == 0) return text;
    text.append(bytes, static_cast<std::size_t>(count));
    if (text.size() > kLongestFile) Refuse(path, "It is longer than 1 MB");
  }
}

}  // namespace

std::string ProfilePath() {
  const std::string config = AbsoluteVariable("XDG_CONFIG_HOME");
  if (!config.empty()) return config + kName;
  const std::string home = AbsoluteVariable("HOME");
  return home.empty() ? "" : home + "/.config" + kName;
}

std::string RequireProfilePath() {
  std::string path = ProfilePath();
  if (path.empty())
    throw Failure(ExitStatus::kLocal,
                  "there is no place for profiles: neither XDG_CONFIG_HOME nor HOME is an absolute path");
  return path;
}

std::string ReadProfileText(const std::string& path) {
  const Descriptor file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (file.Number() < 0 && (errno == ENOENT || errno == ENOTDIR)) return "";
  if (file.Number() < 0) Refuse(path, std::strerror(errno));
  CheckFacts(path, file.Number());
  return ReadAll(path, file.Number());
}

ProfileFile ReadProfiles() {
  const std::string path = ProfilePath();
  if (path.empty()) return {};
  const std::string text = ReadProfileText(path);
  if (!text.empty()) return ParseProfiles(path, text);
  ProfileFile none;
  none.path = path;
  return none;
}

void WriteProfileText(const std::string& path, const std::string& text) {
  if (text.size() > kLongestFile)
    throw Failure(ExitStatus::kLocal, "cannot write " + path + ": It would be longer than 1 MB");
  MakeParentDirectories(path);
  ReplaceFile(path, text);
}

}  // namespace qv::cli
