#include "tools/input/input_text.h"

#include <fcntl.h>
#include <unistd.h>
#include <utf8.h>

#include <cerrno>
#include <cstring>

#include "tools/report/failure.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

constexpr std::size_t kLongestFile = std::size_t{64} << 20;
constexpr std::size_t kLongestLine = 4096;

[[noreturn]] void RefuseRead(const std::string& what, const std::string& path, int error) {
  throw Failure(ExitStatus::kLocal, "cannot read the " + what + " " + path + ": " + std::strerror(error));
}

// Does not close standard input.
class InputFile {
 public:
  InputFile(const std::string& path, const std::string& what)
      : name_(path == "-" ? "from standard input" : path), what_(what) {
    descriptor_ = path == "-" ? STDIN_FILENO : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor_ < 0) RefuseRead(what_, name_, errno);
  }
  ~InputFile() {
    if (descriptor_ != STDIN_FILENO) ::close(descriptor_);
  }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  // False at the end.
  bool Append(std::string& text) {
    char bytes[65536];
    const ssize_t count = ReadSome(bytes, sizeof bytes);
    if (count < 0) RefuseRead(what_, name_, errno);
    text.append(bytes, static_cast<std::size_t>(count));
    return count > 0;
  }

  // "from standard input" or the path.
  const std::string& Name() const { return name_; }

 private:
  ssize_t ReadSome(char* bytes, std::size_t room) const {
    for (;;) {
      WaitReadable(descriptor_);
      const ssize_t count = ::read(descriptor_, bytes, room);
      if (count >= 0 || errno != EINTR) return count;
    }
  }

  std::string name_;
  std::string what_;
  int descriptor_ = -1;
};

}  // namespace

std::string ReadWhole(const std::string& path, const std::string& what) {
  InputFile file(path, what);
  std::string text;
  while (file.Append(text))
    if (text.size() > kLongestFile)
      throw Failure(ExitStatus::kLocal, "the " + what + " " + file.Name() + " is longer than 64 MB");
  return text;
}

std::string CheckScript(std::string text) {
  if (text.rfind("\xEF\xBB\xBF", 0) == 0) text.erase(0, 3);
  if (text.empty()) throw Failure(ExitStatus::kLocal, "the script is empty");
  if (!utf8::is_valid(text.begin(), text.end()))
    throw Failure(ExitStatus::kLocal, "the script is not valid UTF-8");
  if (text.find('\0') != std::string::npos)
    throw Failure(ExitStatus::kLocal, "the script holds a null character, which would end it there");
  return text;
}

std::string ReadScript(const std::string& path) {
  return CheckScript(ReadWhole(path, "script"));
}

std::string ReadLine(int descriptor, const std::string& what) {
  std::string line;
  line.reserve(kLongestLine + 1);  // it may be a password: growing would leave copies in memory
  char byte = 0;
  for (;;) {
    WaitReadable(descriptor);
    const ssize_t count = ::read(descriptor, &byte, 1);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) throw Failure(ExitStatus::kLocal, "cannot read the " + what + ": " + std::strerror(errno));
    if (count == 0 || byte == '\n') break;
    line += byte;
    if (line.size() > kLongestLine)
      throw Failure(ExitStatus::kLocal, "the " + what + " is longer than 4096 bytes");
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

}  // namespace qv::cli
