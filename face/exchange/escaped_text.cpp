#include "face/exchange/escaped_text.h"

#include <utf8.h>

#include <charconv>
#include <iterator>
#include <optional>

namespace scriptwells {

namespace {

using Character = EscapedText::Character;

constexpr std::size_t kLongestName = 10;  // of an entity, without "&" and ";"
constexpr Character kNoCharacter = {EscapedText::kEnd, 0};

struct EntityRow {
  std::string_view name;
  char32_t value;
};
constexpr EntityRow kEntities[] = {
    {"amp", U'&'}, {"lt", U'<'}, {"gt", U'>'}, {"quot", U'"'}, {"apos", U'\''}};

struct JsonRow {
  char32_t letter;
  char32_t value;
};
constexpr JsonRow kJson[] = {{U'"', U'"'},  {U'\\', U'\\'}, {U'/', U'/'},  {U'b', U'\b'},  {U'f', U'\f'},
                             {U'n', U'\n'}, {U'r', U'\r'},  {U't', U'\t'}, {U'\'', U'\''}, {U'`', U'`'}};

std::optional<char32_t> NumberOf(std::string_view digits, int base) {
  unsigned value = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value, base);
  if (result.ec != std::errc() || result.ptr != digits.data() + digits.size() || value > 0x10FFFF)
    return std::nullopt;
  return value;
}

// Of "lt", "#60" and "#x3c".
std::optional<char32_t> EntityOf(std::string_view name) {
  if (name.size() > 1 && name[0] == '#')
    return name[1] == 'x' || name[1] == 'X' ? NumberOf(name.substr(2), 16) : NumberOf(name.substr(1), 10);
  for (const EntityRow& row : kEntities)
    if (row.name == name) return row.value;
  return std::nullopt;
}

// The bytes of a character in UTF-8 that begins with this one; 0 for a byte that begins none.
int SizeOfUtf8(char32_t first) noexcept {
  if (first < 0x80) return 1;
  if (first >= 0xC2 && first < 0xE0) return 2;
  if (first >= 0xE0 && first < 0xF0) return 3;
  return first >= 0xF0 && first < 0xF5 ? 4 : 0;
}

// Of whole characters only.
std::optional<char32_t> CharacterOf(std::string_view bytes) {
  if (!utf8::is_valid(bytes.begin(), bytes.end())) return std::nullopt;
  return utf8::unchecked::peek_next(bytes.begin());
}

char32_t ByteOf(std::string_view text, std::size_t at) noexcept {
  return static_cast<unsigned char>(text[at]);
}

}  // namespace

char IntroducerOf(Escape escape) noexcept {
  switch (escape) {
    case Escape::kXml:
      return '&';
    case Escape::kPercent:
      return '%';
    case Escape::kJson:
      break;
  }
  return '\\';
}

Character EscapedText::Read(std::size_t at, std::size_t level) const {
  if (level == 0) return ReadPlain(at);
  const Escape escape = escapes_[level - 1];
  const Character first = Read(at, level - 1);
  if (first.value != static_cast<char32_t>(IntroducerOf(escape))) return first;
  switch (escape) {
    case Escape::kXml:
      return ReadXml(first, level - 1);
    case Escape::kPercent:
      return ReadPercent(first, level - 1);
    case Escape::kJson:
      break;
  }
  return ReadJson(first, level - 1);
}

Character EscapedText::ReadPlain(std::size_t at) const {
  if (at >= text_.size()) return {kEnd, at};
  if (coding_ != Coding::kUtf8) return ReadUtf16(at);
  const char32_t first = ByteOf(text_, at);
  const auto size = static_cast<std::size_t>(SizeOfUtf8(first));
  if (size < 2 || at + size > text_.size()) return {first, at + 1};
  const std::optional<char32_t> whole = CharacterOf(text_.substr(at, size));
  return whole ? Character{*whole, at + size} : Character{first, at + 1};
}

Character EscapedText::ReadUtf16(std::size_t at) const {
  const char32_t first = ByteOf(text_, at);
  if (at + 1 == text_.size()) return {first, at + 1};
  const char32_t second = ByteOf(text_, at + 1);
  return {coding_ == Coding::kUtf16Big ? first << 8 | second : second << 8 | first, at + 2};
}

// Each of these returns `first` if it begins no escape.

Character EscapedText::ReadXml(Character first, std::size_t level) const {
  std::string name;
  Character next = Read(first.end, level);
  for (; next.value != U';'; next = Read(next.end, level)) {
    if (name.size() == kLongestName || next.value <= U' ' || next.value > U'~') return first;
    name += static_cast<char>(next.value);
  }
  const std::optional<char32_t> value = EntityOf(name);
  return value ? Character{*value, next.end} : first;
}

// The number, kNoCharacter if there are not so many digits.
Character EscapedText::ReadHex(std::size_t at, int digits, std::size_t level) const {
  std::string text;
  Character next = {0, at};
  while (digits-- > 0) {
    next = Read(next.end, level);
    if (next.value > U'~') return kNoCharacter;
    text += static_cast<char>(next.value);
  }
  const std::optional<char32_t> value = NumberOf(text, 16);
  return value ? Character{*value, next.end} : kNoCharacter;
}

// One byte, or all bytes of a character in UTF-8.
Character EscapedText::ReadPercent(Character first, std::size_t level) const {
  const Character byte = ReadHex(first.end, 2, level);
  if (byte.value == kEnd) return first;
  std::string bytes(1, static_cast<char>(byte.value));
  Character next = byte;
  for (int left = SizeOfUtf8(byte.value) - 1; left > 0; --left) {
    const Character introducer = Read(next.end, level);
    next = introducer.value == U'%' ? ReadHex(introducer.end, 2, level) : kNoCharacter;
    if (next.value == kEnd) return byte;
    bytes += static_cast<char>(next.value);
  }
  const std::optional<char32_t> whole = CharacterOf(bytes);
  return whole ? Character{*whole, next.end} : byte;
}

Character EscapedText::ReadJson(Character first, std::size_t level) const {
  const Character letter = Read(first.end, level);
  if (letter.value == U'u' || letter.value == U'x') {
    const Character unit = ReadHex(letter.end, letter.value == U'u' ? 4 : 2, level);
    return unit.value == kEnd ? first : unit;
  }
  for (const JsonRow& row : kJson)
    if (row.letter == letter.value) return {row.value, letter.end};
  return first;
}

std::string DecodeXmlText(std::string_view text) {
  const EscapedText escaped(text, Coding::kUtf8, {Escape::kXml});
  std::u16string units;
  for (Character next = escaped.At(0); next.value != EscapedText::kEnd; next = escaped.At(next.end))
    if (next.value > 0xFFFF) {
      units += static_cast<char16_t>(0xD7C0 + (next.value >> 10));
      units += static_cast<char16_t>(0xDC00 | (next.value & 0x3FF));
    } else {
      units += static_cast<char16_t>(next.value);
    }
  std::string decoded;
  utf8::unchecked::utf16to8(units.begin(), units.end(), std::back_inserter(decoded));
  return decoded;
}

}  // namespace scriptwells
