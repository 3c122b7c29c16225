#define TOML_IMPLEMENTATION
#include "tools/settings/toml_text.h"

#include <algorithm>
#include <sstream>
#include <string_view>

#include "tools/report/failure.h"

namespace qv::cli {

namespace {

// The parser repeats a number that is out of range, which may be a password without quotes. Of other values
// it shows one character at most.
std::string ReasonWithoutValues(const std::string& description) {
  const std::size_t number = description.find(": '");
  if (number != std::string::npos) return description.substr(0, number) + ": out of range";
  const bool isWord = description.find("could not determine value type") != std::string::npos;
  return description + (isWord ? "; a text is written in quotes" : "");
}

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == 0x7F;
}

// After the end of a text in quotes, which begins at `at`.
std::size_t AfterQuotes(std::string_view text, std::size_t at) {
  const char quote = text[at];
  const std::string ends(text.substr(at, 3) == std::string(3, quote) ? 3 : 1, quote);
  for (at += ends.size(); at < text.size(); ++at) {
    if (quote == '"' && text[at] == '\\')
      ++at;
    else if (text.substr(at, ends.size()) == ends)
      break;
    else if (ends.size() == 1 && text[at] == '\n')
      return at;  // which is an error
  }
  at = std::min(at + ends.size(), text.size());
  // A text of several lines may end with two more.
  while (ends.size() == 3 && at < text.size() && text[at] == quote) ++at;
  return at;
}

// Where a letter stands that TOML allows in quotes and comments only; the end if nowhere. What the parser
// does with some of them is undefined.
std::size_t FindBareLetter(std::string_view text) {
  constexpr std::string_view kMark = "\xEF\xBB\xBF";
  for (std::size_t at = text.substr(0, kMark.size()) == kMark ? kMark.size() : 0; at < text.size();) {
    if (text[at] == '"' || text[at] == '\'')
      at = AfterQuotes(text, at);
    else if (text[at] == '#')
      at = std::min(text.find('\n', at), text.size());
    else if (static_cast<unsigned char>(text[at]) >= 0x80)
      return at;
    else
      ++at;
  }
  return text.size();
}

[[noreturn]] void Refuse(const std::string& path, std::size_t line, std::size_t column,
                         const std::string& reason) {
  throw Failure(ExitStatus::kLocal, path + ": line " + std::to_string(line) + ", column " +
                                        std::to_string(column) + ": " + reason);
}

void CheckLetters(const std::string& path, std::string_view text) {
  const std::size_t at = FindBareLetter(text);
  if (at == text.size()) return;
  const std::string_view before = text.substr(0, at);
  const std::string_view line = before.substr(before.rfind('\n') + 1);
  const auto isFirst = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
  Refuse(path, 1 + static_cast<std::size_t>(std::count(before.begin(), before.end(), '\n')),
         1 + static_cast<std::size_t>(std::count_if(line.begin(), line.end(), isFirst)),
         "a letter that is not ASCII, outside of quotes");
}

}  // namespace

toml::table ParseToml(const std::string& path, const std::string& text) {
  CheckLetters(path, text);
  toml::parse_result result = toml::parse(std::string_view(text), std::string_view());
  if (result) return std::move(result).table();
  const toml::source_position& at = result.error().source().begin;
  Refuse(path, at.line, at.column, ReasonWithoutValues(std::string(result.error().description())));
}

std::string ToToml(const toml::node& node) {
  std::ostringstream out;
  out << toml::toml_formatter(node, toml::format_flags::allow_unicode_strings);
  return out.str();
}

std::string ToToml(const std::string& text) {
  return ToToml(toml::value<std::string>(text));
}

std::size_t OffsetOf(const std::string& text, const toml::source_position& position) {
  std::size_t at = 0;
  for (unsigned line = 1; line < position.line && at < text.size(); ++at)
    if (text[at] == '\n') ++line;
  // A column is a character, not a byte.
  for (unsigned column = 1; column < position.column && at < text.size(); ++column) {
    ++at;
    while (at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80) ++at;
  }
  return at;
}

bool HasControlCharacter(const std::string& text) {
  return std::any_of(text.begin(), text.end(), IsControl);
}

}  // namespace qv::cli
