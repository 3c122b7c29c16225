// Data in chunks, whatever pieces it comes in.
#include "components/http/chunk_decoder.h"

#include <gtest/gtest.h>

#include <string>

#include "components/http/http_error.h"

namespace qv {
namespace {

struct Decoded {
  std::string data;
  std::size_t used = 0;
  bool atEnd = false;
};

// Feeds `input` in pieces of `step` bytes.
Decoded Decode(const std::string& input, std::size_t step) {
  ChunkDecoder decoder;
  Decoded result;
  while (result.used < input.size() && !decoder.IsAtEnd()) {
    std::string_view data;
    const std::size_t taken = decoder.Take(std::string_view(input).substr(result.used, step), 1000, &data);
    result.data.append(data);
    result.used += taken;
  }
  result.atEnd = decoder.IsAtEnd();
  return result;
}

TEST(ChunkDecoder, EveryStepGivesTheSameData) {
  const std::string input = "4\r\nabcd\r\n1A ;x=y\r\n0123456789abcdefghijklmnop\r\n0\r\nT: u\r\n\r\nrest";
  for (std::size_t step = 1; step <= input.size(); ++step) {
    const Decoded result = Decode(input, step);
    EXPECT_EQ(result.data, "abcd0123456789abcdefghijklmnop") << step;
    EXPECT_TRUE(result.atEnd) << step;
    EXPECT_EQ(input.substr(result.used), "rest") << step;
  }
}

TEST(ChunkDecoder, TakesNoMoreThanAsked) {
  ChunkDecoder decoder;
  std::string_view data;
  EXPECT_EQ(decoder.Take("4\r\nabcd\r\n", 3, &data), 6U);
  EXPECT_EQ(data, "abc");
  EXPECT_EQ(decoder.Take("d\r\n", 0, &data), 0U);
  EXPECT_EQ(data, "");
  EXPECT_EQ(decoder.Take("d\r\n", 3, &data), 1U);
  EXPECT_EQ(data, "d");
}

TEST(ChunkDecoder, LineFeedsAloneEndLinesToo) {
  EXPECT_EQ(Decode("2\nab\n0\n\n", 99).data, "ab");
}

TEST(ChunkDecoder, LargestSizeIsBelowTheSignBit) {
  EXPECT_EQ(Decode("7fffffffffffffff\r\nab", 99).data, "ab");
  EXPECT_THROW(Decode("8000000000000000\r\nab", 99), HttpFailure);
}

TEST(ChunkDecoder, BadFormsAreRefused) {
  for (const char* input : {"\r\n", "x\r\n", "-1\r\n", " 1\r\na", "1x\r\na", "1\rxa", "1\r\nab", "1\r\na\r\r",
                            "0\r\n\rx", "0x1\r\na"})
    EXPECT_THROW(Decode(input, 99), HttpFailure) << input;
}

TEST(ChunkDecoder, EndlessExtensionReachesTheLimit) {
  ChunkDecoder decoder(10);
  std::string_view data;
  EXPECT_THROW(decoder.Take("1;aaaaaaaaaaaaaaa", 9, &data), HttpFailure);
}

}  // namespace
}  // namespace qv
