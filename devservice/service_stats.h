// Counts that tests and curious people read from GET /stats.
#pragma once

#include <atomic>
#include <cstdint>

namespace qv::devservice {

// Each field may be raised and read from any thread.
struct ServiceStats {
  std::atomic<std::uint64_t> connections{0};
  std::atomic<std::uint64_t> requests{0};  // HTTP requests whose head and body arrived whole.
  std::atomic<std::uint64_t> refused{0};   // Of these, closed without an answer on request.
  std::atomic<std::uint64_t> createUserSession{0};
  std::atomic<std::uint64_t> closeUserSession{0};
  std::atomic<std::uint64_t> execute{0};
  std::atomic<std::uint64_t> faults{0};
  std::atomic<std::uint64_t> scriptsRun{0};  // Scripts handed to a worker.
  std::atomic<std::uint64_t> workersStarted{0};
  std::atomic<std::uint64_t> workersKilled{0};  // Killed for a limit.
  std::atomic<std::uint64_t> workersCrashed{0};
};

}  // namespace qv::devservice
