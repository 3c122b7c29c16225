// The text of an identifier, and random identifiers.
#include "com/guid_text.h"

#include <gtest/gtest.h>

#include <set>

#include "support/print_wide_string.h"

namespace qv {
namespace {

TEST(StringFromIID, HasCapitalsBracesAndLeadingZeros) {
  EXPECT_EQ(StringFromIID(ParseGuid("6f628f7a-b972-4929-83da-c3c16ac0022f")),
            u"{6F628F7A-B972-4929-83DA-C3C16AC0022F}");
  EXPECT_EQ(StringFromIID(ParseGuid("00000001-0002-0003-0405-060708090a0b")),
            u"{00000001-0002-0003-0405-060708090A0B}");
  EXPECT_EQ(StringFromIID(Guid{}), u"{00000000-0000-0000-0000-000000000000}");
  EXPECT_EQ(StringFromIID(ParseGuid("ffffffff-ffff-ffff-ffff-ffffffffffff")),
            u"{FFFFFFFF-FFFF-FFFF-FFFF-FFFFFFFFFFFF}");
}

TEST(CoCreateGuid, IsRandomOfVersionFour) {
  EXPECT_EQ(CoCreateGuid(nullptr), E_POINTER);
  for (int i = 0; i < 100; ++i) {
    Guid id{};
    ASSERT_EQ(CoCreateGuid(&id), S_OK);
    EXPECT_EQ(id.data3 >> 12, 4);
    EXPECT_EQ(id.data4[0] >> 6, 2);
  }
}

TEST(CoCreateGuid, NoTwoAreAlikeAndEveryFreeBitVaries) {
  std::set<Guid> seen;
  Guid everSet{};
  for (int i = 0; i < 200; ++i) {
    Guid id{};
    ASSERT_EQ(CoCreateGuid(&id), S_OK);
    seen.insert(id);
    everSet.data1 |= id.data1;
    everSet.data2 = static_cast<std::uint16_t>(everSet.data2 | id.data2);
    everSet.data3 = static_cast<std::uint16_t>(everSet.data3 | id.data3);
    for (int at = 0; at < 8; ++at)
      everSet.data4[at] = static_cast<std::uint8_t>(everSet.data4[at] | id.data4[at]);
  }
  EXPECT_EQ(seen.size(), 200U);
  EXPECT_EQ(StringFromIID(everSet), u"{FFFFFFFF-FFFF-4FFF-BFFF-FFFFFFFFFFFF}");
}

}  // namespace
}  // namespace qv
