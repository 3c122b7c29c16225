#include "devservice/files/spool.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <stdexcept>

namespace qv::devservice {
namespace {

namespace fs = std::filesystem;

constexpr char kPrefix[] = "scriptwells-files-";

[[noreturn]] void ThrowSystem(const std::string& path, int error) {
  throw std::runtime_error("Cannot make a directory for files, \"" + path + "\": " + std::strerror(error) +
                           ".");
}

fs::path TemporaryDirectory() {
  std::error_code error;
  const fs::path directory = fs::temp_directory_path(error);
  return error ? fs::path("/tmp") : directory;
}

// The open directory; -1 when it is not a directory, belongs to another user, or is locked by another
// process.
int LockDirectory(const char* path) {
  const int directory = open(path, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  if (directory < 0) return -1;
  struct stat info;
  if (fstat(directory, &info) == 0 && info.st_uid == geteuid() && flock(directory, LOCK_EX | LOCK_NB) == 0)
    return directory;
  close(directory);
  return -1;
}

// A service that was killed could not remove its directory, but holds no lock any more.
void RemoveAbandoned(const fs::path& parent) {
  std::error_code ignored;
  for (fs::directory_iterator entry(parent, ignored), end; entry != end; entry.increment(ignored)) {
    if (entry->path().filename().string().rfind(kPrefix, 0) != 0) continue;
    const int lock = LockDirectory(entry->path().c_str());
    if (lock < 0) continue;
    fs::remove_all(entry->path(), ignored);
    close(lock);
  }
}

}  // namespace

std::string NumberedPath(const std::string& path, std::size_t number) {
  return path + "." + std::to_string(number);
}

int StatusOfWriteError(int error) {
  return error == ENOSPC || error == EDQUOT || error == EFBIG ? 507 : 500;
}

SpoolWriter::SpoolWriter(std::string path) : path_(std::move(path)) {
  descriptor_ = open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
  if (descriptor_ < 0) error_ = errno;
}

SpoolWriter::~SpoolWriter() {
  if (descriptor_ >= 0) close(descriptor_);
  if (!path_.empty()) unlink(path_.c_str());
}

bool SpoolWriter::Write(const char* bytes, std::size_t count) {
  while (error_ == 0 && count > 0) {
    const ssize_t written = write(descriptor_, bytes, count);
    if (written < 0) {
      if (errno != EINTR) error_ = errno;
      continue;
    }
    bytes += written;
    count -= static_cast<std::size_t>(written);
    size_ += static_cast<std::uint64_t>(written);
  }
  return error_ == 0;
}

bool SpoolWriter::Close() {
  // Some file systems report only now that there was no room.
  if (descriptor_ >= 0 && close(descriptor_) != 0 && errno != EINTR && error_ == 0) error_ = errno;
  descriptor_ = -1;
  return error_ == 0;
}

std::shared_ptr<const SpooledFile> SpoolWriter::TakeFile() {
  auto file = std::make_shared<const SpooledFile>(path_, size_);
  path_.clear();
  return file;
}

SpoolDirectory::SpoolDirectory() {
  const fs::path parent = TemporaryDirectory();
  RemoveAbandoned(parent);
  // Locked before it has its name, so that no other service takes it for an abandoned one.
  std::string fresh = (parent / ".scriptwells-XXXXXX").string();
  if (!mkdtemp(fresh.data())) ThrowSystem(fresh, errno);
  lock_ = LockDirectory(fresh.c_str());
  path_ = (parent / (kPrefix + fresh.substr(fresh.size() - 6))).string();
  if (lock_ >= 0 && rename(fresh.c_str(), path_.c_str()) == 0) return;
  const int error = errno;
  if (lock_ >= 0) close(lock_);
  rmdir(fresh.c_str());
  ThrowSystem(path_, error);
}

SpoolDirectory::~SpoolDirectory() {
  std::error_code ignored;
  fs::remove_all(path_, ignored);
  close(lock_);
}

std::string SpoolDirectory::NewPath() {
  return path_ + "/" + std::to_string(++count_);
}

}  // namespace qv::devservice
