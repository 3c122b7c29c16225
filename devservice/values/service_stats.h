// The counts that GET /stats answers.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace qv::devservice {

// Each field may be incremented and read from any thread.
struct ServiceStats {
  std::atomic<std::uint64_t> connections{0};
  std::atomic<std::uint64_t> requests{0};  // HTTP requests whose head and body arrived whole.
  std::atomic<std::uint64_t> refused{
      0};  // Of these, closed without an answer (odd answers "refuse" and "refuse2").
  std::atomic<std::uint64_t> createUserSession{0};
  std::atomic<std::uint64_t> closeUserSession{0};
  std::atomic<std::uint64_t> execute{0};
  std::atomic<std::uint64_t> faults{0};
  std::atomic<std::uint64_t> scriptsRun{0};  // Scripts handed to a worker.
  std::atomic<std::uint64_t> uploads{0};     // Files that arrived whole and were kept.
  std::atomic<std::uint64_t> uploadedBytes{0};
  std::atomic<std::uint64_t> downloads{0};        // Published files whose sending was begun.
  std::atomic<std::uint64_t> downloadedBytes{0};  // Sent of them so far.
  std::atomic<std::uint64_t> workersStarted{0};
  std::atomic<std::uint64_t> workersKilled{0};  // Killed for a limit.
  std::atomic<std::uint64_t> workersCrashed{0};
};

// The count of the action with this name on the wire; null for any other name.
std::atomic<std::uint64_t>* CounterOf(ServiceStats& stats, std::string_view action);

// The action that a header SOAPAction names, with or without quotes; empty if there is no such action.
std::string ActionIn(std::string_view soapAction);

// The counts as JSON, for GET /stats.
std::string StatsText(const ServiceStats& stats, std::size_t openSessions);

}  // namespace qv::devservice
