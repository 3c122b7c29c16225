#include "tools/prompt/piped_lines.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "tools/report/failure.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

constexpr std::size_t kLongestLine = std::size_t{64} << 20;

}  // namespace

ShellLine PipedLines::Next(bool) {
  std::size_t searched = begin_;
  std::size_t end = 0;
  while ((end = read_.find('\n', searched)) == std::string::npos) {
    searched = read_.size();
    if (!ReadMore()) break;
    searched -= begin_;
    read_.erase(0, begin_);
    begin_ = 0;
  }
  if (end == std::string::npos && begin_ == read_.size()) return {};
  ShellLine line{ShellLine::Kind::kLine, read_.substr(begin_, end == std::string::npos ? end : end - begin_)};
  begin_ = end == std::string::npos ? read_.size() : end + 1;
  if (!line.text.empty() && line.text.back() == '\r') line.text.pop_back();
  return line;
}

// False at the end.
bool PipedLines::ReadMore() {
  if (read_.size() - begin_ > kLongestLine)
    throw Failure(ExitStatus::kLocal, "a line of standard input is longer than 64 MB");
  char bytes[65536];
  while (!atEnd_) {
    WaitReadable(STDIN_FILENO);
    const ssize_t count = ::read(STDIN_FILENO, bytes, sizeof bytes);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0)
      throw Failure(ExitStatus::kLocal, std::string("cannot read standard input: ") + std::strerror(errno));
    atEnd_ = count == 0;
    read_.append(bytes, static_cast<std::size_t>(count));
    return !atEnd_;
  }
  return false;
}

}  // namespace qv::cli
