#include "components/http/source_file.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "components/http/http_error.h"
#include "qvscriptwells/native_path.h"

namespace qv {
namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} * 1024;
constexpr const char* kCannotOpen = "Couldn't open file";
constexpr const char* kCannotRead = "Couldn't read file";

RegularFile Opened(const std::string& name) {
  RegularFile file = OpenRegularFile(name);
  if (file.error == kNotRegular)
    throw HttpFailure(HTTP_E_READ_FAULT, "Couldn't open file " + name + ": Not a regular file");
  if (file.error != 0) ThrowFile(file.error, HTTP_E_READ_FAULT, kCannotOpen, name);
  return file;
}

}  // namespace

std::string NativeFileName(const WideString& path) {
  std::string name = NativePath(path);
  if (name.empty() || name.find('\0') != std::string::npos)
    ThrowBadArgument("The path of a file is empty or holds a NUL");
  return name;
}

SourceFile::SourceFile(const WideString& path)
    : name_(NativeFileName(path)), file_(Opened(name_)), left_(file_.size), buffer_(kPieceBytes) {}

std::string_view SourceFile::Next() {
  if (left_ == 0) return {};
  const std::size_t want = static_cast<std::size_t>(std::min<std::int64_t>(left_, kPieceBytes));
  ssize_t got = 0;
  do {
    got = read(file_.descriptor.Get(), buffer_.data(), want);
  } while (got < 0 && errno == EINTR);
  if (got < 0) ThrowFile(errno, HTTP_E_READ_FAULT, kCannotRead, name_);
  if (got == 0)
    throw HttpFailure(HTTP_E_READ_FAULT, "Couldn't read file " + name_ + ": It has become shorter");
  left_ -= got;
  return {buffer_.data(), static_cast<std::size_t>(got)};
}

}  // namespace qv
