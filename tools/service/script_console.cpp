#include "tools/service/script_console.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <utility>

#include "tools/report/json_text.h"
#include "tools/report/unsafe_characters.h"

namespace qv::cli {

namespace {

// Each line begins with the level, so that a script cannot imitate this program's messages.
std::string TextLines(const devservice::ConsoleMessage& message) {
  const std::string start = "console." + message.level + ": ";
  std::string lines;
  std::size_t at = 0;
  while (at != std::string::npos) {
    const std::size_t end = message.text.find('\n', at);
    std::string line = message.text.substr(at, end == std::string::npos ? end : end - at);
    if (end != std::string::npos && !line.empty() && line.back() == '\r') line.pop_back();
    lines += start + EscapeForTerminal(line) + "\n";
    at = end == std::string::npos ? end : end + 1;
  }
  return lines;
}

std::string JsonLine(const devservice::ConsoleMessage& message) {
  nlohmann::ordered_json whole;
  whole["console"]["level"] = message.level;
  whole["console"]["text"] = message.text;
  return JsonText(whole) + "\n";
}

}  // namespace

devservice::ConsoleSink WriteConsole(bool asJson, std::ostream& err) {
  return [asJson, &err](const devservice::ConsoleMessage& message) {
    err << (asJson ? JsonLine(message) : TextLines(message)) << std::flush;
  };
}

devservice::ConsoleSink Both(devservice::ConsoleSink first, devservice::ConsoleSink second) {
  return [first = std::move(first), second = std::move(second)](const devservice::ConsoleMessage& message) {
    first(message);
    second(message);
  };
}

}  // namespace qv::cli
