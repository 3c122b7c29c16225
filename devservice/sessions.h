// The open user sessions.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "devservice/service.h"

namespace qv::devservice {

// What a connection string says. Later pairs win, unknown keys are passed over.
struct Credentials {
  std::string userName;
  std::string password;
  std::string replicaId;
};
Credentials ParseConnectionString(std::string_view text);

// Knows who has a session. Thread-safe.
class SessionTable {
 public:
  SessionTable(std::vector<ServiceUser> users, std::size_t maxSessions, std::chrono::seconds idleLimit);

  // Opens a session and returns its id, 32 hexadecimal digits from the system's random source. Throws
  // FaultError with kUserRefused or kTooManySessions.
  std::string Open(std::string_view connectionString);

  // Marks the session as used now. Throws FaultError with kUnknownSession.
  void Use(const std::string& id);

  // Ends the session. Throws FaultError with kUnknownSession.
  void Close(const std::string& id);

  std::size_t Count() const;

 private:
  using Clock = std::chrono::steady_clock;
  void CheckUser(const Credentials& credentials) const;
  void DropIdle();

  const std::vector<ServiceUser> users_;
  const std::size_t maxSessions_;
  const std::chrono::seconds idleLimit_;
  mutable std::mutex mutex_;
  std::map<std::string, Clock::time_point> lastUse_;
};

}  // namespace qv::devservice
