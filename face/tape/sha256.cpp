#include "face/tape/sha256.h"

#include <cstdio>

namespace scriptwells {

namespace {

constexpr std::array<std::uint32_t, 64> kRounds = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

constexpr std::uint32_t Rotated(std::uint32_t value, unsigned bits) {
  return value >> bits | value << (32 - bits);
}

std::uint32_t WordAt(const unsigned char* bytes) {
  return std::uint32_t{bytes[0]} << 24 | std::uint32_t{bytes[1]} << 16 | std::uint32_t{bytes[2]} << 8 |
         bytes[3];
}

std::array<std::uint32_t, 64> ScheduleOf(const unsigned char* block) {
  std::array<std::uint32_t, 64> words{};
  for (std::size_t i = 0; i < 16; ++i) words[i] = WordAt(block + 4 * i);
  for (std::size_t i = 16; i < words.size(); ++i) {
    const std::uint32_t a = words[i - 15];
    const std::uint32_t b = words[i - 2];
    words[i] = words[i - 16] + (Rotated(a, 7) ^ Rotated(a, 18) ^ a >> 3) + words[i - 7] +
               (Rotated(b, 17) ^ Rotated(b, 19) ^ b >> 10);
  }
  return words;
}

}  // namespace

void Sha256::AddBlock(const unsigned char* block) {
  const std::array<std::uint32_t, 64> words = ScheduleOf(block);
  auto [a, b, c, d, e, f, g, h] = state_;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::uint32_t one =
        h + (Rotated(e, 6) ^ Rotated(e, 11) ^ Rotated(e, 25)) + ((e & f) ^ (~e & g)) + kRounds[i] + words[i];
    const std::uint32_t two =
        (Rotated(a, 2) ^ Rotated(a, 13) ^ Rotated(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
    h = g;
    g = f;
    f = e;
    e = d + one;
    d = c;
    c = b;
    b = a;
    a = one + two;
  }
  const std::array<std::uint32_t, 8> added = {a, b, c, d, e, f, g, h};
  for (std::size_t i = 0; i < added.size(); ++i) state_[i] += added[i];
}

void Sha256::Add(std::string_view bytes) {
  bytes_ += bytes.size();
  while (!bytes.empty()) {
    const std::string_view part = bytes.substr(0, kBlock - open_.size());
    open_ += part;
    bytes.remove_prefix(part.size());
    if (open_.size() < kBlock) return;
    AddBlock(reinterpret_cast<const unsigned char*>(open_.data()));
    open_.clear();
  }
}

std::string Sha256::Hex() {
  const std::uint64_t bits = bytes_ * 8;
  std::string end(1, '\x80');
  while ((open_.size() + end.size() + 8) % kBlock != 0) end += '\0';
  for (int shift = 56; shift >= 0; shift -= 8) end += static_cast<char>(bits >> shift & 0xFF);
  Add(end);
  std::string hex;
  char word[9];
  for (const std::uint32_t value : state_) {
    static_cast<void>(std::snprintf(word, sizeof word, "%08x", value));
    hex += word;
  }
  return hex;
}

}  // namespace scriptwells
