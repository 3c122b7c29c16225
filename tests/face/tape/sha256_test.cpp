// Digests of known texts (those of FIPS 180-4 and NIST's examples).
#include "face/tape/sha256.h"

#include <gtest/gtest.h>

namespace scriptwells {
namespace {

std::string HexOf(const std::string& text, std::size_t piece) {
  Sha256 digest;
  for (std::size_t at = 0; at < text.size(); at += piece)
    digest.Add(std::string_view(text).substr(at, piece));
  return digest.Hex();
}

TEST(Sha256, OfKnownTexts) {
  const struct {
    std::string text;
    const char* hex;
  } rows[] = {
      {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
      {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
      {"abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq",
       "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1"},
      {std::string(1'000'000, 'a'), "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0"},
  };
  for (const auto& row : rows)
    for (const std::size_t piece : {std::size_t{1}, std::size_t{63}, std::size_t{64}, std::size_t{1000}})
      EXPECT_EQ(HexOf(row.text, piece), row.hex) << row.text.substr(0, 20) << " by " << piece;
}

}  // namespace
}  // namespace scriptwells
