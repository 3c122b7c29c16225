#include "xml/file_url.h"

#include <charconv>
#include <cstddef>

#include "qvscriptwells/native_path.h"
#include "qvscriptwells/wide_string.h"

namespace qv {
namespace {

constexpr std::u16string_view kScheme = u"file:";

bool EqualsIgnoringCase(std::string_view text, std::string_view lowerCase) noexcept {
  if (text.size() != lowerCase.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i)
    if ((text[i] | 0x20) != lowerCase[i]) return false;
  return true;
}

// Removes the host from `rest`. False for a host other than this one.
bool RemoveHost(std::string& rest) {
  if (rest.compare(0, 2, "//") != 0) return true;
  const std::size_t end = rest.find('/', 2);
  const std::string host = rest.substr(2, end == std::string::npos ? end : end - 2);
  if (!host.empty() && !EqualsIgnoringCase(host, "localhost")) return false;
  rest.erase(0, end);
  return true;
}

// Nothing also for a byte of 0.
std::optional<char> DecodedByte(std::string_view digits) noexcept {
  unsigned char byte = 0;
  if (digits.size() != 2) return {};
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + 2, byte, 16);
  if (error != std::errc() || end != digits.data() + 2 || byte == 0) return {};
  return static_cast<char>(byte);
}

}  // namespace

bool IsFileUrl(std::u16string_view name) noexcept {
  if (name.size() < kScheme.size() || name[kScheme.size() - 1] != u':') return false;
  for (std::size_t i = 0; i + 1 < kScheme.size(); ++i)
    if ((name[i] | 0x20) != kScheme[i]) return false;
  return true;
}

std::optional<std::string> PathOfFileUrl(std::u16string_view url) {
  const std::u16string_view rest = url.substr(kScheme.size());
  std::string path = NativePath(WideString(rest.substr(0, rest.find_first_of(u"?#"))));
  if (!RemoveHost(path) || path.empty() || path.front() != '/' || !DecodePercents(path)) return {};
  return path;
}

bool DecodePercents(std::string& path) {
  std::size_t kept = 0;
  for (std::size_t i = 0; i < path.size(); ++i, ++kept) {
    path[kept] = path[i];
    if (path[i] != '%') continue;
    const std::optional<char> byte = DecodedByte(std::string_view(path).substr(i + 1, 2));
    if (!byte) return false;
    path[kept] = *byte;
    i += 2;
  }
  path.resize(kept);
  return true;
}

}  // namespace qv
