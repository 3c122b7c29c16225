#include "devservice/values/console_message.h"

namespace qv::devservice {
namespace {

// The longest beginning that ends with a whole character of UTF-8.
std::size_t WholeCharacters(const std::string& text, std::size_t most) {
  while (most > 0 && (static_cast<unsigned char>(text[most]) & 0xC0) == 0x80) --most;
  return most;
}

void CutText(std::string& text) {
  if (text.size() <= kLongestConsoleText) return;
  text.resize(WholeCharacters(text, kLongestConsoleText));
  text += "... (cut)";
}

}  // namespace

void ConsoleLimit::Pass(ConsoleMessage message) {
  if (count_ > kMostConsoleMessages) return;
  if (++count_ > kMostConsoleMessages)
    message = {"warn", "the script has sent 1000 messages to its console; further ones are left out"};
  CutText(message.text);
  sink_(message);
}

}  // namespace qv::devservice
