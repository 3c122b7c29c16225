// Decides when to show a transfer's progress: not for small or short transfers, and at most ten times a
// second.
#pragma once

#include <cstdint>
#include <string>

#include "tools/transfer/progress_text.h"

namespace qv::cli {

class ProgressMeter {
 public:
  enum class Act { kKeep, kDraw, kClear };

  // Sets the file of the next transfer; empty: unknown.
  void Begin(std::string name);
  // What to do after `done` of `total` bytes (-1: unknown). `now` is the time of a monotonic clock in
  // seconds. A transfer in the other direction, or with fewer bytes done, is a new one.
  Act Update(bool sending, std::int64_t done, std::int64_t total, double now);
  // After kDraw: what to draw.
  const ProgressState& State() const noexcept { return state_; }

 private:
  void Start(bool sending, double now);

  std::string name_;
  ProgressState state_;
  bool running_ = false;
  bool sending_ = false;
  double start_ = 0;
  double lastDraw_ = 0;
};

}  // namespace qv::cli
