#include "face/session/call_queue.h"

#include <algorithm>
#include <utility>

#include "scriptwells/error.h"

namespace scriptwells {

namespace {

constexpr std::chrono::milliseconds kGlance{100};
constexpr char kCancelled[] = "the call was cancelled while it waited for another call of its session";
constexpr char kLate[] = "the time that the call may take is over: another call of its session still runs";

}  // namespace

// What the executor gets. It ends its turn when it has run, or when the executor has dropped it.
class CallQueue::Job {
 public:
  Job(CallQueue& queue, std::shared_ptr<QueuedCall> call) noexcept : queue_(queue), call_(std::move(call)) {}
  ~Job() {
    End([](QueuedCall& call) { call.Fail(Dropped()); });
  }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;

  void Run() noexcept {
    End([](QueuedCall& call) { call.Run(); });
  }
  void Fail(const std::exception_ptr& reason) noexcept {
    End([&reason](QueuedCall& call) { call.Fail(reason); });
  }

 private:
  static std::exception_ptr Dropped() noexcept {
    try {
      throw Error(Phase::kCancelled, "the executor dropped the call");
    } catch (...) {
      return std::current_exception();
    }
  }

  template <class Act>
  void End(Act act) noexcept {
    const std::shared_ptr<QueuedCall> call = std::exchange(call_, nullptr);
    if (call == nullptr) return;
    act(*call);
    queue_.Leave();
  }

  CallQueue& queue_;
  std::shared_ptr<QueuedCall> call_;
};

void CallQueue::Enter(const Patience& patience) {
  const auto start = std::chrono::steady_clock::now();
  std::unique_lock<std::mutex> lock(mutex_);
  if (!busy_) {
    busy_ = true;
    return;
  }
  bool granted = false;
  waiting_.push_back({nullptr, &granted});
  // A token cannot wake a thread, since it may be cancelled in a signal handler.
  while (!turns_.wait_for(lock, kGlance, [&granted] { return granted; })) {
    const bool isCancelled = patience.cancel && patience.cancel->IsCancelled();
    const bool isLate =
        patience.limit.count() > 0 && std::chrono::steady_clock::now() - start > patience.limit;
    if (!isCancelled && !isLate) continue;
    Forget(&granted);
    if (isCancelled) throw CancelledError(Phase::kCancelled, kCancelled);
    throw TimeoutError(Phase::kWait, kLate, {Remedy::kTotalTime});
  }
}

void CallQueue::Forget(const bool* granted) noexcept {
  const auto isOwn = [granted](const Entry& entry) { return entry.granted == granted; };
  waiting_.erase(std::remove_if(waiting_.begin(), waiting_.end(), isOwn), waiting_.end());
}

void CallQueue::Post(std::shared_ptr<QueuedCall> call) {
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (busy_) {
      waiting_.push_back({std::move(call), nullptr});
      return;
    }
    busy_ = true;
  }
  Start({std::move(call), nullptr});
}

void CallQueue::Leave() noexcept {
  Entry next;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    busy_ = !waiting_.empty();
    if (!busy_) return turns_.notify_all();  // WaitUntilIdle; under the lock for the same reason as below
    next = std::move(waiting_.front());
    waiting_.pop_front();
    if (next.granted != nullptr) {
      *next.granted = true;
      // Under the lock: the thread that is woken may destroy the queue.
      turns_.notify_all();
      return;
    }
  }
  Start(std::move(next));
}

void CallQueue::WaitUntilIdle() noexcept {
  std::unique_lock<std::mutex> lock(mutex_);
  turns_.wait(lock, [this] { return !busy_; });
}

// Without the lock, since an executor may run the job at once.
void CallQueue::Start(Entry entry) noexcept {
  std::shared_ptr<Job> job;
  try {
    job = std::make_shared<Job>(*this, entry.call);
    executor_([job] { job->Run(); });
  } catch (...) {
    if (job != nullptr) return job->Fail(std::current_exception());
    entry.call->Fail(std::current_exception());
    Leave();
  }
}

}  // namespace scriptwells
