#include "tools/transfer/transfer_progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string_view>

namespace qv::cli {

namespace {

constexpr std::string_view kClearLine = "\r\x1b[K";
constexpr int kUsualColumns = 80;

double Now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

// A failed write does not stop the transfer.
void Write(int descriptor, std::string_view text) noexcept {
  [[maybe_unused]] const ssize_t written = ::write(descriptor, text.data(), text.size());
}

}  // namespace

bool TerminalLine::IsThere() const {
  const char* kind = std::getenv("TERM");
  return ::isatty(descriptor_) == 1 && (kind == nullptr || std::string_view(kind) != "dumb");
}

int TerminalLine::Columns() const {
  winsize size = {};
  if (::ioctl(descriptor_, TIOCGWINSZ, &size) != 0 || size.ws_col == 0) return kUsualColumns;
  return size.ws_col;
}

// Clears only the rest of the line, after the new text, so that nothing flickers.
void TerminalLine::Draw(const std::string& text) {
  Write(descriptor_, "\r" + text + "\x1b[K");
  drawn_ = true;
}

void TerminalLine::Clear() noexcept {
  if (drawn_) Write(descriptor_, kClearLine);
  drawn_ = false;
}

TransferProgress::TransferProgress(bool show) : line_(STDERR_FILENO), show_(show && line_.IsThere()) {}

TransferProgress::~TransferProgress() {
  line_.Clear();
}

void TransferProgress::Update(const scriptwells::Progress& progress) noexcept {
  try {
    Show(progress);
  } catch (...) {  // the transfer goes on without its line
  }
}

void TransferProgress::End() noexcept {
  file_.clear();
  meter_.Begin({});
  line_.Clear();
}

void TransferProgress::Show(const scriptwells::Progress& progress) {
  if (progress.file != file_) {
    file_ = progress.file;
    meter_.Begin(file_.substr(file_.rfind('/') + 1));
  }
  const ProgressMeter::Act act = meter_.Update(progress.sending, progress.done, progress.total, Now());
  if (act == ProgressMeter::Act::kDraw) line_.Draw(ProgressLine(meter_.State(), line_.Columns()));
  if (act == ProgressMeter::Act::kClear) line_.Clear();
}

}  // namespace qv::cli
