// How long one message may take on a connection.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>

namespace qv::devservice {

// A fixed time, and one more second for every 64 KiB that were moved. So a slow line is fine, but not a peer
// that sends a byte now and then.
class MessageTime {
 public:
  explicit MessageTime(std::chrono::milliseconds time) : end_(Clock::now() + time) {}

  void Add(std::size_t bytes) {
    end_ += std::chrono::microseconds(static_cast<std::int64_t>(bytes) * 1000000 / kBytesPerSecond);
  }
  // Never negative.
  std::chrono::milliseconds Left() const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(end_ - Clock::now());
    return left.count() > 0 ? left : std::chrono::milliseconds(0);
  }

 private:
  using Clock = std::chrono::steady_clock;
  static constexpr std::int64_t kBytesPerSecond = 65536;

  Clock::time_point end_;
};

}  // namespace qv::devservice
