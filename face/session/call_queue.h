// The calls of one session: they run one after the other in the order in which they were asked for, whether a
// thread waits for its turn or an executor runs them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "scriptwells/options.h"

namespace scriptwells {

// A call for an executor. Exactly one of its functions is called; neither throws.
class QueuedCall {
 public:
  virtual ~QueuedCall() = default;
  virtual void Run() noexcept = 0;
  virtual void Fail(std::exception_ptr reason) noexcept = 0;
};

// How long a thread waits for its turn.
struct Patience {
  std::optional<CancelToken> cancel{};
  std::chrono::milliseconds limit{};  // 0: none
};

class CallQueue {
 public:
  explicit CallQueue(Executor executor) : executor_(std::move(executor)) {}
  CallQueue(const CallQueue&) = delete;
  CallQueue& operator=(const CallQueue&) = delete;

  bool HasExecutor() const noexcept { return executor_ != nullptr; }

  // The calling thread's turn: the constructor waits for it. Throws CancelledError, or TimeoutError (kWait)
  // when the limit is over.
  class Turn {
   public:
    explicit Turn(CallQueue& queue, const Patience& patience = {}) : queue_(queue) { queue_.Enter(patience); }
    ~Turn() { queue_.Leave(); }
    Turn(const Turn&) = delete;
    Turn& operator=(const Turn&) = delete;

   private:
    CallQueue& queue_;
  };

  // Runs the call on the executor when its turn has come. If the executor refuses it, it fails with what the
  // executor threw, or with Error if the executor dropped it.
  void Post(std::shared_ptr<QueuedCall> call);

  // Waits until no call runs or waits.
  void WaitUntilIdle() noexcept;

 private:
  class Job;
  struct Entry {
    std::shared_ptr<QueuedCall> call;  // null: a thread waits
    bool* granted = nullptr;
  };

  void Enter(const Patience& patience);
  void Forget(const bool* granted) noexcept;
  void Leave() noexcept;
  void Start(Entry entry) noexcept;

  Executor executor_;
  std::mutex mutex_;
  std::condition_variable turns_;
  std::deque<Entry> waiting_;
  bool busy_ = false;
};

}  // namespace scriptwells
