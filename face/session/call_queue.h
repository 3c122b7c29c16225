// The calls of one session: they run one after the other in the order in which they were asked for, whether a
// thread waits for its turn or an executor runs them.
#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <memory>
#include <mutex>

#include "scriptwells/options.h"

namespace scriptwells {

// A call for an executor. Exactly one of its functions is called; neither throws.
class QueuedCall {
 public:
  virtual ~QueuedCall() = default;
  virtual void Run() noexcept = 0;
  virtual void Fail(std::exception_ptr reason) noexcept = 0;
};

class CallQueue {
 public:
  explicit CallQueue(Executor executor) : executor_(std::move(executor)) {}
  CallQueue(const CallQueue&) = delete;
  CallQueue& operator=(const CallQueue&) = delete;

  bool HasExecutor() const noexcept { return executor_ != nullptr; }

  // The calling thread's turn: the constructor waits for it.
  class Turn {
   public:
    explicit Turn(CallQueue& queue) : queue_(queue) { queue_.Enter(); }
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

  void Enter();
  void Leave() noexcept;
  void Start(Entry entry) noexcept;

  Executor executor_;
  std::mutex mutex_;
  std::condition_variable turns_;
  std::deque<Entry> waiting_;
  bool busy_ = false;
};

}  // namespace scriptwells
