// The line of a fault, with a mark.
#include "tools/shell/excerpt.h"

#include <gtest/gtest.h>

namespace qv::cli {
namespace {

TEST(Excerpt, MarksTheColumn) {
  EXPECT_EQ(Excerpt("a\nfoo.bar()\nb", {2, 5}), "  2 | foo.bar()\n    |     ^\n");
  EXPECT_EQ(Excerpt("\tx", {1, 2}), "  1 |  x\n    |  ^\n");
  EXPECT_EQ(Excerpt("a", {1, 9}), "  1 | a\n    |  ^\n");
}

TEST(Excerpt, MarksTheWholeLineWithoutAColumn) {
  EXPECT_EQ(Excerpt("  foo()  \r\nb", {1, 0}), "  1 |   foo()\n    |   ^^^^^\n");
}

TEST(Excerpt, IsEmptyWithoutTheLine) {
  EXPECT_EQ(Excerpt("a", {2, 1}), "");
  EXPECT_EQ(Excerpt("", {1, 1}), "");
  EXPECT_EQ(Excerpt("a\n \nb", {2, 0}), "");
}

TEST(Excerpt, LongLineIsCutAroundTheColumn) {
  const std::string line = std::string(500, 'a') + "!" + std::string(500, 'b');
  const std::string text = Excerpt(line, {1, 501});
  EXPECT_EQ(text, "  1 | " + std::string(80, 'a') + "!" + std::string(79, 'b') + "\n    | " +
                      std::string(80, ' ') + "^\n");
}

TEST(Excerpt, IsSafeToShow) {
  EXPECT_EQ(Excerpt("\x1b[2J x", {1, 6}), "  1 | \\x1b[2J x\n    |         ^\n");
}

}  // namespace
}  // namespace qv::cli
