#include "registry/registry_file.h"

#include <algorithm>
#include <map>
#include <utility>

#include "registry/registry_lines.h"
#include "text/ascii.h"

namespace qv {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

bool SameKey(std::u16string_view a, std::u16string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t left, char16_t right) { return ToAsciiUpper(left) == ToAsciiUpper(right); });
}

// Collects entries; a repeated key keeps its position and gets the new value.
class EntryList {
 public:
  void EnterSection(std::string_view key) {
    key_ = FromUtf8(key);
    place_ = kNone;
  }
  void SetText(std::string_view text) {
    if (place_ == kNone) place_ = PlaceOfKey();
    content_.entries[place_].value = FromUtf8(text);
  }
  void AddNamed(std::string_view name, std::string_view text) {
    content_.named.push_back({key_, FromUtf8(name), FromUtf8(text)});
  }
  RegistryContent Take() { return std::move(content_); }

 private:
  std::size_t PlaceOfKey() {
    std::u16string folded(key_.view());
    std::transform(folded.begin(), folded.end(), folded.begin(), ToAsciiUpper<char16_t>);
    const auto [found, isNew] = places_.emplace(std::move(folded), content_.entries.size());
    if (isNew) content_.entries.push_back({key_, WideString()});
    return found->second;
  }

  RegistryContent content_;
  std::map<std::u16string, std::size_t> places_;
  WideString key_;
  std::size_t place_ = kNone;  // of key_, once it has a text
};

bool IsNamed(const RegistryLine& line) noexcept {
  return line.kind == RegistryLineKind::kNamedText || line.kind == RegistryLineKind::kNamedOther;
}

bool IsValue(const RegistryLine& line) noexcept {
  return IsNamed(line) || line.kind == RegistryLineKind::kText || line.kind == RegistryLineKind::kNoText;
}

// An empty name means the key's own value.
bool IsValueOf(const RegistryLine& line, const WideString& name) {
  if (name.IsEmpty()) return IsValue(line) && !IsNamed(line);
  return IsNamed(line) && SameKey(FromUtf8(line.name).view(), name.view());
}

// The last section of a key, and all lines that hold the value of one name.
struct KeyPlaces {
  std::size_t sectionEnd = kNone;  // byte offset after the section's line
  std::size_t valuesEnd = kNone;   // and after the last value of any name in it
  std::vector<RegistryLine> values;
};

KeyPlaces PlacesOf(const WideString& key, const WideString& name, std::string_view bytes) {
  KeyPlaces places;
  bool inside = false;
  for (const RegistryLine& line : ReadRegistryLines(bytes)) {
    const bool isSection = line.kind == RegistryLineKind::kSection;
    if (isSection) inside = SameKey(FromUtf8(line.key).view(), key.view());
    if (!inside) continue;
    if (isSection) places.sectionEnd = line.end;
    if (isSection || IsValue(line)) places.valuesEnd = line.end;
    if (IsValueOf(line, name)) places.values.push_back(line);
  }
  return places;
}

std::string Quoted(const WideString& value) {
  std::string text = "\"";
  for (const char byte : ToUtf8(value)) {
    if (byte == '\\' || byte == '"') text += '\\';
    text += byte;
  }
  return text += '"';
}

// Empty for a key without a value.
std::string ValueText(const RegistryValue& value) {
  if (value.value.IsNull()) return {};
  return (value.name.IsEmpty() ? "@" : Quoted(value.name)) + "=" + Quoted(value.value);
}

// New lines have the line end of the file's first one.
std::string_view LineEndOf(std::string_view bytes) noexcept {
  const std::size_t lineFeed = bytes.find('\n');
  return lineFeed != kNone && lineFeed > 0 && bytes[lineFeed - 1] == '\r' ? "\r\n" : "\n";
}

bool EndsLine(std::string_view text) noexcept {
  return !text.empty() && text.back() == '\n';
}

// `before` and `after` are the file around the place of the new value.
std::string Joined(std::string_view before, const std::string& value, std::string_view after,
                   std::string_view lineEnd) {
  std::string text(before);
  if (!before.empty() && !EndsLine(before)) text += lineEnd;
  text.append(value).append(lineEnd);
  return text.append(after);
}

std::string WithNewSection(std::string_view bytes, const WideString& key, const std::string& value) {
  const std::string_view lineEnd = LineEndOf(bytes);
  std::string text(bytes);
  if (!text.empty() && !EndsLine(text)) text += lineEnd;
  if (!text.empty()) text += lineEnd;
  text.append("[").append(kLocalMachine).append("\\").append(ToUtf8(key)).append("]").append(lineEnd);
  return value.empty() ? text : text.append(value).append(lineEnd);
}

bool IsKeyOrBelow(std::u16string_view key, std::u16string_view top) noexcept {
  if (key.size() > top.size() && key[top.size()] == u'\\') key = key.substr(0, top.size());
  return SameKey(key, top);
}

bool IsSectionBelow(const RegistryLine& line, const WideString& top) {
  return line.kind == RegistryLineKind::kSection && IsKeyOrBelow(FromUtf8(line.key).view(), top.view());
}

