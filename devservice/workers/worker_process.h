// One script worker on the side of the service: a child process at the other end of a socket.
#pragma once

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>

#include "devservice/values/console_message.h"
#include "devservice/workers/started_worker.h"
#include "devservice/workers/worker_channel.h"

namespace qv::devservice {

// How one exchange with a worker ended.
enum class ExchangeEnd { kAnswered, kTimeLimit, kMemoryLimit, kCrashed, kStopped };

// Bounds of one exchange. `stop` is borrowed for the exchange; it ends early once it is true.
struct ExchangeLimits {
  std::chrono::milliseconds time{0};
  std::size_t memory = 0;
  const std::atomic<bool>* stop = nullptr;
  ConsoleSink console{};  // For messages of the script; may be empty.
};

// Used by one thread at a time.
class WorkerProcess {
 public:
  // Waits for the worker's greeting. Throws std::runtime_error when it does not greet within ten seconds.
  static std::unique_ptr<WorkerProcess> AwaitGreeting(StartedWorker started, const std::atomic<bool>& stop);

  // Sends one message and waits for the answer. After any end but kAnswered, destroy the worker.
  ExchangeEnd Exchange(const std::string& packed, const ExchangeLimits& limits, nlohmann::json& answer);

  // Whether the process still runs.
  bool IsAlive() { return started_.IsAlive(); }

  // Bytes of resident memory beyond those of the fresh worker.
  std::size_t GrownBytes() const;

 private:
  explicit WorkerProcess(StartedWorker started);
  // Both transfer as much as the socket allows without waiting; false when the other end has closed.
  bool SendPart(const std::string& packed, std::size_t& sent) const;
  bool ReceivePart();
  // Takes the answer from the received bytes, and passes on console messages before it. False: not there yet.
  bool TakeAnswer(const ConsoleSink& console, nlohmann::json& answer);
  std::size_t ResidentBytes() const;

  StartedWorker started_;
  std::size_t freshBytes_ = 0;
  MessageBuffer buffer_;
};

}  // namespace qv::devservice
