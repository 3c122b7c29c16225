#include "system/regular_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace qv {
namespace {

constexpr std::size_t kPieceBytes = std::size_t{64} * 1024;

int OpenForReading(const std::string& path) noexcept {
  int descriptor = -1;
  do {
    descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
  } while (descriptor < 0 && errno == EINTR);
  return descriptor;
}

int Inspect(int descriptor, std::int64_t& size) noexcept {
  struct stat facts {};
  if (fstat(descriptor, &facts) != 0) return errno;
  size = facts.st_size;
  return S_ISREG(facts.st_mode) ? 0 : kNotRegular;
}

}  // namespace

RegularFile OpenRegularFile(const std::string& path) {
  RegularFile file{UniqueDescriptor(OpenForReading(path)), 0, 0};
  file.error = file.descriptor.IsOpen() ? Inspect(file.descriptor.Get(), file.size) : errno;
  return file;
}

int ReadToEnd(int descriptor, std::size_t most, std::string& bytes) {
  std::vector<char> piece(kPieceBytes);
  while (bytes.size() <= most) {
    const ssize_t got = read(descriptor, piece.data(), piece.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return errno;
    if (got == 0) return 0;
    bytes.append(piece.data(), static_cast<std::size_t>(got));
  }
  return 0;
}

}  // namespace qv
