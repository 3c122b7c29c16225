// The memory that the bodies of all requests may take together.
#pragma once

#include <cstddef>
#include <mutex>

namespace qv::devservice {

// Thread-safe.
class BodyBudget {
 public:
  explicit BodyBudget(std::size_t bytes) : left_(bytes) {}

  // False, and nothing taken, when less than this is left.
  bool Take(std::size_t bytes) {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (bytes > left_) return false;
    left_ -= bytes;
    return true;
  }
  void GiveBack(std::size_t bytes) {
    const std::lock_guard<std::mutex> lock(mutex_);
    left_ += bytes;
  }

 private:
  std::mutex mutex_;
  std::size_t left_;
};

// The bytes that one request has taken. The destructor gives them back.
class BodyShare {
 public:
  explicit BodyShare(BodyBudget& budget) : budget_(budget) {}
  ~BodyShare() { budget_.GiveBack(taken_); }
  BodyShare(const BodyShare&) = delete;
  BodyShare& operator=(const BodyShare&) = delete;

  bool Take(std::size_t bytes) {
    const bool taken = budget_.Take(bytes);
    if (taken) taken_ += bytes;
    return taken;
  }

 private:
  BodyBudget& budget_;
  std::size_t taken_ = 0;
};

}  // namespace qv::devservice
