// Where a head ends, whatever pieces it comes in.
#include "components/http/head_reader.h"

#include <gtest/gtest.h>

#include <string>

#include "components/http/http_error.h"

namespace qv {
namespace {

// The bytes of the head when it is fed `piece` bytes at a time, 0 for one without an end, and -1 for one that
// is refused.
int HeadSize(const std::string& text, std::size_t piece) try {
  HeadReader reader(0);
  std::size_t used = 0;
  while (!reader.IsComplete() && used < text.size()) used += reader.Feed(text.substr(used, piece));
  return reader.IsComplete() ? static_cast<int>(used) : 0;
} catch (const HttpFailure& failure) {
  EXPECT_EQ(failure.Code(), HTTP_E_MALFORMED);
  return -1;
}

void ExpectHeadSize(const std::string& text, int size) {
  for (std::size_t piece = 1; piece <= text.size(); ++piece)
    EXPECT_EQ(HeadSize(text, piece), size) << "in pieces of " << piece;
}

TEST(HeadReader, EmptyLineEndsTheHead) {
  ExpectHeadSize("HTTP/1.1 200 OK\r\nA: b\r\n\r\nbody", 25);
  ExpectHeadSize("HTTP/1.1 200 OK\nA: b\n\nbody", 22);
}

// Found by fuzzing: a CR at the end of a piece was forgotten, so the line looked empty.
TEST(HeadReader, LineOfTwoCarriageReturnsIsNotEmpty) {
  ExpectHeadSize("HTTP/1.1 200 OK\r\nA: b\n\r\r\n", 0);
  ExpectHeadSize("HTTP/1.1 200 OK\r\nA: b\n\r\r\n\r\n", -1);
}

TEST(HeadReader, InterimHeadsAreSkipped) {
  ExpectHeadSize("HTTP/1.1 100 Continue\r\n\r\nHTTP/1.1 200 OK\r\n\r\nbody", 44);
}

TEST(HeadReader, IsUnderWayBetweenFirstAndLastByte) {
  HeadReader reader(0);
  EXPECT_FALSE(reader.IsUnderWay());
  reader.Feed("HTTP/1.1 100 C\r\n");
  EXPECT_TRUE(reader.IsUnderWay());
  reader.Feed("\r\n");
  EXPECT_FALSE(reader.IsUnderWay()) << "an interim answer is over";
  EXPECT_TRUE(reader.HasBegun());
  reader.Feed("H");
  EXPECT_TRUE(reader.IsUnderWay());
  reader.Feed("TTP/1.1 200 OK\r\n\r\n");
  EXPECT_FALSE(reader.IsUnderWay());
  EXPECT_TRUE(reader.IsComplete());
}

}  // namespace
}  // namespace qv
