#include "text/string_block.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <string>
#include <string_view>

#include "fixtures/scarce_memory.h"
#include "qvscriptwells/com_error.h"
#include "text/join_text.h"

namespace qv {
namespace {

void Write(BStr text, std::u16string_view units) {
  units.copy(text, units.size());
  SetStringLength(text, units.size());
}

std::u16string_view View(BStr text) {
  return {text, StringLength(text)};
}

TEST(StringBlock, FreshBlockIsEmptyWithOneOwner) {
  BStr text = NewStringBlock(10);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(StringLength(text), 0u);
  EXPECT_FALSE(IsShared(text));
  FreeString(text);
}

TEST(StringBlock, CapacityMayBeFilledToTheLastUnit) {
  BStr text = NewStringBlock(5);
  Write(text, u"abcde");
  EXPECT_EQ(View(text), u"abcde");
  EXPECT_EQ(text[5], u'\0');
  FreeString(text);
}

TEST(StringBlock, ZeroCapacityHoldsTheClosingNull) {
  BStr text = NewStringBlock(0);
  SetStringLength(text, 0);
  EXPECT_EQ(text[0], u'\0');
  FreeString(text);
}

TEST(StringBlock, SettingAShorterLengthCutsTheText) {
  BStr text = NewStringBlock(5);
  Write(text, u"abcde");
  SetStringLength(text, 2);
  EXPECT_EQ(View(text), u"ab");
  EXPECT_EQ(text[2], u'\0');
  FreeString(text);
}

TEST(StringBlock, GrowingKeepsUnitsAndLength) {
  BStr text = NewStringBlock(3);
  Write(text, u"abc");
  text = ResizeStringBlock(text, 1000);
  EXPECT_EQ(View(text), u"abc");
  Write(text, std::u16string(1000, u'x'));
  EXPECT_EQ(StringLength(text), 1000u);
  EXPECT_EQ(text[1000], u'\0');
  FreeString(text);
}

TEST(StringBlock, ShrinkingToTheLengthKeepsUnitsAndLength) {
  BStr text = NewStringBlock(1000);
  Write(text, u"abc");
  text = ResizeStringBlock(text, 3);
  EXPECT_EQ(View(text), u"abc");
  EXPECT_EQ(text[3], u'\0');
  FreeString(text);
}

TEST(StringBlock, SharingAddsAnOwnerAndFreeingTakesOneAway) {
  BStr text = NewStringBlock(3);
  Write(text, u"abc");
  EXPECT_EQ(ShareString(text), text);
  EXPECT_TRUE(IsShared(text));
  FreeString(text);
  EXPECT_FALSE(IsShared(text));
  EXPECT_EQ(View(text), u"abc");
  FreeString(text);
}

TEST(StringBlock, SharingNullGivesNull) {
  EXPECT_EQ(ShareString(nullptr), nullptr);
}

TEST(StringBlock, SizeThatNoMemoryHoldsRaisesOutOfMemory) {
  for (const std::size_t capacity : {SIZE_MAX, SIZE_MAX - 1, SIZE_MAX / 2, SIZE_MAX / 2 - 1}) {
    try {
      FreeString(NewStringBlock(capacity));
      ADD_FAILURE() << "no failure for " << capacity;
    } catch (const _com_error& error) {
      EXPECT_EQ(error.Error(), E_OUTOFMEMORY);
    }
  }
}

TEST(StringBlock, FailedResizeLeavesTheBlockGood) {
  BStr text = NewStringBlock(3);
  Write(text, u"abc");
  try {
    text = ResizeStringBlock(text, SIZE_MAX / 2);
    ADD_FAILURE() << "no failure";
  } catch (const _com_error& error) {
    EXPECT_EQ(error.Error(), E_OUTOFMEMORY);
  }
  EXPECT_EQ(View(text), u"abc");
  FreeString(text);
}

TEST(JoinText, PiecesStandOneAfterTheOther) {
  EXPECT_EQ(JoinText({u"a", u"", std::u16string_view(u"\0b", 2), u"c"}).view(),
            std::u16string_view(u"a\0bc", 4));
  EXPECT_EQ(JoinText({u"abc", u"def"}).data()[6], u'\0');
}

TEST(JoinText, OfNothingIsEmptyAndNotNull) {
  EXPECT_FALSE(JoinText({}).IsNull());
  EXPECT_TRUE(JoinText({}).IsEmpty());
  EXPECT_FALSE(JoinText({std::u16string_view(), std::u16string_view()}).IsNull());
}

TEST(JoinText, WithoutMemoryIsOutOfMemory) {
  EXPECT_EQ(ThrownWithout(Memory::kBoth,
                          [] {
                            JoinText({u"a text of", u" some length"});
                          }),
            std::set<std::string>{"_com_error 0x8007000E <null>"});
}

}  // namespace
}  // namespace qv
