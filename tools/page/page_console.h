// What running scripts say to their console, for the calls that run them.
#pragma once

#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "devservice/values/console_message.h"

namespace qv::cli {

// Thread-safe.
class PageConsole {
 public:
  // Collects the messages of the session's scripts until End, which returns them.
  void Begin(const std::string& session);
  std::vector<devservice::ConsoleMessage> End(const std::string& session);

  // Keeps the message if anybody collects those of its session.
  void Take(const devservice::ConsoleMessage& message);

 private:
  std::mutex mutex_;
  std::map<std::string, std::vector<devservice::ConsoleMessage>> messages_;  // by session
};

}  // namespace qv::cli
