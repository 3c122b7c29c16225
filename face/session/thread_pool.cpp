#include <algorithm>
#include <condition_variable>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "scriptwells/options.h"

namespace scriptwells {

namespace {

// Shared with the threads, since the last copy of the executor may be let go by work that runs on one of
// them.
struct PoolState {
  std::mutex mutex;
  std::condition_variable changed;
  std::deque<std::function<void()>> waiting;
  std::size_t idle = 0;
  bool ending = false;
};

void Work(const std::shared_ptr<PoolState>& state) {
  std::unique_lock<std::mutex> lock(state->mutex);
  for (;;) {
    ++state->idle;
    state->changed.wait(lock, [&state] { return state->ending || !state->waiting.empty(); });
    --state->idle;
    if (state->waiting.empty()) return;
    std::function<void()> work = std::move(state->waiting.front());
    state->waiting.pop_front();
    lock.unlock();
    work();
    work = nullptr;
    lock.lock();
  }
}

class Pool {
 public:
  explicit Pool(unsigned most) : most_(std::max(most, 1U)), state_(std::make_shared<PoolState>()) {}
  ~Pool();
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;

  void Add(std::function<void()> work);

 private:
  std::size_t most_;
  std::shared_ptr<PoolState> state_;
  std::vector<std::thread> threads_;
};

Pool::~Pool() {
  {
    const std::lock_guard<std::mutex> lock(state_->mutex);
    state_->ending = true;
  }
  state_->changed.notify_all();
  for (std::thread& thread : threads_) {
    if (thread.get_id() == std::this_thread::get_id())
      thread.detach();
    else
      thread.join();
  }
}

void Pool::Add(std::function<void()> work) {
  const std::lock_guard<std::mutex> lock(state_->mutex);
  state_->waiting.push_back(std::move(work));
  try {
    if (state_->idle < state_->waiting.size() && threads_.size() < most_) threads_.emplace_back(Work, state_);
  } catch (...) {
    if (threads_.empty()) {
      state_->waiting.pop_back();
      throw;
    }  // otherwise one of the threads does it
  }
  state_->changed.notify_one();
}

}  // namespace

Executor ThreadPool(unsigned threads) {
  return [pool = std::make_shared<Pool>(threads)](std::function<void()> work) { pool->Add(std::move(work)); };
}

}  // namespace scriptwells
