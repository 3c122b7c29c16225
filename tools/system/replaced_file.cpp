#include "tools/system/replaced_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "tools/report/failure.h"

namespace qv::cli {

namespace {

[[noreturn]] void Refuse(const std::string& path, int error) {
  throw Failure(ExitStatus::kLocal, "cannot write " + path + ": " + std::strerror(error));
}

bool Exists(const std::string& path) {
  struct stat facts = {};
  return ::lstat(path.c_str(), &facts) == 0;
}

// Also refuses a link to a missing file, whose place may be wanted elsewhere.
std::string TargetOf(const std::string& path) {
  const std::unique_ptr<char, void (*)(void*)> real(::realpath(path.c_str(), nullptr), std::free);
  if (real != nullptr) return real.get();
  const int error = errno;
  if (error == ENOENT && !Exists(path)) return path;
  Refuse(path, error);
}

// A new file beside the target. The destructor removes it unless it became the target.
class FreshFile {
 public:
  explicit FreshFile(const std::string& target)
      : target_(target), name_(target + ".XXXXXX"), file_(::mkostemp(name_.data(), O_CLOEXEC)) {
    if (file_ < 0) Refuse(target_, errno);
  }
  ~FreshFile() {
    ::close(file_);
    if (!isDone_) ::unlink(name_.c_str());
  }
  FreshFile(const FreshFile&) = delete;
  FreshFile& operator=(const FreshFile&) = delete;

  void KeepOwner(const struct stat& old) const {
    if (::geteuid() == 0 && ::fchown(file_, old.st_uid, old.st_gid) != 0) Refuse(target_, errno);
  }
  void Write(const std::string& bytes) const {
    for (std::size_t done = 0; done < bytes.size();) {
      const ssize_t count = ::write(file_, bytes.data() + done, bytes.size() - done);
      if (count < 0 && errno != EINTR) Refuse(target_, errno);
      if (count > 0) done += static_cast<std::size_t>(count);
    }
    if (::fsync(file_) != 0) Refuse(target_, errno);
  }
  void Commit() {
    if (std::rename(name_.c_str(), target_.c_str()) != 0) Refuse(target_, errno);
    isDone_ = true;
  }

 private:
  std::string target_;
  std::string name_;
  int file_;
  bool isDone_ = false;
};

void MakeDirectory(const std::string& directory) {
  if (!directory.empty() && ::mkdir(directory.c_str(), S_IRWXU) != 0 && errno != EEXIST)
    Refuse(directory, errno);
}

std::string ParentOf(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

}  // namespace

void ReplaceFile(const std::string& path, const std::string& bytes) {
  const std::string target = TargetOf(path);
  struct stat facts = {};
  const bool exists = ::stat(target.c_str(), &facts) == 0;
  if (exists && ::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) Refuse(path, errno);
  FreshFile fresh(target);
  if (exists) fresh.KeepOwner(facts);
  fresh.Write(bytes);
  fresh.Commit();
}

void MakeParentDirectories(const std::string& path) {
  const std::string directory = ParentOf(path);
  MakeDirectory(ParentOf(directory));
  MakeDirectory(directory);
}

}  // namespace qv::cli
