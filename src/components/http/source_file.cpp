#include "components/http/source_file.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>

#include "components/http/http_error.h"
#include "qvscriptwells/native_path.h"

namespace qv {
namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} * 1024;
constexpr const char* kCannotOpen = "Couldn't open file";
constexpr const char* kCannotRead = "Couldn't read file";

// Not blocking, so that a pipe without a writer does not hold the caller up before it is refused.
UniqueDescriptor OpenForReading(const std::string& name) {
  UniqueDescriptor file(open(name.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  if (!file.IsOpen()) ThrowFile(errno, HTTP_E_READ_FAULT, kCannotOpen, name);
  return file;
}

std::int64_t RegularSize(int file, const std::string& name) {
  struct stat facts {};
  if (fstat(file, &facts) != 0) ThrowFile(errno, HTTP_E_READ_FAULT, kCannotOpen, name);
  if (!S_ISREG(facts.st_mode))
    throw HttpFailure(HTTP_E_READ_FAULT, "Couldn't open file " + name + ": Not a regular file");
  return facts.st_size;
}

}  // namespace

std::string NativeFileName(const WideString& path) {
  std::string name = NativePath(path);
  if (name.empty() || name.find('\0') != std::string::npos)
    ThrowBadArgument("The path of a file is empty or holds a NUL");
  return name;
}

SourceFile::SourceFile(const WideString& path)
    : name_(NativeFileName(path)),
      file_(OpenForReading(name_)),
      size_(RegularSize(file_.Get(), name_)),
      left_(size_),
      buffer_(kPieceBytes) {}

std::string_view SourceFile::Next() {
  if (left_ == 0) return {};
  const std::size_t want = static_cast<std::size_t>(std::min<std::int64_t>(left_, kPieceBytes));
  ssize_t got = 0;
  do {
    got = read(file_.Get(), buffer_.data(), want);
  } while (got < 0 && errno == EINTR);
  if (got < 0) ThrowFile(errno, HTTP_E_READ_FAULT, kCannotRead, name_);
  if (got == 0)
    throw HttpFailure(HTTP_E_READ_FAULT, "Couldn't read file " + name_ + ": It has become shorter");
  left_ -= got;
  return {buffer_.data(), static_cast<std::size_t>(got)};
}

}  // namespace qv
