#include "tools/shell/history_text.h"

#include <algorithm>
#include <string_view>

namespace qv::cli {

namespace {

constexpr std::size_t kLongestEntry = 65536;
constexpr std::size_t kShortestTicket = 4;  // a shorter one is found everywhere

char Lowered(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// Past what may stand between the parts of "usid" : "1234".
std::size_t SkipQuotes(const std::string& text, std::size_t at) {
  return std::min(text.find_first_not_of(" \t\"'`", at), text.size());
}

// Where the value begins of a name that ends at `at`; the end of the text if there is none.
std::size_t ValueAfter(const std::string& text, std::size_t at) {
  at = SkipQuotes(text, at);
  if (text.compare(at, 3, "%3d") == 0) return SkipQuotes(text, at + 3);
  const bool isName = at < text.size() && (text[at] == '=' || text[at] == ':' || text[at] == '>');
  return isName ? SkipQuotes(text, at + 1) : text.size();
}

// Whether a value has the name of a secret, whoever's that is.
bool HoldsNamedSecret(const std::string& entry) {
  std::string text = entry;
  std::transform(text.begin(), text.end(), text.begin(), Lowered);
  for (const std::string name : {"ticket", "password", "usid"})
    for (std::size_t at = text.find(name); at != std::string::npos; at = text.find(name, at + 1)) {
      const std::size_t value = ValueAfter(text, at + name.size());
      if (value < text.size() && std::string("&;<,)}]").find(text[value]) == std::string::npos) return true;
    }
  return false;
}

}  // namespace

std::string HistoryLine(const std::string& entry) {
  std::string line;
  for (const char c : entry) {
    if (c == '\n')
      line += "\\n";
    else
      line += c == '\\' ? "\\\\" : std::string(1, c);
  }
  return line;
}

std::string EntryOf(const std::string& line) {
  std::string entry;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const bool isEscape = line[i] == '\\' && i + 1 < line.size();
    if (isEscape) ++i;
    entry += isEscape && line[i] == 'n' ? '\n' : line[i];
  }
  return entry;
}

bool MayBeKept(const std::string& entry, const scriptwells::Masking& secrets) {
  if (entry.empty() || entry.front() == ' ' || entry.size() > kLongestEntry) return false;
  return !HoldsNamedSecret(entry) && secrets.FindIn(entry).empty();
}

std::vector<std::string> TicketsInAddresses(const std::string& text) {
  constexpr std::string_view kName = "ticket=";
  std::vector<std::string> tickets;
  for (std::size_t at = text.find("://"); at != std::string::npos; at = text.find("://", at)) {
    const std::size_t end = std::min(text.find_first_of(" \t\r\n\"'<>", at), text.size());
    const std::string address = text.substr(at, end - at);
    at = end;
    for (std::size_t name = address.find(kName); name != std::string::npos;
         name = address.find(kName, name + 1)) {
      const std::size_t value = name + kName.size();
      const std::string ticket = address.substr(value, address.find_first_of("&#", value) - value);
      if (ticket.size() >= kShortestTicket) tickets.push_back(ticket);
    }
  }
  return tickets;
}

}  // namespace qv::cli
