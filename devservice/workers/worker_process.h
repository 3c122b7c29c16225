// One script worker on the side of the service: a child process at the other end of a socket.
#pragma once

#include <sys/types.h>

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "devservice/values/console_message.h"
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

// Owns the process: the destructor kills it and waits for its end, so none is left as a zombie. Used by one
// thread at a time.
class WorkerProcess {
 public:
  // Starts the program and waits for its greeting. Throws std::runtime_error when it cannot be started or
  // does not greet within ten seconds. The calling thread has to outlive the process: the system kills a
  // worker whose parent thread has ended.
  static std::unique_ptr<WorkerProcess> Start(const std::vector<std::string>& command,
                                              const std::atomic<bool>& stop);

  ~WorkerProcess();
  WorkerProcess(const WorkerProcess&) = delete;
  WorkerProcess& operator=(const WorkerProcess&) = delete;

  // Sends one message and waits for the answer. After any end but kAnswered, destroy the worker.
  ExchangeEnd Exchange(const std::string& packed, const ExchangeLimits& limits, nlohmann::json& answer);

  // Whether the process still runs.
  bool IsAlive();

  // Bytes of resident memory beyond those of the fresh worker.
  std::size_t GrownBytes() const;

 private:
  WorkerProcess(pid_t process, int descriptor);
  // Both transfer as much as the socket allows without waiting; false when the other end has closed.
  bool SendPart(const std::string& packed, std::size_t& sent) const;
  bool ReceivePart();
  // Takes the answer from the received bytes, and passes on console messages before it. False: not there yet.
  bool TakeAnswer(const ConsoleSink& console, nlohmann::json& answer);
  std::size_t ResidentBytes() const;

  pid_t process_;
  int descriptor_;
  bool reaped_ = false;
  std::size_t freshBytes_ = 0;
  MessageBuffer buffer_;
};

}  // namespace qv::devservice
