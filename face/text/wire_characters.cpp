#include "face/text/wire_characters.h"

#include <utf8.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <iterator>

namespace scriptwells {

namespace {

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};

// What XML 1.0 allows, as far as the basic plane goes.
constexpr Range kAllowed[] = {{0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}};

bool IsAllowed(std::uint32_t character) {
  return std::any_of(std::begin(kAllowed), std::end(kAllowed), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

std::string Named(std::uint32_t character) {
  char name[16];
  static_cast<void>(std::snprintf(name, sizeof name, "U+%04X", static_cast<unsigned>(character)));
  return name;
}

}  // namespace

std::string FirstRefusedCharacter(const std::string& text) {
  for (auto at = text.begin(); at != text.end();) {
    const std::uint32_t character = utf8::next(at, text.end());
    if (!IsAllowed(character)) return Named(character);
  }
  return "";
}

std::string RefusedCharacterNote(const std::string& text) {
  const std::string character = FirstRefusedCharacter(text);
  if (character.empty()) return "";
  return "holds " + character + ", which does not travel as well-formed XML, so most servers refuse it";
}

}  // namespace scriptwells
