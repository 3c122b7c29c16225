#include "devservice/files/session_files.h"

namespace qv::devservice {

// The last owner of a file deletes it; here that happens after the lock is released.
void SessionFiles::Close() {
  std::map<std::string, File> uploads;
  std::map<std::string, PublishedFile> published;
  const std::lock_guard<std::mutex> lock(mutex_);
  closed_ = true;
  uploads.swap(uploads_);
  published.swap(published_);
}

bool SessionFiles::HasTicket(const std::string& ticket) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return uploads_.count(ticket) != 0;
}

std::vector<std::string> SessionFiles::Tickets() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::vector<std::string> tickets;
  for (const auto& [ticket, file] : uploads_) tickets.push_back(ticket);
  return tickets;
}

SessionFiles::File SessionFiles::Uploaded(const std::string& ticket) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = uploads_.find(ticket);
  return found == uploads_.end() ? nullptr : found->second;
}

bool SessionFiles::Store(const std::string& ticket, File file) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = uploads_.find(ticket);
  if (found == uploads_.end()) return false;
  found->second.swap(file);
  return true;
}

std::optional<PublishedFile> SessionFiles::Published(const std::string& id) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = published_.find(id);
  if (found == published_.end()) return std::nullopt;
  return found->second;
}

std::size_t SessionFiles::TicketsLeft() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return most_ - uploads_.size();
}

std::size_t SessionFiles::PublishedLeft() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return most_ - published_.size();
}

bool SessionFiles::Add(const std::vector<std::string>& tickets,
                       std::map<std::string, PublishedFile> published) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const bool room =
      tickets.size() <= most_ - uploads_.size() && published.size() <= most_ - published_.size();
  if (closed_ || !room) return false;
  for (const std::string& ticket : tickets) uploads_.emplace(ticket, nullptr);
  published_.merge(published);
  return true;
}

}  // namespace qv::devservice
