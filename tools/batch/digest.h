// A number for texts, which differs for texts that differ by accident (FNV-1a, 64 bits). It is no protection
// against a forger.
#pragma once

#include <cstdint>
#include <string_view>

namespace qv::cli {

class Digest {
 public:
  void Add(std::string_view bytes) noexcept {
    for (const char byte : bytes) value_ = (value_ ^ static_cast<unsigned char>(byte)) * 0x100000001b3U;
  }
  // A text of a list of texts: "ab", "c" and "a", "bc" differ.
  void AddText(std::string_view text) noexcept {
    Add(text);
    Add(std::string_view("\0", 1));
  }
  std::uint64_t Value() const noexcept { return value_; }

 private:
  std::uint64_t value_ = 0xcbf29ce484222325U;
};

}  // namespace qv::cli
