// The progress of a batch on a terminal.
#pragma once

#include <chrono>
#include <cstdint>
#include <string>

#include "tools/batch/batch_counts.h"
#include "tools/transfer/transfer_progress.h"

namespace qv::cli {

class BatchProgress {
 public:
  // On standard error, if that is a terminal and `show` is set.
  BatchProgress(bool show, std::string name, std::int64_t total);
  ~BatchProgress() { line_.Clear(); }
  BatchProgress(const BatchProgress&) = delete;
  BatchProgress& operator=(const BatchProgress&) = delete;

  void Show(const BatchCounts& counts);
  // Makes room for a message.
  void Clear() noexcept { line_.Clear(); }

 private:
  TerminalLine line_;
  bool show_;
  std::string name_;
  std::int64_t total_;
  std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

// "rows.csv", or "rows.csv, 2 failed".
std::string ProgressName(const std::string& name, const BatchCounts& counts);

}  // namespace qv::cli
