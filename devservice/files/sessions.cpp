#include "devservice/files/sessions.h"

#include <algorithm>

#include "devservice/values/fault_codes.h"
#include "devservice/values/random_id.h"

namespace qv::devservice {
namespace {

[[noreturn]] void RefuseSession() {
  throw FaultError(kUnknownSession, "The session does not exist on this service.", "session");
}

}  // namespace

SessionTable::SessionTable(std::vector<ServiceUser> users, const SessionLimits& limits)
    : users_(std::move(users)), limits_(limits) {}

void SessionTable::CheckUser(const Credentials& credentials) const {
  bool known = users_.empty() && !credentials.userName.empty();
  for (const ServiceUser& user : users_) {
    if (user.name == credentials.userName && user.password == credentials.password) known = true;
  }
  if (!known) throw FaultError(kUserRefused, "The user name or the password is wrong.", "session");
}

std::string SessionTable::Open(std::string_view connectionString) {
  CheckUser(ParseConnectionString(connectionString));
  std::shared_ptr<SessionFiles> dropped;  // Its files are deleted outside the lock.
  const std::lock_guard<std::mutex> lock(mutex_);
  if (sessions_.size() >= limits_.sessions) dropped = DropOldestIdle();
  std::string id = RandomId();
  sessions_[id] = {Clock::now(), std::make_shared<SessionFiles>(limits_.tickets)};
  return id;
}

std::shared_ptr<SessionFiles> SessionTable::Use(const std::string& id) {
  std::shared_ptr<SessionFiles> files = Find(id);
  if (!files) RefuseSession();
  return files;
}

std::shared_ptr<SessionFiles> SessionTable::Find(const std::string& id) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = sessions_.find(id);
  if (found == sessions_.end()) return nullptr;
  found->second.lastUse = Clock::now();
  return found->second.files;
}

bool SessionTable::KnowsTicket(const std::string& ticket) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return std::any_of(sessions_.begin(), sessions_.end(),
                     [&ticket](const auto& entry) { return entry.second.files->HasTicket(ticket); });
}

bool SessionTable::KnowsPublished(const std::string& id) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return std::any_of(sessions_.begin(), sessions_.end(),
                     [&id](const auto& entry) { return entry.second.files->Published(id).has_value(); });
}

void SessionTable::Close(const std::string& id) {
  std::map<std::string, Session>::node_type ended;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    ended = sessions_.extract(id);
  }
  if (!ended) RefuseSession();
  ended.mapped().files->Close();
}

std::size_t SessionTable::Count() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return sessions_.size();
}

// Files with a second owner belong to a request that is running.
std::shared_ptr<SessionFiles> SessionTable::DropOldestIdle() {
  auto oldest = sessions_.end();
  for (auto session = sessions_.begin(); session != sessions_.end(); ++session) {
    if (session->second.files.use_count() > 1) continue;
    if (oldest == sessions_.end() || session->second.lastUse < oldest->second.lastUse) oldest = session;
  }
  if (oldest == sessions_.end())
    throw FaultError(kTooManySessions, "There are too many open sessions.", "session");
  std::shared_ptr<SessionFiles> files = std::move(oldest->second.files);
  sessions_.erase(oldest);
  files->Close();
  return files;
}

}  // namespace qv::devservice
