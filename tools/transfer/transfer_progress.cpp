#include "tools/transfer/transfer_progress.h"

#include <sys/ioctl.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <string_view>

#include "tools/system/interrupt.h"

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

void TransferProgress::FileBegins(const std::string& path) noexcept {
  try {
    meter_.Begin(path.substr(path.rfind('/') + 1));
  } catch (...) {  // the transfer goes on without a name
  }
}

void TransferProgress::TransferEnds() noexcept {
  meter_.Begin({});
  line_.Clear();
}

HRESULT TransferProgress::QueryInterface(const Guid& iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (iid != IUnknown::kIid && iid != IHttpProgress::kIid) return E_NOINTERFACE;
  *object = static_cast<IHttpProgress*>(this);
  return S_OK;
}

HRESULT TransferProgress::OnProgress(bool sending, std::int64_t done, std::int64_t total) noexcept {
  try {
    if (show_) Show(sending, done, total);
  } catch (...) {  // the transfer goes on without its line
  }
  return Interrupted() ? S_FALSE : S_OK;
}

void TransferProgress::Show(bool sending, std::int64_t done, std::int64_t total) {
  const ProgressMeter::Act act = meter_.Update(sending, done, total, Now());
  if (act == ProgressMeter::Act::kDraw) line_.Draw(ProgressLine(meter_.State(), line_.Columns()));
  if (act == ProgressMeter::Act::kClear) line_.Clear();
}

}  // namespace qv::cli
