#include "face/text/short_quote.h"

#include "face/text/unsafe_characters.h"

namespace scriptwells {

namespace {

constexpr std::size_t kMostCharacters = 40;
constexpr std::size_t kMostBytes = 4 * kMostCharacters;  // of a text that is not UTF-8

bool StartsCharacter(char byte) {
  return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
}

std::size_t ShortLength(std::string_view text) {
  std::size_t characters = 0;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (StartsCharacter(text[at]) && ++characters > kMostCharacters) return at;
    if (at == kMostBytes) return at;
  }
  return text.size();
}

}  // namespace

std::string ShortQuote(std::string_view text) {
  const std::size_t length = ShortLength(text);
  const std::string shown = EscapeInLine(std::string(text.substr(0, length)));
  return "'" + shown + "'" + (length == text.size() ? "" : "...");
}

}  // namespace scriptwells
