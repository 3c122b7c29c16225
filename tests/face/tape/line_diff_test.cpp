#include "face/tape/line_diff.h"

#include <gtest/gtest.h>

namespace scriptwells {
namespace {

using Lines = std::vector<std::string>;

std::string Shown(const Lines& first, const Lines& second) {
  std::string text;
  for (const DiffLine& line : DiffOf(first, second)) text += line.mark + line.text + " ";
  return text;
}

TEST(LineDiff, HasWhatIsRemovedAndAdded) {
  EXPECT_EQ(Shown({}, {}), "");
  EXPECT_EQ(Shown({"a", "b"}, {"a", "b"}), "");
  EXPECT_EQ(Shown({"a", "b", "c"}, {"a", "x", "c"}), "-b +x ");
  EXPECT_EQ(Shown({"a", "b", "c", "d"}, {"b", "d", "e"}), "-a -c +e ");
  EXPECT_EQ(Shown({}, {"a"}), "+a ");
  EXPECT_EQ(Shown({"a", "a"}, {"a"}), "-a ");
}

TEST(LineDiff, OfLongTextsIsAllOfBoth) {
  const Lines a(3000, "a");
  const Lines b(3000, "b");
  EXPECT_EQ(DiffOf(a, b).size(), 6000U);
}

TEST(LineDiff, IsShownAroundTheFirstDifference) {
  const std::string same(300, 's');
  const std::string shown = ShortDiff(DiffOf({same + "one" + same, "x"}, {same + "two" + same}), 2);
  EXPECT_EQ(shown.find("\n- ..." + std::string(40, 's') + "one"), 0U) << shown;
  EXPECT_NE(shown.find("and 1 more lines"), std::string::npos) << shown;
  EXPECT_EQ(ShortDiff({{'-', "a\x1b[2J"}}, 5), "\n- a\\x1b[2J");
}

TEST(LineDiff, DistanceCountsLines) {
  EXPECT_EQ(Distance({"a", "b"}, {"b", "a"}), 0U);
  EXPECT_EQ(Distance({"a", "b", "b"}, {"b", "c"}), 3U);
}

}  // namespace
}  // namespace scriptwells
