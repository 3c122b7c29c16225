#include "tools/system/local_files.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utf8.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "tools/report/failure.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

[[noreturn]] void RefuseRead(const std::string& file, const std::string& what, const std::string& reason) {
  throw Failure(ExitStatus::kLocal, "cannot read the " + what + " " + file + ": " + reason);
}

[[noreturn]] void RefuseTarget(const std::string& directory, const std::string& reason) {
  throw Failure(ExitStatus::kLocal, "cannot save into " + directory + ": " + reason);
}

// Opens the file as the library will, since its mode alone does not show every obstacle. Does not wait for a
// pipe.
struct stat Examine(const std::string& file, const std::string& what) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) ThrowIfInterrupted();
  if (descriptor < 0) RefuseRead(file, what, std::strerror(errno));
  struct stat facts = {};
  const int result = ::fstat(descriptor, &facts);
  const int error = errno;
  ::close(descriptor);
  if (result != 0) RefuseRead(file, what, std::strerror(error));
  return facts;
}

void CheckWritable(const std::string& directory) {
  struct stat facts = {};
  if (::stat(directory.c_str(), &facts) != 0) RefuseTarget(directory, std::strerror(errno));
  if (!S_ISDIR(facts.st_mode)) RefuseTarget(directory, std::strerror(ENOTDIR));
  if (::access(directory.c_str(), W_OK | X_OK) != 0) RefuseTarget(directory, std::strerror(errno));
}

}  // namespace

std::string AbsolutePath(const std::string& file, const std::string& what) {
  if (file.empty()) throw Failure(ExitStatus::kLocal, "the " + what + " has no name");
  if (file.find('\0') != std::string::npos) RefuseRead(file, what, std::strerror(ENOENT));
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(file, error);
  if (error) RefuseRead(file, what, error.message());
  return path.string();
}

std::int64_t CheckReadable(const std::string& file, const std::string& what) {
  const struct stat facts = Examine(file, what);
  if (S_ISDIR(facts.st_mode)) RefuseRead(file, what, std::strerror(EISDIR));
  if (!S_ISREG(facts.st_mode)) RefuseRead(file, what, "Not a regular file");
  return facts.st_size;
}

std::string CheckForLibrary(const std::string& file, const std::string& what) {
  std::string path = AbsolutePath(file, what);
  if (path.find('\\') != std::string::npos)
    throw Failure(ExitStatus::kLocal, "the path " + path +
                                          " holds '\\', which the library takes for '/'; rename or copy the "
                                          "file");
  CheckReadable(path, what);
  return path;
}

std::string CheckTargetDirectory(const std::string& directory) {
  std::string path = AbsolutePath(directory.empty() ? "." : directory, "target directory");
  if (!utf8::is_valid(path.begin(), path.end()))
    throw Failure(ExitStatus::kLocal, "the target directory's path is not valid UTF-8");
  if (path.find('\\') != std::string::npos)
    RefuseTarget(path, "its path holds '\\', which the library takes for '/'");
  CheckWritable(path);
  if (path.size() > 2 && path.compare(path.size() - 2, 2, "/.") == 0) path.pop_back();
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

}  // namespace qv::cli
