#include "devservice/file_name.h"

#include <cstddef>

namespace qv::devservice {
namespace {

constexpr std::size_t kLongestName = 255;

bool IsControl(std::string_view name, std::size_t at) {
  const auto byte = static_cast<unsigned char>(name[at]);
  if (byte < 0x20 || byte == 0x7F) return true;
  // U+0080 to U+009F.
  return byte == 0xC2 && at + 1 < name.size() && static_cast<unsigned char>(name[at + 1]) < 0xA0;
}

}  // namespace

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
