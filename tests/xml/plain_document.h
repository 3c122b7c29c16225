// Small documents by chance, of the kind that the plain scanner is for: nearly all are well-formed or have
// one thing wrong. Made fast, for many millions of them. The same seed gives the same documents everywhere.
#pragma once

#include <cstdint>
#include <string>

namespace qv {

class PlainDocuments {
 public:
  explicit PlainDocuments(std::uint64_t seed) : state_(seed * 2 + 1) {}

  // Valid until the next one.
  const std::u16string& Next();

 private:
  using Piece = const char16_t*;

  std::uint32_t Below(std::uint32_t bound);
  bool OneIn(std::uint32_t chances) { return Below(chances) == 0; }
  template <std::uint32_t kCount>
  Piece Any(const Piece (&pieces)[kCount]) {
    return pieces[Below(kCount)];
  }
  void Element(unsigned depth);
  void Attributes();
  void Content(unsigned depth);
  void Text();
  void Spoil();
  char16_t AnyUnit();

  std::uint64_t state_;
  std::u16string out_;
};

}  // namespace qv
