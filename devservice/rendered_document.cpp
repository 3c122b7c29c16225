#include "devservice/rendered_document.h"

#include <algorithm>

#include "devservice/text.h"

namespace qv::devservice {
namespace {

constexpr std::string_view kEnd = "\n\n";

bool IsByte(char16_t unit) {
  return unit <= 0xFF;
}

}  // namespace

std::string JoinBytes(std::string_view document) {
  const bool rendered =
      document.size() >= kEnd.size() && document.substr(document.size() - kEnd.size()) == kEnd;
  std::u16string units;
  if (!rendered || !Utf8ToUtf16(document, units) || !std::all_of(units.begin(), units.end(), IsByte))
    return std::string(document);
  std::string bytes;
  bytes.reserve(units.size());
  for (const char16_t unit : units) bytes += static_cast<char>(unit);
  return Utf8ToUtf16(bytes, units) ? bytes : std::string(document);
}

}  // namespace qv::devservice
