// The digest SHA-256 (FIPS 180-4): the library links nothing that has one.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace scriptwells {

class Sha256 {
 public:
  void Add(std::string_view bytes);
  // Of all bytes so far, as 64 digits. Ends the object.
  std::string Hex();

 private:
  static constexpr std::size_t kBlock = 64;

  void AddBlock(const unsigned char* block);

  std::array<std::uint32_t, 8> state_{0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                      0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
  std::string open_;  // of the last block
  std::uint64_t bytes_ = 0;
};

}  // namespace scriptwells
