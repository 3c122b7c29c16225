// Listens to every transfer of the library: stops it after Ctrl-C, and shows its progress on a terminal.
#pragma once

#include <string>

#include "qvscriptwells/http_component.h"
#include "tools/progress_meter.h"

namespace qv::cli {

// One line of a terminal that is drawn again and again.
class TerminalLine {
 public:
  // Borrows the descriptor.
  explicit TerminalLine(int descriptor) : descriptor_(descriptor) {}

  // A terminal that understands how a line is cleared.
  bool IsThere() const;
  int Columns() const;  // 80 when the terminal does not tell
  void Draw(const std::string& text);
  // Leaves nothing behind; without a drawing nothing is written.
  void Clear() noexcept;

 private:
  int descriptor_;
  bool drawn_ = false;
};

// Belongs to one stack frame, so that its counting is idle: it has to outlive all transfers that it is told
// of.
class TransferProgress final : public IHttpProgress {
 public:
  // Shows on standard error if that is a terminal and `show` says so.
  explicit TransferProgress(bool show);
  ~TransferProgress();
  TransferProgress(const TransferProgress&) = delete;
  TransferProgress& operator=(const TransferProgress&) = delete;

  // The transfer that follows is the one of the file at `path`.
  void FileBegins(const std::string& path) noexcept;
  // The transfer is over, well or not: the line goes.
  void TransferEnds() noexcept;

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return 2; }
  std::uint32_t Release() noexcept override { return 1; }
  HRESULT OnProgress(bool sending, std::int64_t done, std::int64_t total) noexcept override;

 private:
  void Show(bool sending, std::int64_t done, std::int64_t total);

  TerminalLine line_;
  bool show_;
  ProgressMeter meter_;
};

}  // namespace qv::cli
