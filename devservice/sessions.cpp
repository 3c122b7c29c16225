#include "devservice/sessions.h"

#include <sys/random.h>

#include <cerrno>

#include "devservice/fault_codes.h"

namespace qv::devservice {
namespace {

struct Field {
  const char* key;
  std::string Credentials::*member;
};

constexpr Field kFields[] = {
    {"DbReplicationId", &Credentials::replicaId},
    {"Username", &Credentials::userName},
    {"Password", &Credentials::password},
};

void StorePair(std::string_view pair, Credentials& credentials) {
  const std::size_t equals = pair.find('=');
  if (equals == std::string_view::npos) return;
  for (const Field& field : kFields) {
    if (pair.substr(0, equals) == field.key) credentials.*field.member = pair.substr(equals + 1);
  }
}

std::string RandomId() {
  unsigned char bytes[16];
  // Blocks only before the system's random source is ready; below 256 bytes nothing interrupts it then.
  while (getrandom(bytes, sizeof bytes, 0) != sizeof bytes) {
    if (errno != EINTR) throw FaultError(kUnavailable, "The system gives no random numbers.", "service");
  }
  std::string id;
  for (const unsigned char byte : bytes) {
    id += "0123456789abcdef"[byte >> 4];
    id += "0123456789abcdef"[byte & 15];
  }
  return id;
}

[[noreturn]] void RefuseSession() {
  throw FaultError(kUnknownSession, "The session does not exist on this service.", "session");
}

}  // namespace

Credentials ParseConnectionString(std::string_view text) {
  Credentials credentials;
  while (!text.empty()) {
    const std::size_t end = text.find(';');
    StorePair(text.substr(0, end), credentials);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
  }
  return credentials;
}

SessionTable::SessionTable(std::vector<ServiceUser> users, std::size_t maxSessions,
                           std::chrono::seconds idleLimit)
    : users_(std::move(users)), maxSessions_(maxSessions), idleLimit_(idleLimit) {}

void SessionTable::CheckUser(const Credentials& credentials) const {
  bool known = users_.empty() && !credentials.userName.empty();
  for (const ServiceUser& user : users_) {
    if (user.name == credentials.userName && user.password == credentials.password) known = true;
  }
  if (!known) throw FaultError(kUserRefused, "The user name or the password is wrong.", "session");
}

std::string SessionTable::Open(std::string_view connectionString) {
  CheckUser(ParseConnectionString(connectionString));
  const std::lock_guard<std::mutex> lock(mutex_);
  if (lastUse_.size() >= maxSessions_) DropIdle();
  if (lastUse_.size() >= maxSessions_) {
    throw FaultError(kTooManySessions, "There are too many open sessions.", "session");
  }
  const std::string id = RandomId();
  lastUse_[id] = Clock::now();
  return id;
}

void SessionTable::Use(const std::string& id) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = lastUse_.find(id);
  if (found == lastUse_.end()) RefuseSession();
  found->second = Clock::now();
}

void SessionTable::Close(const std::string& id) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (lastUse_.erase(id) == 0) RefuseSession();
}

std::size_t SessionTable::Count() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return lastUse_.size();
}

void SessionTable::DropIdle() {
  const Clock::time_point oldest = Clock::now() - idleLimit_;
  for (auto session = lastUse_.begin(); session != lastUse_.end();) {
    session = session->second < oldest ? lastUse_.erase(session) : std::next(session);
  }
}

}  // namespace qv::devservice
