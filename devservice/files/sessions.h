// The open user sessions.
#pragma once

#include <chrono>
#include <cstddef>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "devservice/files/session_files.h"
#include "devservice/values/credentials.h"

namespace qv::devservice {

struct SessionLimits {
  std::size_t sessions = 1;
  std::size_t tickets = 1;  // Of each session.
};

// Owns the open sessions and their files. Thread-safe.
class SessionTable {
 public:
  SessionTable(std::vector<ServiceUser> users, const SessionLimits& limits);

  // Opens a session and returns its id, 32 hexadecimal digits from the system's random source. In a full
  // table the session that was idle for the longest time ends. Throws FaultError with kUserRefused, or with
  // kTooManySessions when none is idle.
  std::string Open(std::string_view connectionString);

  // Marks the session as used now and returns its files; it is not idle while the caller holds them. Throws
  // FaultError with kUnknownSession.
  std::shared_ptr<SessionFiles> Use(const std::string& id);
  // The same, but null for an unknown session.
  std::shared_ptr<SessionFiles> Find(const std::string& id);

  // Whether any session has this ticket, or a published file of this id.
  bool KnowsTicket(const std::string& ticket) const;
  bool KnowsPublished(const std::string& id) const;

  // Ends the session and closes its files. Throws FaultError with kUnknownSession.
  void Close(const std::string& id);

  std::size_t Count() const;

 private:
  using Clock = std::chrono::steady_clock;
  struct Session {
    Clock::time_point lastUse;
    std::shared_ptr<SessionFiles> files;
  };
  void CheckUser(const Credentials& credentials) const;
  std::shared_ptr<SessionFiles> DropOldestIdle();

  const std::vector<ServiceUser> users_;
  const SessionLimits limits_;
  mutable std::mutex mutex_;
  std::map<std::string, Session> sessions_;
};

}  // namespace qv::devservice
