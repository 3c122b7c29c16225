// When a transfer's progress is shown: not for small or short ones, and not more often than eyes can follow.
#pragma once

#include <cstdint>
#include <string>

#include "tools/progress_text.h"

namespace qv::cli {

class ProgressMeter {
 public:
  enum class Act { kKeep, kDraw, kClear };

  // The transfer that comes next is the one of this file; empty: nobody knows its name.
  void Begin(std::string name);
  // What to do now that `done` of `total` bytes (-1: not known) are through. `now` is in seconds of a clock
  // that only goes forward. A transfer in the other direction, or one with fewer bytes done, is a new one.
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
