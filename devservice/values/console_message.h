// What a script says to its console.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace qv::devservice {

// One call of console.log or a similar function. `level` is the function's name: "log", "info", "warn",
// "error" or "debug". `text` is valid UTF-8 and may hold anything that a script can make, line ends and
// control characters included.
struct ConsoleMessage {
  std::string level;
  std::string text;
  std::string session{};  // the id of the script's session, for the program around the service; a secret
};

using ConsoleSink = std::function<void(const ConsoleMessage&)>;

// Longest text of a message, in bytes, and most messages of one run of a script.
inline constexpr std::size_t kLongestConsoleText = 8192;
inline constexpr std::size_t kMostConsoleMessages = 1000;

// Passes on the messages of one run of a script within these limits. A message says that a text was cut, or
// that messages were left out.
class ConsoleLimit {
 public:
  explicit ConsoleLimit(ConsoleSink sink) : sink_(std::move(sink)) {}
  void Pass(ConsoleMessage message);

 private:
  ConsoleSink sink_;
  std::size_t count_ = 0;
};

}  // namespace qv::devservice
