#include "devservice/workers/worker_pool.h"

#include <stdexcept>

#include "devservice/values/fault_codes.h"
#include "devservice/workers/script_messages.h"

namespace qv::devservice {
namespace {

[[noreturn]] void RefuseWhenStopping() {
  throw FaultError(kUnavailable, "The service is stopping.", "service");
}

std::string Megabytes(std::size_t bytes) {
  return std::to_string(bytes >> 20) + " MiB";
}

}  // namespace

WorkerPool::WorkerPool(Options options, ServiceStats& stats, StartedWorker first)
    : options_(std::move(options)),
      stats_(stats),
      first_(std::move(first)),
      starter_(&WorkerPool::ServeStartRequests, this) {}

WorkerPool::~WorkerPool() {
  Stop();
  starter_.join();
}

void WorkerPool::Stop() {
  std::vector<Worker> idle;
  const std::lock_guard<std::mutex> lock(mutex_);
  stopping_ = true;
  idle.swap(idle_);
  changed_.notify_all();
}

ScriptResult WorkerPool::Run(const ScriptJob& job) {
  const std::string packed = PackMessage(ToJson(job));
  Worker worker = Acquire();
  ++stats_.scriptsRun;
  const ExchangeLimits limits{options_.timeLimit, options_.memoryLimit, &stopping_,
                              [&](const ConsoleMessage& message) { PassOn(message, job.session); }};
  nlohmann::json answer;
  ExchangeEnd end = ExchangeEnd::kCrashed;
  try {
    end = worker->Exchange(packed, limits, answer);
  } catch (const std::exception&) {
    // The worker sent something unreadable: the same as a crash.
  }
  if (end != ExchangeEnd::kAnswered) worker.reset();
  GiveBack(std::move(worker));
  return Conclude(end, answer);
}

void WorkerPool::PassOn(ConsoleMessage message, const std::string& session) {
  message.session = session;
  const std::lock_guard<std::mutex> lock(consoleMutex_);
  if (options_.console) options_.console(message);
}

ScriptResult WorkerPool::Conclude(ExchangeEnd end, const nlohmann::json& answer) {
  switch (end) {
    case ExchangeEnd::kAnswered:
      return ResultFromJson(answer);
    case ExchangeEnd::kStopped:
      RefuseWhenStopping();
    case ExchangeEnd::kTimeLimit:
      ++stats_.workersKilled;
      throw FaultError(kTimeLimit,
                       "The script took longer than " + std::to_string(options_.timeLimit.count()) + " ms.",
                       "script");
    case ExchangeEnd::kMemoryLimit:
      ++stats_.workersKilled;
      throw FaultError(kMemoryLimit,
                       "The script took more than " + Megabytes(options_.memoryLimit) + " of memory.",
                       "script");
    case ExchangeEnd::kCrashed:
      break;
  }
  ++stats_.workersCrashed;
  throw FaultError(kWorkerCrashed, "The script ended the process that ran it.", "script");
}

WorkerPool::Worker WorkerPool::Acquire() {
  std::unique_lock<std::mutex> lock(mutex_);
  Worker worker = TakeIdleOrSlot(lock);
  lock.unlock();
  if (worker) return worker;
  try {
    return StartWorker();
  } catch (const std::exception& error) {
    FreeSlot();
    throw FaultError(kUnavailable, error.what(), "service");
  }
}

// Returns an idle worker, or null with a slot taken for a new one.
WorkerPool::Worker WorkerPool::TakeIdleOrSlot(std::unique_lock<std::mutex>& lock) {
  for (;;) {
    if (stopping_) RefuseWhenStopping();
    if (!idle_.empty()) {
      Worker worker = std::move(idle_.back());
      idle_.pop_back();
      if (worker->IsAlive()) return worker;
      --slots_;
    } else if (slots_ < options_.maxWorkers) {
      ++slots_;
      return nullptr;
    } else {
      changed_.wait(lock);
    }
  }
}

WorkerPool::Worker WorkerPool::StartWorker() {
  StartedWorker first = TakeFirst();
  Worker worker = first ? WorkerProcess::AwaitGreeting(std::move(first), stopping_) : RequestWorker();
  ++stats_.workersStarted;
  return worker;
}

StartedWorker WorkerPool::TakeFirst() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return std::move(first_);
}

WorkerPool::Worker WorkerPool::RequestWorker() {
  StartRequest request;
  std::future<Worker> started = request.get_future();
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (stopping_) RefuseWhenStopping();
    startRequests_.push_back(std::move(request));
    changed_.notify_all();
  }
  return started.get();
}

void WorkerPool::ServeStartRequests() {
  std::unique_lock<std::mutex> lock(mutex_);
  for (;;) {
    changed_.wait(lock, [this] { return stopping_ || !startRequests_.empty(); });
    if (startRequests_.empty()) return;
    StartRequest request = std::move(startRequests_.front());
    startRequests_.pop_front();
    lock.unlock();
    try {
      request.set_value(WorkerProcess::AwaitGreeting(StartedWorker(options_.command), stopping_));
    } catch (...) {
      request.set_exception(std::current_exception());
    }
    lock.lock();
  }
}

// Null frees the slot of a worker that has ended. A worker that kept much memory is replaced too, so that the
// next script has the whole limit.
void WorkerPool::GiveBack(Worker worker) {
  if (worker && worker->GrownBytes() > options_.memoryLimit / 4) worker.reset();
  if (!worker) return FreeSlot();
  const std::lock_guard<std::mutex> lock(mutex_);
  if (stopping_) return;
  idle_.push_back(std::move(worker));
  changed_.notify_all();
}

void WorkerPool::FreeSlot() {
  const std::lock_guard<std::mutex> lock(mutex_);
  --slots_;
  changed_.notify_all();
}

}  // namespace qv::devservice
