#include "tools/system/watched_file.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "tools/report/failure.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kSaves = IN_CLOSE_WRITE | IN_MOVED_TO | IN_ONLYDIR;
// An editor may write in several steps, and a program may never stop.
constexpr int kQuietMilliseconds = 60;
constexpr std::chrono::seconds kLongestNoise{1};

[[noreturn]] void Refuse(const std::string& file, const std::string& reason) {
  throw Failure(ExitStatus::kLocal, "cannot watch " + file + ": " + reason);
}

}  // namespace

WatchedFile::WatchedFile(const std::string& file) : file_(file) {
  descriptor_ = ::inotify_init1(IN_CLOEXEC | IN_NONBLOCK);
  if (descriptor_ < 0) Refuse(file, std::strerror(errno));
  Watch(file);
  std::error_code ignored;
  const fs::path target = fs::canonical(file, ignored);
  if (fs::is_symlink(file, ignored) && !target.empty()) Watch(target);
}

WatchedFile::~WatchedFile() {
  ::close(descriptor_);
}

void WatchedFile::Watch(const std::string& file) {
  const fs::path path(file);
  const std::string folder = path.has_parent_path() ? path.parent_path().string() : ".";
  const int number = ::inotify_add_watch(descriptor_, folder.c_str(), kSaves);
  if (number < 0) Refuse(file, std::strerror(errno));
  entries_.push_back({number, path.filename()});
}

bool WatchedFile::WaitForSave() {
  while (!WasSaved()) {
    if (Interrupted()) return false;
    WaitFor(descriptor_, -1);
  }
  const auto end = std::chrono::steady_clock::now() + kLongestNoise;
  while (std::chrono::steady_clock::now() < end &&
         WaitFor(descriptor_, kQuietMilliseconds) == Waited::kReadable)
    WasSaved();
  return !Interrupted();
}

// Reads all events that are there.
bool WatchedFile::WasSaved() {
  bool saved = false;
  alignas(inotify_event) char bytes[16384];
  for (;;) {
    const ssize_t count = ::read(descriptor_, bytes, sizeof bytes);
    if (count <= 0) return saved;
    for (const char* at = bytes; at < bytes + count;) {
      const auto* event = reinterpret_cast<const inotify_event*>(at);
      at += sizeof(inotify_event) + event->len;
      if ((event->mask & IN_IGNORED) != 0) Refuse(file_, "its folder is gone");
      const bool lostEvents = (event->mask & IN_Q_OVERFLOW) != 0;
      const bool isFile =
          event->len > 0 && std::any_of(entries_.begin(), entries_.end(), [&](const Entry& entry) {
            return entry.folder == event->wd && entry.name == event->name;
          });
      saved = saved || lostEvents || isFile;
    }
  }
}

}  // namespace qv::cli
