// Bytes that are cleared when they are no longer used, and that grow like a string.
#include "components/http/secret_bytes.h"

#include <gtest/gtest.h>

#include <string>
#include <utility>

namespace qv {
namespace {

TEST(SecretBytes, HoldNothingAtFirst) {
  SecretBytes bytes;
  bytes.Append("");
  EXPECT_EQ(bytes.size(), 0U);
  EXPECT_EQ(bytes.view(), "");
}

TEST(SecretBytes, AppendJoinsWhileTheyGrow) {
  SecretBytes bytes;
  std::string expected;
  for (int i = 0; i < 1000; ++i) {
    const std::string piece(static_cast<std::size_t>(i % 7), static_cast<char>('a' + i % 26));
    bytes.Append(piece);
    expected += piece;
  }
  EXPECT_EQ(bytes.view(), expected);
}

TEST(SecretBytes, ExtendedBytesAreTheCallersToWrite) {
  SecretBytes bytes;
  bytes.Append("a");
  std::string("bcd").copy(bytes.Extend(3), 3);
  const std::string more(1000, 'x');
  more.copy(bytes.Extend(more.size()), more.size());
  bytes.Append("z");
  EXPECT_EQ(bytes.view(), "abcd" + more + "z");
}

TEST(SecretBytes, ReserveKeepsThem) {
  SecretBytes bytes;
  bytes.Append("one");
  bytes.Reserve(1000);
  bytes.Reserve(1);
  bytes.Append(" two");
  EXPECT_EQ(bytes.view(), "one two");
  const SecretBytes moved = std::move(bytes);
  EXPECT_EQ(moved.view(), "one two");
}

}  // namespace
}  // namespace qv
