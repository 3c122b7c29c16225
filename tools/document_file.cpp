#include "tools/document_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utf8.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "tools/failure.h"

namespace qv::cli {

namespace {

constexpr off_t kLongestDocument = off_t{64} << 20;

[[noreturn]] void Refuse(const std::string& reason) {
  throw Failure(ExitStatus::kLocal, reason);
}

[[noreturn]] void RefuseRead(const std::string& file, const char* reason) {
  Refuse("cannot read the script document " + file + ": " + reason);
}

std::string AbsolutePath(const std::string& file) {
  std::error_code error;
  const std::filesystem::path path = std::filesystem::absolute(file, error);
  if (error) RefuseRead(file, error.message().c_str());
  return path.string();
}

// The library takes these for parts of a URL, or for another name's separator.
void CheckPath(const std::string& path) {
  if (!utf8::is_valid(path.begin(), path.end())) Refuse("the script document's path is not valid UTF-8");
  if (path.find_first_of("#?\\") != std::string::npos)
    Refuse("the script document's path " + path +
           " holds '#', '?' or '\\', which the library cannot open; rename or copy it");
}

// Opens the file as the library will, since the modes of a file do not tell all. A pipe is not waited for.
struct stat Examine(const std::string& file) {
  const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor < 0) RefuseRead(file, std::strerror(errno));
  struct stat facts = {};
  const int result = ::fstat(descriptor, &facts);
  const int error = errno;
  ::close(descriptor);
  if (result != 0) RefuseRead(file, std::strerror(error));
  return facts;
}

}  // namespace

std::string CheckDocument(const std::string& file) {
  if (file.find('\0') != std::string::npos) RefuseRead(file, std::strerror(ENOENT));
  const std::string path = AbsolutePath(file);
  CheckPath(path);
  const struct stat facts = Examine(file);
  if (S_ISDIR(facts.st_mode)) RefuseRead(file, std::strerror(EISDIR));
  if (!S_ISREG(facts.st_mode)) RefuseRead(file, "Not a regular file");
  if (facts.st_size == 0) Refuse("the script document " + file + " is empty");
  if (facts.st_size > kLongestDocument) Refuse("the script document " + file + " is longer than 64 MB");
  return "file:///" + path;
}

bool LooksLikeDocument(const std::string& script) {
  constexpr char kBlanks[] = " \t\r\n";
  std::size_t start = script.find_first_not_of(kBlanks);
  if (start != std::string::npos && script.compare(start, 5, "<?xml") == 0) {
    const std::size_t end = script.find("?>", start);
    start = end == std::string::npos ? end : script.find_first_not_of(kBlanks, end + 2);
  }
  return start != std::string::npos && script.compare(start, 11, "<Scriptwell") == 0;
}

}  // namespace qv::cli
