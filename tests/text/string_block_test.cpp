// Blocks of units, with and without the secret mark, and texts joined in one block.
#include "text/string_block.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <set>
#include <string>
#include <string_view>

#include "fixtures/scarce_memory.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/secret_text.h"
#include "text/join_text.h"

namespace qv {
namespace {

constexpr char kOutOfMemory[] = "_com_error 0x8007000E <null>";

// Owns a block.
struct Block {
  explicit Block(std::size_t capacity, std::u16string_view units = {}) : text(NewStringBlock(capacity)) {
    if (!units.empty()) Write(units);
  }
  explicit Block(std::u16string_view units) : Block(units.size(), units) {}
  Block(const Block&) = delete;
  Block& operator=(const Block&) = delete;
  ~Block() { FreeString(text); }

  void Write(std::u16string_view units) const {
    units.copy(text, units.size());
    SetStringLength(text, units.size());
  }
  void Resize(std::size_t capacity) { text = ResizeStringBlock(text, capacity); }
  // Null-terminated.
  void Expect(std::u16string_view units) const {
    EXPECT_EQ(std::u16string_view(text, StringLength(text)), units);
    EXPECT_EQ(text[units.size()], u'\0');
  }

  BStr text;
};

TEST(StringBlock, FreshBlockIsEmptyWithOneOwner) {
  const Block block(10);
  ASSERT_NE(block.text, nullptr);
  EXPECT_EQ(StringLength(block.text), 0U);
  EXPECT_FALSE(IsShared(block.text));
}

TEST(StringBlock, CapacityMayBeFilledToTheLastUnitAndCutAgain) {
  const Block block(u"abcde");
  block.Expect(u"abcde");
  SetStringLength(block.text, 2);
  block.Expect(u"ab");
  const Block none(0);
  SetStringLength(none.text, 0);
  none.Expect(u"");
}

TEST(StringBlock, ResizingKeepsUnitsAndLength) {
  Block block(u"abc");
  block.Resize(1000);
  block.Expect(u"abc");
  block.Write(std::u16string(1000, u'x'));
  block.Expect(std::u16string(1000, u'x'));
  Block shrunk(1000, u"abc");
  shrunk.Resize(3);
  shrunk.Expect(u"abc");
}

// 32 MB and more come with large pages, whose size is added to that of the block.
TEST(StringBlock, LongTextsKeepTheirUnits) {
  std::u16string units;
  units.resize(17'000'000, u'x');
  Block block(units);
  block.Expect(units);
  block.Resize(34'000'000);
  block.Expect(units);
}

TEST(StringBlock, NoSizeIsTakenForASmallerOne) {
  constexpr std::size_t kHalf = std::numeric_limits<std::size_t>::max() / 2;
  for (const std::size_t capacity : {kHalf - 1'048'584, kHalf - 1, kHalf, kHalf + 1, 2 * kHalf + 1})
    EXPECT_EQ(Thrown([capacity] { NewStringBlock(capacity); }), kOutOfMemory) << capacity;
}

TEST(StringBlock, TrimmingKeepsUnitsAndLength) {
  for (const std::size_t capacity :
       {std::size_t{3}, std::size_t{100}, std::size_t{5'000'000}, std::size_t{20'000'000}}) {
    Block block(capacity, u"abc");
    block.text = TrimStringBlock(block.text, capacity);
    block.Expect(u"abc");
  }
}

TEST(StringBlock, SharingAddsAnOwnerAndFreeingTakesOneAway) {
  const Block block(u"abc");
  EXPECT_EQ(ShareString(block.text), block.text);
  EXPECT_TRUE(IsShared(block.text));
  FreeString(block.text);
  EXPECT_FALSE(IsShared(block.text));
  block.Expect(u"abc");
  EXPECT_EQ(ShareString(nullptr), nullptr);
}

TEST(StringBlock, SizeThatNoMemoryHoldsRaisesOutOfMemoryAndLeavesTheBlockGood) {
  Block block(u"abc");
  for (const std::size_t capacity : {SIZE_MAX, SIZE_MAX - 1, SIZE_MAX / 2, SIZE_MAX / 2 - 1}) {
    EXPECT_EQ(Thrown([capacity] { const Block large(capacity); }).substr(0, 21), "_com_error 0x8007000E")
        << capacity;
    EXPECT_EQ(Thrown([&] { block.Resize(capacity); }).substr(0, 21), "_com_error 0x8007000E") << capacity;
    block.Expect(u"abc");
  }
}

TEST(SecretText, NoTextIsOneUnlessItIsMarkedOnAllCopies) {
  const WideString before(u"word");
  EXPECT_FALSE(IsSecret(before.data()));
  const WideString marked = before;  // NOLINT(performance-unnecessary-copy-initialization): a copy to mark
  MarkSecret(marked);
  const WideString after = marked;  // NOLINT(performance-unnecessary-copy-initialization): a copy of it
  EXPECT_TRUE(IsSecret(before.data()));
  EXPECT_TRUE(IsSecret(after.data()));
  EXPECT_EQ(before, WideString(u"word"));
  MarkSecret(nullptr);
  MarkSecret(WideString());
  EXPECT_FALSE(IsSecret(nullptr));
}

TEST(SecretText, CopyThatDetachMakesIsMarked) {
  WideString text(u"word");
  const WideString other = text;
  MarkSecret(text);
  BStr detached = text.Detach();
  EXPECT_NE(detached, other.data());
  EXPECT_TRUE(IsSecret(detached));
  FreeString(detached);
}

TEST(SecretText, ReplacedTextAndResizedBlockKeepTheMark) {
  Block block(u"word");
  MarkSecret(block.text);
  block.Resize(1000);
  EXPECT_TRUE(IsSecret(block.text));
  block.Expect(u"word");
  block.Resize(2);
  block.Expect(u"wo");
  ASSERT_TRUE(ReplaceString(&block.text, u"other"));
  EXPECT_TRUE(IsSecret(block.text));
  block.Expect(u"other");
}

TEST(SecretText, FrontStaysWhereTheRestIsResizedOrCannotBe) {
  Block block(u"word and more");
  MarkSecretFront(block.text, 4);
  for (const std::size_t capacity : {std::size_t{100000}, std::size_t{20}, std::size_t{13}}) {
    block.Resize(capacity);
    EXPECT_TRUE(IsSecret(block.text));
    block.Expect(u"word and more");
  }
  EXPECT_EQ(Thrown([&] { block.Resize(SIZE_MAX / 2); }).substr(0, 21), "_com_error 0x8007000E");
  block.Expect(u"word and more");
}

TEST(JoinText, PiecesFollowEachOtherInATextThatIsNeverNull) {
  EXPECT_EQ(JoinText({u"a", u"", std::u16string_view(u"\0b", 2), u"c"}).view(),
            std::u16string_view(u"a\0bc", 4));
  EXPECT_EQ(JoinText({u"abc", u"def"}).data()[6], u'\0');
  EXPECT_FALSE(JoinText({}).IsNull());
  EXPECT_TRUE(JoinText({}).IsEmpty());
  EXPECT_FALSE(JoinText({std::u16string_view(), std::u16string_view()}).IsNull());
  const auto join = [] { JoinText({u"a text of", u" some length"}); };
  EXPECT_EQ(ThrownWithout(Memory::kBoth, join), std::set<std::string>{kOutOfMemory});
}

}  // namespace
}  // namespace qv
