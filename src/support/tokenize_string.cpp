#include "support/tokenize_string.h"

#include <new>

#include "qvscriptwells/com_error.h"

namespace qv {
namespace {

constexpr std::size_t kNone = std::u16string_view::npos;

// Positions of the separators that count, then `kNone` for the end of the text. The search resumes one unit
// after the end of a separator.
std::vector<std::size_t> SeparatorPositions(std::u16string_view text, std::u16string_view separator,
                                            std::size_t first) {
  std::vector<std::size_t> positions{first};
  while (positions.back() != kNone)
    positions.push_back(text.find(separator, positions.back() + separator.size() + 1));
  return positions;
}

WideString Piece(std::u16string_view text, std::size_t begin, std::size_t end) {
  if (begin >= text.size()) return WideString(u"");
  return WideString(text.substr(begin, end == kNone ? kNone : end - begin));
}

std::size_t Tokenize(std::u16string_view text, std::u16string_view separator,
                     std::vector<WideString>& tokens) {
  const std::size_t first = separator.empty() ? kNone : text.find(separator);
  if (first == kNone) return 0;
  if (first == 0) {
    tokens.emplace_back(u"");
    return 0;
  }
  const std::vector<std::size_t> positions = SeparatorPositions(text, separator, first);
  std::size_t begin = 0;
  for (const std::size_t end : positions) {
    tokens.push_back(Piece(text, begin, end));
    begin = end + separator.size();
  }
  // `begin` has wrapped around `kNone` here: one more piece, beyond the count.
  tokens.push_back(Piece(text, begin, kNone));
  return positions.size();
}

}  // namespace

std::size_t TokenizeString(std::u16string_view text, std::u16string_view separator,
                           std::vector<WideString>& tokens) {
  tokens.clear();
  try {
    return Tokenize(text, separator, tokens);
  } catch (const std::bad_alloc&) {
    _com_raise_error(E_OUTOFMEMORY);  // the same code as for a text
  }
}

}  // namespace qv
