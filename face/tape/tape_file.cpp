#include "face/tape/tape_file.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "face/tape/tape.h"
#include "scriptwells/error.h"

namespace scriptwells {

namespace {

constexpr std::size_t kTail = std::size_t{64} * 1024;

}  // namespace

// Against all others that have the file open, in this process, too.
class TapeFile::Lock {
 public:
  explicit Lock(const TapeFile& file) : descriptor_(file.descriptor_) {
    while (::flock(descriptor_, LOCK_EX) != 0)
      if (errno != EINTR) file.RefuseError();
  }
  ~Lock() { ::flock(descriptor_, LOCK_UN); }
  Lock(const Lock&) = delete;
  Lock& operator=(const Lock&) = delete;

 private:
  int descriptor_;
};

TapeFile::TapeFile(const std::string& path)
    : path_(path),
      descriptor_(::open(path.c_str(), O_RDWR | O_CREAT | O_APPEND | O_CLOEXEC | O_NONBLOCK, 0600)) {
  if (descriptor_ < 0) RefuseError();
  try {
    Begin();
  } catch (...) {
    ::close(descriptor_);
    throw;
  }
}

TapeFile::~TapeFile() {
  ::close(descriptor_);
}

void TapeFile::Begin() {
  const Lock lock(*this);
  struct stat facts = {};
  if (::fstat(descriptor_, &facts) != 0) RefuseError();
  if (!S_ISREG(facts.st_mode)) Refuse("not a regular file");
  const auto size = static_cast<std::size_t>(facts.st_size);
  session_ = size == 0 ? 1 : LastSession(size) + 1;
  const std::string header = size == 0 ? std::string(kTapeHeader) + "\n\n" : std::string();
  Write(header + SessionLine(session_) + "\n");
}

// From the end of the file.
std::string TapeFile::Tail(std::size_t bytes) const {
  const off_t size = ::lseek(descriptor_, 0, SEEK_END);
  std::string text(bytes, '\0');
  const ssize_t got = ::pread(descriptor_, text.data(), bytes, size - static_cast<off_t>(bytes));
  if (got != static_cast<ssize_t>(bytes)) RefuseError();
  return text;
}

// Numbers grow, so that the last one is near the end.
std::size_t TapeFile::LastSession(std::size_t size) const {
  std::string start(kTapeHeader.size() + 1, '\0');
  const ssize_t got = ::pread(descriptor_, start.data(), start.size(), 0);
  if (got != static_cast<ssize_t>(start.size()) || start != std::string(kTapeHeader) + "\n")
    Refuse("the file is there already and is no tape");
  const std::string mark = "\n" + SessionLine(1).substr(0, SessionLine(1).find('1'));
  for (std::size_t bytes = std::min(kTail, size);; bytes = std::min(bytes * 4, size)) {
    const std::string tail = Tail(bytes);
    if (tail.back() != '\n') Refuse("the tape was cut");
    const std::size_t at = tail.rfind(mark);
    if (at != std::string::npos) return std::strtoul(tail.c_str() + at + mark.size(), nullptr, 10);
    if (bytes == size) return 0;
  }
}

void TapeFile::Write(const std::string& text) {
  for (std::size_t done = 0; done < text.size();) {
    const ssize_t written = ::write(descriptor_, text.data() + done, text.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written < 0) RefuseError();
    done += static_cast<std::size_t>(written);
  }
}

void TapeFile::Append(const std::string& text) {
  const Lock lock(*this);
  Write(text);
}

void TapeFile::Refuse(const std::string& reason) const {
  throw Error(Phase::kLocalFile, "cannot write the tape " + path_ + ": " + reason);
}

void TapeFile::RefuseError() const {
  Refuse(std::strerror(errno));
}

}  // namespace scriptwells
