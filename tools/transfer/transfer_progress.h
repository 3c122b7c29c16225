// Shows the progress of transfers on a terminal.
#pragma once

#include <string>

#include "scriptwells/options.h"
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

class TransferProgress {
 public:
  // Shows progress on standard error, if that is a terminal and `show` is set.
  explicit TransferProgress(bool show);
  ~TransferProgress();
  TransferProgress(const TransferProgress&) = delete;
  TransferProgress& operator=(const TransferProgress&) = delete;

  bool IsShown() const noexcept { return show_; }
  void Update(const scriptwells::Progress& progress) noexcept;
  // The transfer has ended, with or without success: clears the line.
  void End() noexcept;

 private:
  void Show(const scriptwells::Progress& progress);

  TerminalLine line_;
  bool show_;
  ProgressMeter meter_;
  std::string file_;  // of the transfer that is shown
};

}  // namespace qv::cli
