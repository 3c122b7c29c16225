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

}  // namespace

toml::table ParseToml(const std::string& path, const std::string& text) {
  toml::parse_result result = toml::parse(std::string_view(text), std::string_view());
  if (result) return std::move(result).table();
  const toml::source_position& at = result.error().source().begin;
  throw Failure(ExitStatus::kLocal, path + ": line " + std::to_string(at.line) + ", column " +
                                        std::to_string(at.column) + ": " +
                                        ReasonWithoutValues(std::string(result.error().description())));
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
