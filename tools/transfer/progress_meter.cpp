#include "tools/transfer/progress_meter.h"

#include <utility>

namespace qv::cli {

namespace {

constexpr std::int64_t kSmallest = 64'000;  // bytes
constexpr double kSilence = 0.5;            // seconds
constexpr double kPause = 0.1;              // seconds between two drawings

}  // namespace

void ProgressMeter::Begin(std::string name) {
  name_ = std::move(name);
  running_ = false;
}

void ProgressMeter::Start(bool sending, double now) {
  running_ = true;
  sending_ = sending;
  start_ = now;
  lastDraw_ = now - kPause;
  state_.name = !name_.empty() ? name_ : sending ? "upload" : "download";
}

ProgressMeter::Act ProgressMeter::Update(bool sending, std::int64_t done, std::int64_t total, double now) {
  if (!running_ || sending != sending_ || done < state_.done) Start(sending, now);
  state_.done = done;
  state_.total = total;
  state_.seconds = now - start_;
  if (total >= 0 && done >= total) return Act::kClear;
  if ((total >= 0 ? total : done) < kSmallest || state_.seconds < kSilence) return Act::kKeep;
  // Sums of tenths are not exact.
  if (now - lastDraw_ < kPause - 1e-9) return Act::kKeep;
  lastDraw_ = now;
  return Act::kDraw;
}

}  // namespace qv::cli
