#include "tools/settings/profile_edit.h"

#include <algorithm>
#include <map>
#include <utility>

#include "tools/report/failure.h"
#include "tools/settings/toml_text.h"

namespace qv::cli {

namespace {

constexpr char kUsual[] = "default";

// What the file says, without the lines where it does: profile and key, and the text.
using Content = std::map<std::pair<std::string, std::string>, std::string>;

Content ContentOf(const ProfileFile& file) {
  Content content;
  if (!file.usual.empty()) content[{"", kUsual}] = file.usual;
  for (const Profile& profile : file.profiles) {
    content[{profile.name, ""}] = "";
    for (const ProfileValue& value : profile.values) content[{profile.name, value.setting->key}] = value.text;
  }
  return content;
}

// The table that has the value, or would have it; null if there is none.
const toml::table* TableOf(const toml::table& root, const std::string& profile) {
  if (profile.empty()) return &root;
  return root["profile"][profile].as_table();
}

std::string LineEndOf(const std::string& text) {
  const std::size_t end = text.find('\n');
  return end != std::string::npos && end > 0 && text[end - 1] == '\r' ? "\r\n" : "\n";
}

// After the line `last` (0: none).
std::string WithLineAfter(std::string text, unsigned last, const std::string& line) {
  const std::string lineEnd = LineEndOf(text);
  std::size_t at = OffsetOf(text, {last + 1, 1});
  if (at > 0 && text[at - 1] != '\n') {
    text.insert(at, lineEnd);
    at += lineEnd.size();
  }
  return text.insert(at, line + lineEnd);
}

unsigned LastLineOf(const toml::table& profile) {
  unsigned last = profile.source().begin.line;
  for (const auto& [key, value] : profile) last = std::max<unsigned>(last, value.source().end.line);
  return last;
}

std::string WithProfile(const std::string& text, const std::string& name, const std::string& line) {
  const std::string lineEnd = LineEndOf(text);
  std::string longer = text;
  if (!text.empty() && text.back() != '\n') longer += lineEnd;
  if (!text.empty()) longer += lineEnd;
  return longer + "[profile." + name + "]" + lineEnd + line + lineEnd;
}

std::string WithNewLine(const std::string& text, const toml::table& root, const ProfilePlace& place,
                        const std::string& line) {
  if (place.profile.empty()) return WithLineAfter(text, 0, line);
  const toml::table* profile = TableOf(root, place.profile);
  return profile == nullptr ? WithProfile(text, place.profile, line)
                            : WithLineAfter(text, LastLineOf(*profile), line);
}

std::string Replaced(const std::string& text, const toml::source_region& where, const std::string& value) {
  const std::size_t begin = OffsetOf(text, where.begin);
  return text.substr(0, begin) + value + text.substr(OffsetOf(text, where.end));
}

// A profile may be written in other forms, such as an inline table, which a change by lines would break.
std::string Checked(const std::string& path, const std::string& changed, const Content& expected,
                    const ProfilePlace& place) {
  bool isExpected = false;
  try {
    isExpected = ContentOf(ParseProfiles(path, changed)) == expected;
  } catch (const Failure&) {
  }
  if (isExpected) return changed;
  throw Failure(ExitStatus::kLocal,
                path + ": " + place.key +
                    " is written in a form that only an editor can change; in the usual one "
                    "it has its own line below [profile.NAME]");
}

}  // namespace

std::string WithValue(const std::string& path, const std::string& text, const ProfilePlace& place,
                      const std::string& value) {
  Content expected = ContentOf(ParseProfiles(path, text));
  if (!place.profile.empty()) expected[{place.profile, ""}] = "";
  expected[{place.profile, place.key}] = value;
  const toml::table root = ParseToml(path, text);
  const toml::table* table = TableOf(root, place.profile);
  const toml::node* old = table == nullptr ? nullptr : table->get(place.key);
  const std::string toml = ToToml(value);
  return Checked(path,
                 old != nullptr ? Replaced(text, old->source(), toml)
                                : WithNewLine(text, root, place, place.key + " = " + toml),
                 expected, place);
}

std::string WithoutValue(const std::string& path, const std::string& text, const ProfilePlace& place) {
  Content expected = ContentOf(ParseProfiles(path, text));
  expected.erase({place.profile, place.key});
  const toml::table root = ParseToml(path, text);
  const toml::table& table = *TableOf(root, place.profile);
  const auto found = table.find(place.key);
  const unsigned first = found->first.source().begin.line;
  const std::size_t begin = OffsetOf(text, {first, 1});
  const std::size_t end = OffsetOf(text, {found->second.source().end.line + 1, 1});
  return Checked(path, text.substr(0, begin) + text.substr(end), expected, place);
}

}  // namespace qv::cli
