// Constants that the compiler joins.
#include "support/joined_literals.h"

#include <gtest/gtest.h>

#include <string_view>

namespace qv {
namespace {

constexpr char16_t kName[] = u"name";
constexpr auto kJoined = JoinLiterals(u"<", kName, u"", u"/>");
static_assert(sizeof kJoined.units == 8 * sizeof(char16_t));

TEST(JoinLiterals, PiecesFollowEachOtherUpToANullUnit) {
  EXPECT_EQ(std::u16string_view(kJoined.units), u"<name/>");
  EXPECT_EQ(std::u16string_view(JoinLiterals(u"").units), u"");
}

}  // namespace
}  // namespace qv
