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

void RefuseTaken(const std::string& name, bool replaces) {
  struct stat facts {};
  if (lstat(name.c_str(), &facts) != 0) return;
  if (S_ISDIR(facts.st_mode)) ThrowFile(EISDIR, HTTP_E_WRITE_FAULT, kCannotWrite, name);
  if (!S_ISREG(facts.st_mode) && !S_ISLNK(facts.st_mode))
    throw HttpFailure(HTTP_E_WRITE_FAULT, "Couldn't write file " + name + ": Not a regular file");
  if (!replaces) ThrowFile(EEXIST, HTTP_E_WRITE_FAULT, kCannotWrite, name);
}

// Not every file system can rename so, nor has every one hard links; only without both is there a moment in
// which a file that appears would be lost.
int RenameToFreeName(const char* from, const char* to) noexcept {
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
  if (errno != EINVAL && errno != ENOSYS) return errno;
  if (link(from, to) == 0) return unlink(from) == 0 ? 0 : errno;
  if (errno == EEXIST) return errno;
  struct stat facts {};
  if (lstat(to, &facts) == 0) return EEXIST;
  return std::rename(from, to) == 0 ? 0 : errno;
}

int MakeFile(const std::string& name) noexcept {
  int descriptor = -1;
  do {
    descriptor = open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

// Some file systems have nothing to sync and say so.
bool Sync(int descriptor) noexcept {
  int result = -1;
  do {
    result = fsync(descriptor);
  } while (result != 0 && errno == EINTR);
  return result == 0 || errno == EINVAL || errno == ENOTSUP;
}

// The file is whole and in its place by now, so a directory that cannot be synced is no failure.
void SyncDirectory(const std::string& directory) noexcept {
  const char* name = directory.empty() ? "." : directory.c_str();
  const UniqueDescriptor opened(open(name, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.IsOpen()) static_cast<void>(Sync(opened.Get()));
}

}  // namespace

TargetFile::TargetFile(const WideString& path, bool replaces)
    : name_(NativeFileName(path)), replaces_(replaces) {
  RefuseTaken(name_, replaces_);
  const std::string directory = DirectoryOf(name_);
  for (int i = 0; i < kMostTries && !file_.IsOpen(); ++i) {
    std::string fresh = FreshName(directory);
    file_ = UniqueDescriptor(MakeFile(fresh));
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

// After a crash of the system the old file is there or the new one, whole.
void TargetFile::Commit() {
  const std::string directory = DirectoryOf(name_);  // nothing may fail once the file is in its place
  if (!Sync(file_.Get())) ThrowFile(errno, HTTP_E_WRITE_FAULT, kCannotWrite, name_);
  if (close(file_.Release()) != 0 && errno != EINTR)
    ThrowFile(errno, HTTP_E_WRITE_FAULT, kCannotWrite, name_);
  if (const int error = Rename(); error != 0) ThrowFile(error, HTTP_E_WRITE_FAULT, kCannotWrite, name_);
  freshName_.clear();
  SyncDirectory(directory);
}

int TargetFile::Rename() const noexcept {
  if (!replaces_) return RenameToFreeName(freshName_.c_str(), name_.c_str());
  return std::rename(freshName_.c_str(), name_.c_str()) == 0 ? 0 : errno;
}

}  // namespace qv