bool IsSectionOf(const RegistryLine& line, const WideString& key) {
  return line.kind == RegistryLineKind::kSection && SameKey(FromUtf8(line.key).view(), key.view());
}

// The lines of the key's own value.
std::vector<bool> OwnValues(const std::vector<RegistryLine>& lines, const WideString& key) {
  std::vector<bool> own(lines.size(), false);
  bool inside = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (lines[i].kind == RegistryLineKind::kSection) inside = IsSectionOf(lines[i], key);
    own[i] = inside && IsValueOf(lines[i], WideString());
  }
  return own;
}

// Whether only blank lines are left in the section that begins at this line.
bool IsLeftEmpty(const std::vector<RegistryLine>& lines, const std::vector<bool>& goes, std::size_t section) {
  for (std::size_t i = section + 1; i < lines.size() && lines[i].kind != RegistryLineKind::kSection; ++i)
    if (!goes[i] && lines[i].kind != RegistryLineKind::kBlank) return false;
  return true;
}

// The lines that are kept. The blank line before a removed section is removed too.
std::string Remaining(std::string_view bytes, const std::vector<RegistryLine>& lines,
                      const std::vector<bool>& goes) {
  std::string text;
  std::string_view blank;  // the previous line, if blank; not yet in `text`
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const RegistryLine& line = lines[i];
    if (!(goes[i] && line.kind == RegistryLineKind::kSection)) text.append(blank);
    const std::string_view own = bytes.substr(line.begin, line.end - line.begin);
    const bool isBlank = line.kind == RegistryLineKind::kBlank;
    blank = isBlank ? own : std::string_view();
    if (!isBlank && !goes[i]) text.append(own);
  }
  return text.append(blank);
}

}  // namespace

RegistryContent ParseRegistryFile(std::string_view bytes) {
  RegistryContent content;
  try {
    EntryList list;
    for (const RegistryLine& line : ReadRegistryLines(bytes)) {
      if (line.kind == RegistryLineKind::kSection) list.EnterSection(line.key);
      if (line.kind == RegistryLineKind::kText) list.SetText(line.text);
      if (line.kind == RegistryLineKind::kNamedText) list.AddNamed(line.name, line.text);
    }
    content = list.Take();
  } catch (const RegistryDamage& damage) {
    content.damage = damage.what();
  }
  return content;
}

WideString FindRegistryValue(const std::vector<RegistryEntry>& entries, const WideString& key) {
  for (const RegistryEntry& entry : entries)
    if (SameKey(entry.key.view(), key.view())) return entry.value;
  return WideString();
}

WideString FindNamedRegistryValue(const std::vector<RegistryValue>& named, const WideString& key,
                                  const WideString& name) {
  const auto found = std::find_if(named.rbegin(), named.rend(), [&](const RegistryValue& value) {
    return SameKey(value.name.view(), name.view()) && SameKey(value.key.view(), key.view());
  });
  return found == named.rend() ? WideString() : found->value;
}

std::string WithRegistryValue(std::string_view bytes, const WideString& key, const WideString& value) {
  return WithRegistryValue(bytes, {key, WideString(), value.IsNull() ? WideString(u"") : value});
}

// The key's own value is first in its section; new named ones are last.
std::string WithRegistryValue(std::string_view bytes, const RegistryValue& value) {
  const KeyPlaces places = PlacesOf(value.key, value.name, bytes);
  const std::string text = ValueText(value);
  const std::string_view lineEnd = LineEndOf(bytes);
  if (places.sectionEnd == kNone) return WithNewSection(bytes, value.key, text);
  if (text.empty()) return std::string(bytes);
  if (!places.values.empty()) {
    const RegistryLine& last = places.values.back();
    return Joined(bytes.substr(0, last.begin), text, bytes.substr(last.end), lineEnd);
  }
  const std::size_t place = value.name.IsEmpty() ? places.sectionEnd : places.valuesEnd;
  return Joined(bytes.substr(0, place), text, bytes.substr(place), lineEnd);
}

std::string WithoutRegistryKey(std::string_view bytes, const WideString& key) {
  const std::vector<RegistryLine> lines = ReadRegistryLines(bytes);
  std::vector<bool> goes(lines.size(), false);
  bool inside = false;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const bool isSection = lines[i].kind == RegistryLineKind::kSection;
    if (isSection) inside = IsSectionBelow(lines[i], key);
    goes[i] = inside && (isSection || IsValue(lines[i]));
  }
  return Remaining(bytes, lines, goes);
}

std::string WithoutRegistryValue(std::string_view bytes, const WideString& key) {
  const std::vector<RegistryLine> lines = ReadRegistryLines(bytes);
  std::vector<bool> goes = OwnValues(lines, key);
  if (std::find(goes.begin(), goes.end(), true) == goes.end()) return std::string(bytes);
  for (std::size_t i = 0; i < lines.size(); ++i)
    if (IsSectionOf(lines[i], key)) goes[i] = IsLeftEmpty(lines, goes, i);
  return Remaining(bytes, lines, goes);
}

}  // namespace qv
