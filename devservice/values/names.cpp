#include "devservice/values/names.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace qv::devservice {
namespace {

struct LetterRange {
  char16_t first;
  char16_t last;
};

constexpr LetterRange kLetters[] = {
    {'A', 'Z'},       {'_', '_'},       {'a', 'z'},       {0x00C0, 0x00D6}, {0x00D8, 0x00F6},
    {0x00F8, 0x0131}, {0x0134, 0x013E}, {0x0141, 0x0148}, {0x014A, 0x017E}, {0x0386, 0x0386},
    {0x0388, 0x038A}, {0x038C, 0x038C}, {0x038E, 0x03A1}, {0x03A3, 0x03CE}, {0x0401, 0x040C},
    {0x040E, 0x044F}, {0x0451, 0x045C}, {0x045E, 0x0481}, {0x3041, 0x3094}, {0x30A1, 0x30FA},
    {0x4E00, 0x9FA5}, {0xAC00, 0xD7A3},
};

bool IsLetter(char16_t unit) {
  return std::any_of(std::begin(kLetters), std::end(kLetters),
                     [unit](const LetterRange& range) { return unit >= range.first && unit <= range.last; });
}

bool IsNameUnit(char16_t unit) {
  return IsLetter(unit) || (unit >= '0' && unit <= '9') || unit == '-' || unit == '.';
}

constexpr std::size_t kLongestName = 255;

bool IsControl(std::string_view name, std::size_t at) {
  const auto byte = static_cast<unsigned char>(name[at]);
  if (byte < 0x20 || byte == 0x7F) return true;
  // U+0080 to U+009F.
  return byte == 0xC2 && at + 1 < name.size() && static_cast<unsigned char>(name[at + 1]) < 0xA0;
}

}  // namespace

bool IsColumnName(std::u16string_view text) {
  return !text.empty() && IsLetter(text[0]) && std::all_of(text.begin(), text.end(), IsNameUnit);
}

bool IsFileName(std::string_view name) {
  if (name.empty() || name.size() > kLongestName || name == "." || name == "..") return false;
  if (name.front() == ' ' || name.back() == ' ') return false;
  if (name.find_first_of("\";=/\\") != std::string_view::npos) return false;
  for (std::size_t at = 0; at < name.size(); ++at) {
    if (IsControl(name, at)) return false;
  }
  return true;
}

}  // namespace qv::devservice
