#include "registry/registry_disk.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>

#include "system/regular_file.h"
#include "system/system_error_text.h"

namespace qv {
namespace {

constexpr mode_t kNewFileMode = 0644;
constexpr mode_t kModeBits = 07777;

int WriteAll(int file, std::string_view bytes) noexcept {
  while (!bytes.empty()) {
    const ssize_t written = write(file, bytes.data(), bytes.size());
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) return errno;
    bytes.remove_prefix(static_cast<std::size_t>(written));
  }
  return 0;
}

int Flush(int file) noexcept {
  int result = 0;
  do {
    result = fsync(file);
  } while (result != 0 && errno == EINTR);
  return result == 0 ? 0 : errno;
}

// When root writes, the user stays the owner; others cannot change the owner.
bool KeepOwner(int file, const struct stat& old) noexcept {
  return geteuid() != 0 || fchown(file, old.st_uid, old.st_gid) == 0;
}

std::string DirectoryOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string BehindLinks(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), std::free);
  return real != nullptr ? std::string(real.get()) : path;
}

// A new file in the target's directory: Commit renames it to the target; else the destructor removes it.
class FreshFile {
 public:
  explicit FreshFile(const std::string& target)
      : name_(target + ".XXXXXX"), file_(mkostemp(name_.data(), O_CLOEXEC)), openError_(errno) {}
  FreshFile(const FreshFile&) = delete;
  FreshFile& operator=(const FreshFile&) = delete;
  ~FreshFile() {
    if (file_.IsOpen() && !committed_) unlink(name_.c_str());
  }

  int OpenError() const noexcept { return !file_.IsOpen() ? openError_ : 0; }
  // `old` is the replaced file, or null.
  int Fill(std::string_view bytes, const struct stat* old) noexcept {
    const int error = WriteAll(file_.Get(), bytes);
    if (error != 0) return error;
    if (old != nullptr && !KeepOwner(file_.Get(), *old)) return errno;
    const mode_t mode = old != nullptr ? old->st_mode & kModeBits : kNewFileMode;
    return fchmod(file_.Get(), mode) == 0 ? Flush(file_.Get()) : errno;
  }
  int Commit(const std::string& target) noexcept {
    committed_ = std::rename(name_.c_str(), target.c_str()) == 0;
    return committed_ ? 0 : errno;
  }

 private:
  std::string name_;
  UniqueDescriptor file_;
  int openError_;
  bool committed_ = false;
};

// The new file is already in place; syncing makes its name survive a loss of power where possible.
void FlushDirectory(const std::string& directory) noexcept {
  const UniqueDescriptor opened(open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (opened.IsOpen()) Flush(opened.Get());
}

int MakeMissing(const std::string& directory, mode_t mode) noexcept {
  return mkdir(directory.c_str(), mode) == 0 || errno == EEXIST ? 0 : errno;
}

}  // namespace

RegistryBytes ReadRegistryBytes(const std::string& path) {
  RegistryBytes result;
  const RegularFile file = OpenRegularFile(path);
  int error = file.error;
  if (error == ENOENT || error == ENOTDIR) return result;
  if (error == 0) error = ReadToEnd(file.descriptor.Get(), kLongestRegistryFile, result.bytes);
  if (error == ENOMEM) throw std::bad_alloc();
  if (error != 0) result.problem = error == kNotRegular ? "Not a regular file" : SystemErrorText(error);
  if (result.bytes.size() > kLongestRegistryFile) result.problem = "Longer than 1 MiB";
  return result;
}

int ReplaceRegistryBytes(const std::string& path, std::string_view bytes) {
  const std::string target = BehindLinks(path);
  struct stat facts {};
  const bool exists = stat(target.c_str(), &facts) == 0;
  if (exists && faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) return errno;
  FreshFile fresh(target);
  int error = fresh.OpenError();
  if (error == 0) error = fresh.Fill(bytes, exists ? &facts : nullptr);
  if (error == 0) error = fresh.Commit(target);
  if (error == 0) FlushDirectory(DirectoryOf(target));
  return error;
}

int MakeRegistryDirectories(const std::string& path, mode_t mode) {
  const std::string directory = DirectoryOf(path);
  const int error = MakeMissing(DirectoryOf(directory), mode);
  return error != 0 ? error : MakeMissing(directory, mode);
}

}  // namespace qv
