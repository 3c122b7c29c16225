#include "tools/batch/batch_progress.h"

#include <unistd.h>

#include <utility>

#include "tools/transfer/progress_text.h"

namespace qv::cli {

BatchProgress::BatchProgress(bool show, std::string name, std::int64_t total)
    : line_(STDERR_FILENO), show_(show && line_.IsThere()), name_(std::move(name)), total_(total) {}

void BatchProgress::Show(const BatchCounts& counts) {
  if (!show_) return;
  const std::chrono::duration<double> passed = std::chrono::steady_clock::now() - start_;
  ProgressState state;
  state.name = ProgressName(name_, counts);
  state.done = counts.Ended();
  state.total = total_;
  state.seconds = passed.count();
  state.earlier = counts.earlier;
  state.unit = "rows";
  line_.Draw(ProgressLine(state, line_.Columns()));
}

std::string ProgressName(const std::string& name, const BatchCounts& counts) {
  const std::int64_t lost = counts.failed + counts.unknown;
  return lost == 0 ? name : name + ", " + std::to_string(lost) + " failed";
}

}  // namespace qv::cli
