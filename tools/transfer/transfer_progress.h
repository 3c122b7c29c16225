// Observes every transfer of the library: stops it after Ctrl-C, and shows its progress on a terminal.
#pragma once

#include <string>

#include "qvscriptwells/http_component.h"
#include "tools/transfer/progress_meter.h"

namespace qv::cli {

// One line of a terminal that is redrawn.
class TerminalLine {
 public:
  // Borrows the descriptor.
  explicit TerminalLine(int descriptor) : descriptor_(descriptor) {}

  // Whether the descriptor is a terminal that can clear a line.
  bool IsThere() const;
  int Columns() const;  // 80 if unknown
  void Draw(const std::string& text);
  // Clears the line, if it was drawn.
  void Clear() noexcept;

 private:
  int descriptor_;
  bool drawn_ = false;
};

// An object on the stack, which must outlive all transfers; so its reference count does nothing.
class TransferProgress final : public IHttpProgress {
 public:
  // Shows progress on standard error, if that is a terminal and `show` is set.
  explicit TransferProgress(bool show);
  ~TransferProgress();
  TransferProgress(const TransferProgress&) = delete;
  TransferProgress& operator=(const TransferProgress&) = delete;

  // The next transfer is that of the file at `path`.
  void FileBegins(const std::string& path) noexcept;
  // The transfer has ended, with or without success: clears the line.
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
