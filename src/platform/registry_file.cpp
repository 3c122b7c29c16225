#include "platform/registry_file.h"

#include <algorithm>
#include <map>
#include <utility>

#include "platform/registry_lines.h"

namespace qv {
namespace {

constexpr std::size_t kNone = std::string_view::npos;

char16_t FoldedUnit(char16_t unit) noexcept {
  return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}

bool SameKey(std::u16string_view a, std::u16string_view b) noexcept {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                    [](char16_t left, char16_t right) { return FoldedUnit(left) == FoldedUnit(right); });
}

// Gathers entries; a key that comes again gets its new value in its old place.
class EntryList {
 public:
  void EnterSection(std::string_view key) {
    key_ = key;
    place_ = kNone;
  }
  void SetText(std::string_view text) {
    if (place_ == kNone) place_ = PlaceOfKey();
    entries_[place_].value = FromUtf8(text);
  }
  std::vector<RegistryEntry> Take() { return std::move(entries_); }

 private:
  std::size_t PlaceOfKey() {
    const WideString key = FromUtf8(key_);
    std::u16string folded(key.view());
    std::transform(folded.begin(), folded.end(), folded.begin(), FoldedUnit);
    const auto [found, isNew] = places_.emplace(std::move(folded), entries_.size());
    if (isNew) entries_.push_back({key, WideString()});
    return found->second;
  }

  std::vector<RegistryEntry> entries_;
  std::map<std::u16string, std::size_t> places_;
  std::string_view key_;
  std::size_t place_ = kNone;  // of key_, once it has a text
};

// The last section of a key, and all lines that hold a value of its own.
struct KeyPlaces {
  std::size_t sectionEnd = kNone;  // byte offset behind the section's line
  std::vector<RegistryLine> values;
};

KeyPlaces PlacesOf(const WideString& key, std::string_view bytes) {
  KeyPlaces places;
  bool inside = false;
  for (const RegistryLine& line : ReadRegistryLines(bytes)) {
    if (line.kind == RegistryLineKind::kSection) inside = SameKey(FromUtf8(line.key).view(), key.view());
    if (!inside || line.kind == RegistryLineKind::kKept) continue;
    if (line.kind == RegistryLineKind::kSection)
      places.sectionEnd = line.end;
    else
      places.values.push_back(line);
  }
  return places;
}

std::string ValueText(const WideString& value) {
  std::string text = "@=\"";
  for (const char byte : ToUtf8(value)) {
    if (byte == '\\' || byte == '"') text += '\\';
    text += byte;
  }
  return text += '"';
}

// New lines end as the file's first one does.
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
  text.append("[HKEY_LOCAL_MACHINE\\").append(ToUtf8(key)).append("]").append(lineEnd);
  return text.append(value).append(lineEnd);
}

}  // namespace

RegistryContent ParseRegistryFile(std::string_view bytes) {
  RegistryContent content;
  try {
    EntryList list;
    for (const RegistryLine& line : ReadRegistryLines(bytes)) {
      if (line.kind == RegistryLineKind::kSection) list.EnterSection(line.key);
      if (line.kind == RegistryLineKind::kText) list.SetText(line.text);
    }
    content.entries = list.Take();
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

std::string WithRegistryValue(std::string_view bytes, const WideString& key, const WideString& value) {
  const KeyPlaces places = PlacesOf(key, bytes);
  const std::string text = ValueText(value);
  const std::string_view lineEnd = LineEndOf(bytes);
  if (!places.values.empty()) {
    const RegistryLine& last = places.values.back();
    return Joined(bytes.substr(0, last.begin), text, bytes.substr(last.end), lineEnd);
  }
  if (places.sectionEnd == kNone) return WithNewSection(bytes, key, text);
  return Joined(bytes.substr(0, places.sectionEnd), text, bytes.substr(places.sectionEnd), lineEnd);
}

std::string WithoutRegistryValue(std::string_view bytes, const WideString& key) {
  std::string text;
  std::size_t at = 0;
  for (const RegistryLine& value : PlacesOf(key, bytes).values) {
    text.append(bytes.substr(at, value.begin - at));
    at = value.end;
  }
  return text.append(bytes.substr(at));
}

}  // namespace qv
