#include "devservice/workers/worker_channel.h"

#include <cstdint>
#include <stdexcept>

namespace qv::devservice {
namespace {

constexpr std::size_t kHeadBytes = 4;

std::size_t ReadLength(const std::string& bytes) {
  std::uint32_t length = 0;
  for (std::size_t i = kHeadBytes; i-- > 0;) length = (length << 8) | static_cast<unsigned char>(bytes[i]);
  return length;
}

}  // namespace

std::string PackMessage(const nlohmann::json& message) {
  const std::string text = message.dump();
  std::string packed;
  packed.reserve(text.size() + kHeadBytes);
  for (std::size_t i = 0; i < kHeadBytes; ++i) packed += static_cast<char>((text.size() >> (8 * i)) & 0xFF);
  return packed + text;
}

bool MessageBuffer::Take(nlohmann::json& message) {
  if (bytes_.size() < kHeadBytes) return false;
  const std::size_t length = ReadLength(bytes_);
  if (length > limit_) throw std::runtime_error("a message of the script worker is too long");
  if (bytes_.size() - kHeadBytes < length) return false;
  const auto start = bytes_.begin() + static_cast<std::ptrdiff_t>(kHeadBytes);
  const auto end = start + static_cast<std::ptrdiff_t>(length);
  message = nlohmann::json::parse(start, end);
  bytes_.erase(bytes_.begin(), end);
  bytes_.shrink_to_fit();
  return true;
}

}  // namespace qv::devservice
