#include "face/exchange/masking.h"

#include <algorithm>
#include <array>
#include <utility>

#include "face/exchange/escaped_text.h"
#include "qvscriptwells/wide_string.h"

namespace scriptwells {

namespace {

constexpr std::string_view kMask = "***";
constexpr std::string_view kBase64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
// Shorter pieces would be found everywhere.
constexpr std::size_t kShortestBase64 = 4;

using Found = Masking::Found;

constexpr Escape kEscapes[] = {Escape::kXml, Escape::kPercent, Escape::kJson};

// Of none, one or two escapes. A single one is not the same as the pairs with it: in a pair "%41" is always
// "A".
std::vector<std::vector<Escape>> Nestings(std::size_t most) {
  std::vector<std::vector<Escape>> nestings{{}};
  for (const Escape outer : kEscapes) {
    if (most > 0) nestings.push_back({outer});
    for (const Escape inner : kEscapes)
      if (most > 1) nestings.push_back({outer, inner});
  }
  return nestings;
}

std::string Utf16Bytes(const std::u16string& units, bool isBig) {
  std::string bytes;
  for (const char16_t unit : units) {
    const char high = static_cast<char>(unit >> 8);
    const char low = static_cast<char>(unit & 0xFF);
    bytes += isBig ? high : low;
    bytes += isBig ? low : high;
  }
  return bytes;
}

// The digits that the bytes alone decide when `before` bytes of other content are in front.
std::string Base64Core(std::string_view bytes, std::size_t before) {
  const std::size_t bits = 8 * (before + bytes.size());
  std::string core;
  for (std::size_t bit = (8 * before + 5) / 6 * 6; bit + 6 <= bits; bit += 6) {
    const std::size_t at = bit / 8 - before;
    const unsigned first = static_cast<unsigned char>(bytes[at]);
    const unsigned second = at + 1 < bytes.size() ? static_cast<unsigned char>(bytes[at + 1]) : 0;
    core += kBase64[((first << 8 | second) >> (10 - bit % 8)) & 0x3F];
  }
  return core;
}

// The byte that may begin a match, for each of them.
using Beginnings = std::array<bool, 256>;

void AllowUnit(Beginnings& beginnings, char16_t unit, Coding coding) {
  if (coding == Coding::kUtf16Big) beginnings[unit >> 8] = true;
  if (coding == Coding::kUtf16Little || unit < 0x100) beginnings[unit & 0xFF] = true;
  // The first byte of a character in UTF-8 has ones above.
  if (coding == Coding::kUtf8 && unit >= 0x80)
    for (std::size_t byte = 0xC2; byte < 0xF5; ++byte) beginnings[byte] = true;
}

Beginnings BeginningsOf(const std::u16string& needle, Coding coding, const std::vector<Escape>& escapes) {
  Beginnings beginnings{};
  AllowUnit(beginnings, needle[0], coding);
  for (const Escape escape : escapes)
    AllowUnit(beginnings, static_cast<unsigned char>(IntroducerOf(escape)), coding);
  if (needle[0] == u' ') AllowUnit(beginnings, u'+', coding);
  return beginnings;
}

bool HasPercent(const std::vector<Escape>& escapes) {
  return std::find(escapes.begin(), escapes.end(), Escape::kPercent) != escapes.end();
}

// The units of a character; the second one is 0 for most.
std::pair<char16_t, char16_t> UnitsOf(char32_t value) {
  if (value <= 0xFFFF) return {static_cast<char16_t>(value), u'\0'};
  return {static_cast<char16_t>(0xD7C0 + (value >> 10)), static_cast<char16_t>(0xDC00 | (value & 0x3FF))};
}

// Where the needle ends that begins at this byte; 0 if none does.
std::size_t EndOfMatch(const EscapedText& text, std::size_t at, const std::u16string& needle,
                       bool plusIsBlank) {
  for (std::size_t i = 0; i < needle.size();) {
    const EscapedText::Character next = text.At(at);
    if (next.value == EscapedText::kEnd) return 0;
    const auto [unit, second] = UnitsOf(next.value);
    const bool isBlank = plusIsBlank && unit == u'+' && needle[i] == u' ';
    if (unit != needle[i] && !isBlank) return 0;
    ++i;
    if (second != 0 && (i == needle.size() || needle[i++] != second)) return 0;
    at = next.end;
  }
  return at;
}

void FindAll(const EscapedText& text, Coding coding, const std::u16string& needle, std::size_t secret,
             std::vector<Found>* found) {
  const Beginnings beginnings = BeginningsOf(needle, coding, text.Escapes());
  const bool plusIsBlank = HasPercent(text.Escapes());
  const std::string_view bytes = text.Bytes();
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    if (!beginnings[static_cast<unsigned char>(bytes[at])]) continue;
    const std::size_t end = EndOfMatch(text, at, needle, plusIsBlank);
    if (end != 0) found->push_back({at, end, secret});
  }
}

std::string Replaced(const std::string& text, std::vector<Found> ranges) {
  std::sort(ranges.begin(), ranges.end(), [](const Found& a, const Found& b) { return a.begin < b.begin; });
  std::string masked;
  std::size_t done = 0;
  for (std::size_t i = 0; i < ranges.size();) {
    Found joined = ranges[i];
    for (++i; i < ranges.size() && ranges[i].begin < joined.end; ++i)
      joined.end = std::max(joined.end, ranges[i].end);
    masked.append(text, done, joined.begin - done).append(kMask);
    done = joined.end;
  }
  return masked.append(text, done);
}

}  // namespace

