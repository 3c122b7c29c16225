#include "components/http/target_file.h"

#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdint>
#include <cstdio>

#include "components/http/http_error.h"
#include "components/http/source_file.h"

namespace qv {
namespace {

constexpr const char* kCannotWrite = "Couldn't write file";
constexpr int kMostTries = 16;

std::string DirectoryOf(const std::string& name) {
  const std::size_t slash = name.rfind('/');
  return slash == std::string::npos ? std::string() : name.substr(0, slash + 1);
}

std::string FreshName(const std::string& directory) {
  std::uint64_t random = 0;
  if (getrandom(&random, sizeof(random), 0) != static_cast<ssize_t>(sizeof(random))) random = 0;
  char text[32];
  static_cast<void>(
      std::snprintf(text, sizeof(text), ".%016llx.part", static_cast<unsigned long long>(random)));
  return directory + text;
}

void RefuseSpecial(const std::string& name) {
  struct stat facts {};
  if (lstat(name.c_str(), &facts) != 0) return;
  if (S_ISDIR(facts.st_mode)) ThrowFile(EISDIR, HTTP_E_WRITE_FAULT, kCannotWrite, name);
  if (!S_ISREG(facts.st_mode) && !S_ISLNK(facts.st_mode))
    throw HttpFailure(HTTP_E_WRITE_FAULT, "Couldn't write file " + name + ": Not a regular file");
}

}  // namespace

TargetFile::TargetFile(const WideString& path) : name_(NativeFileName(path)) {
  RefuseSpecial(name_);
  const std::string directory = DirectoryOf(name_);
  for (int i = 0; i < kMostTries && !file_.IsOpen(); ++i) {
    std::string fresh = FreshName(directory);
    file_ = UniqueDescriptor(open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
    if (file_.IsOpen()) freshName_ = std::move(fresh);
    if (!file_.IsOpen() && errno != EEXIST) break;
  }
  if (!file_.IsOpen()) ThrowFile(errno, HTTP_E_WRITE_FAULT, kCannotWrite, name_);
}

TargetFile::~TargetFile() {
  if (!freshName_.empty()) unlink(freshName_.c_str());
}

void TargetFile::Write(std::string_view bytes) {
  while (!bytes.empty()) {
    const ssize_t written = write(file_.Get(), bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) ThrowFile(errno, HTTP_E_WRITE_FAULT, kCannotWrite, name_);
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
}

void TargetFile::Commit() {
  if (close(file_.Release()) != 0 && errno != EINTR)
    ThrowFile(errno, HTTP_E_WRITE_FAULT, kCannotWrite, name_);
  if (std::rename(freshName_.c_str(), name_.c_str()) != 0)
    ThrowFile(errno, HTTP_E_WRITE_FAULT, kCannotWrite, name_);
  freshName_.clear();
}

}  // namespace qv
