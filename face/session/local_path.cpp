#include "face/session/local_path.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utf8.h>

#include <cerrno>
#include <cstdint>
#include <cstring>
#include <system_error>

#include "scriptwells/error.h"

namespace scriptwells {

namespace {

constexpr std::int64_t kLongestDocument = std::int64_t{64} << 20;

[[noreturn]] void Refuse(const std::string& reason) {
  throw Error(Phase::kLocalFile, reason);
}

[[noreturn]] void RefuseRead(const std::string& file, const std::string& what, const std::string& reason) {
  Refuse("cannot read the " + what + " " + file + ": " + reason);
}

[[noreturn]] void RefuseTarget(const std::string& directory, const std::string& reason) {
  Refuse("cannot save into " + directory + ": " + reason);
}

std::string AbsolutePath(const std::filesystem::path& file, const std::string& what) {
  const std::string& name = file.native();
  if (name.empty()) Refuse("the " + what + " has no name");
  if (name.find('\0') != std::string::npos) RefuseRead(name, what, std::strerror(ENOENT));
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(file, error);
  if (error) RefuseRead(name, what, error.message());
  return path.native();
}

// Opens the file as the library will, since its mode alone does not show every obstacle. Does not wait for a
// pipe.
struct stat Examine(const std::string& file, const std::string& what) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) RefuseRead(file, what, std::strerror(errno));
  struct stat facts = {};
  const int result = ::fstat(descriptor, &facts);
  const int error = errno;
  ::close(descriptor);
  if (result != 0) RefuseRead(file, what, std::strerror(error));
  return facts;
}

// Returns the file's size.
std::int64_t CheckReadable(const std::string& file, const std::string& what) {
  const struct stat facts = Examine(file, what);
  if (S_ISDIR(facts.st_mode)) RefuseRead(file, what, std::strerror(EISDIR));
  if (!S_ISREG(facts.st_mode)) RefuseRead(file, what, "Not a regular file");
  return facts.st_size;
}

void CheckWritable(const std::string& directory) {
  struct stat facts = {};
  if (::stat(directory.c_str(), &facts) != 0) RefuseTarget(directory, std::strerror(errno));
  if (!S_ISDIR(facts.st_mode)) RefuseTarget(directory, std::strerror(ENOTDIR));
  if (::access(directory.c_str(), W_OK | X_OK) != 0) RefuseTarget(directory, std::strerror(errno));
}

bool IsPlainInUrls(char unit) noexcept {
  const bool isLetter = (unit >= 'a' && unit <= 'z') || (unit >= 'A' && unit <= 'Z');
  return isLetter || (unit >= '0' && unit <= '9') || std::strchr("/-._~", unit) != nullptr;
}

// The path may hold any byte.
std::string FileUrl(const std::string& path) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string url = "file://";
  for (const char unit : path) {
    const auto byte = static_cast<unsigned char>(unit);
    if (IsPlainInUrls(unit))
      url += unit;
    else
      url += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
  }
  return url;
}

}  // namespace

std::string ReadablePath(const std::filesystem::path& file, const char* what) {
  std::string path = AbsolutePath(file, what);
  if (path.find('\\') != std::string::npos)
    Refuse("the path " + path + " holds '\\', which the library takes for '/'; rename or copy the file");
  CheckReadable(path, what);
  return path;
}

std::string DocumentUrl(const std::filesystem::path& file) {
  const std::string path = AbsolutePath(file, "script document");
  const std::int64_t size = CheckReadable(file.native(), "script document");
  if (size == 0) Refuse("the script document " + file.native() + " is empty");
  if (size > kLongestDocument) Refuse("the script document " + file.native() + " is longer than 64 MB");
  return FileUrl(path);
}

std::string TargetDirectory(const std::filesystem::path& directory) {
  std::string path = AbsolutePath(directory.empty() ? "." : directory, "target directory");
  if (!utf8::is_valid(path.begin(), path.end())) Refuse("the target directory's path is not valid UTF-8");
  if (path.find('\\') != std::string::npos)
    RefuseTarget(path, "its path holds '\\', which the library takes for '/'");
  CheckWritable(path);
  if (path.size() > 2 && path.compare(path.size() - 2, 2, "/.") == 0) path.pop_back();
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

}  // namespace scriptwells
