#include "tools/page/page_console.h"

#include <utility>

namespace qv::cli {

void PageConsole::Begin(const std::string& session) {
  const std::lock_guard<std::mutex> lock(mutex_);
  messages_[session].clear();
}

std::vector<devservice::ConsoleMessage> PageConsole::End(const std::string& session) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = messages_.find(session);
  if (found == messages_.end()) return {};
  std::vector<devservice::ConsoleMessage> messages = std::move(found->second);
  messages_.erase(found);
  return messages;
}

void PageConsole::Take(const devservice::ConsoleMessage& message) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = messages_.find(message.session);
  if (found != messages_.end()) found->second.push_back(message);
}

}  // namespace qv::cli