void Masking::Add(const std::string& secret) {
  ++secrets_;
  if (secret.empty()) return;
  const std::u16string units(qv::FromUtf8(secret).view());
  AddNeedle(units, false);
  AddBase64(secret);
  AddBase64(Utf16Bytes(units, false));
  AddBase64(Utf16Bytes(units, true));
}

// At each of the three places within a group of four digits, in both alphabets.
void Masking::AddBase64(std::string_view bytes) {
  for (std::size_t before = 0; before < 3; ++before) {
    std::string core = Base64Core(bytes, before);
    if (core.size() < kShortestBase64) continue;
    AddNeedle({core.begin(), core.end()}, true);
    std::replace(core.begin(), core.end(), '+', '-');
    std::replace(core.begin(), core.end(), '/', '_');
    AddNeedle({core.begin(), core.end()}, true);
  }
}

void Masking::AddNeedle(std::u16string units, bool isBase64) {
  for (const Needle& known : needles_)
    if (known.units == units) return;
  needles_.push_back({std::move(units), isBase64, secrets_ - 1});
}

std::vector<Found> Masking::FindIn(std::string_view text) const {
  static const std::vector<std::vector<Escape>> kTwice = Nestings(2);
  static const std::vector<std::vector<Escape>> kOnce = Nestings(1);
  std::vector<Found> found;
  const bool isWide = text.find('\0') != std::string_view::npos;
  const auto search = [&](const Needle& needle, Coding coding, const std::vector<Escape>& escapes) {
    if (!escapes.empty() && text.find(IntroducerOf(escapes[0])) == std::string_view::npos &&
        !(needle.units.find(u' ') != std::u16string::npos && HasPercent(escapes)))
      return;
    FindAll(EscapedText(text, coding, escapes), coding, needle.units, needle.secret, &found);
  };
  for (const Needle& needle : needles_) {
    for (const auto& escapes : needle.isBase64 ? kOnce : kTwice) search(needle, Coding::kUtf8, escapes);
    for (const auto& escapes : kOnce) {
      if (!isWide) break;
      search(needle, Coding::kUtf16Little, escapes);
      search(needle, Coding::kUtf16Big, escapes);
    }
  }
  return found;
}

std::string Masking::Masked(std::string text) const {
  std::vector<Found> found = FindIn(text);
  return found.empty() ? text : Replaced(text, std::move(found));
}

}  // namespace scriptwells
