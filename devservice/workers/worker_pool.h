// A few worker processes, started when first needed and kept for the next script.
#pragma once

#include <condition_variable>
#include <deque>
#include <future>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

#include "devservice/values/script_job.h"
#include "devservice/values/service_stats.h"
#include "devservice/workers/worker_process.h"

namespace qv::devservice {

// Thread-safe: any number of threads may run scripts; those beyond the number of workers wait.
class WorkerPool {
 public:
  struct Options {
    std::vector<std::string> command;
    std::size_t maxWorkers = 1;
    std::chrono::milliseconds timeLimit{0};
    std::size_t memoryLimit = 0;
    ConsoleSink console{};  // Called on the threads of Run, one at a time. Must not throw.
  };

  // `stats` is borrowed and has to outlive the pool. `first`, unless it is none, becomes the first worker.
  WorkerPool(Options options, ServiceStats& stats, StartedWorker first);
  // Stops the pool.
  ~WorkerPool();
  WorkerPool(const WorkerPool&) = delete;
  WorkerPool& operator=(const WorkerPool&) = delete;

  // Runs a script to its end. Throws FaultError with kTimeLimit, kMemoryLimit, kWorkerCrashed or kUnavailable
  // (no worker can be started, or the pool is stopped). The worker is replaced after each of these.
  ScriptResult Run(const ScriptJob& job);

  // Running and waiting scripts end with kUnavailable within milliseconds. May be called more than once.
  void Stop();

 private:
  using Worker = std::unique_ptr<WorkerProcess>;
  using StartRequest = std::promise<Worker>;

  Worker Acquire();
  Worker TakeIdleOrSlot(std::unique_lock<std::mutex>& lock);
  Worker StartWorker();
  Worker RequestWorker();
  StartedWorker TakeFirst();
  void GiveBack(Worker worker);
  void FreeSlot();
  void PassOn(ConsoleMessage message, const std::string& session);
  ScriptResult Conclude(ExchangeEnd end, const nlohmann::json& answer);
  void ServeStartRequests();

  const Options options_;
  ServiceStats& stats_;
  std::atomic<bool> stopping_{false};
  std::mutex consoleMutex_;
  std::mutex mutex_;
  std::condition_variable changed_;
  StartedWorker first_;  // None once it was taken.
  std::vector<Worker> idle_;
  std::size_t slots_ = 0;  // Workers alive or being started.
  std::deque<StartRequest> startRequests_;
  std::thread starter_;  // All workers are its children: it lives as long as the pool.
};

}  // namespace qv::devservice
