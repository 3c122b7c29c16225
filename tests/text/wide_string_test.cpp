// Raw strings, and the counted text that owns one.
#include "qvscriptwells/wide_string.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <thread>
#include <utility>
#include <vector>

#include "support/print_wide_string.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

TEST(RawString, UnitsAreCopiedAndClosedWithNull) {
  BStr text = AllocString(u"a\0b!", 3);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(StringLength(text), 3U);
  EXPECT_EQ(std::u16string_view(text, 3), u"a\0b"sv);
  EXPECT_EQ(text[3], u'\0');
  FreeString(text);
}

TEST(RawString, WithoutUnitsTheBlockIsAllZero) {
  BStr text = AllocString(nullptr, 256);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(StringLength(text), 256U);
  EXPECT_EQ(std::u16string_view(text, 257), std::u16string(257, u'\0'));
  FreeString(text);
}

TEST(RawString, LengthZeroIsNotNull) {
  BStr text = AllocString(u"", 0);
  ASSERT_NE(text, nullptr);
  EXPECT_EQ(StringLength(text), 0U);
  EXPECT_EQ(text[0], u'\0');
  FreeString(text);
}

TEST(RawString, LengthThatNoMemoryHoldsGivesNull) {
  for (const std::size_t length : {SIZE_MAX, SIZE_MAX - 1, SIZE_MAX / 2, SIZE_MAX / 2 - 1})
    EXPECT_EQ(AllocString(nullptr, length), nullptr) << length;
}

TEST(RawString, NullHasNoLengthAndMayBeFreed) {
  EXPECT_EQ(StringLength(nullptr), 0U);
  EXPECT_NO_FATAL_FAILURE(FreeString(nullptr));
}

// Also null, and a piece of the text itself.
TEST(RawString, ReplaceExchangesTheText) {
  BStr text = nullptr;
  for (const std::u16string_view units : {u"user"sv, u"a\0b"sv, u""sv, u"abcdef"sv}) {
    EXPECT_TRUE(ReplaceString(&text, units));
    ASSERT_NE(text, nullptr);
    EXPECT_EQ(std::u16string_view(text, StringLength(text)), units);
  }
  EXPECT_TRUE(ReplaceString(&text, std::u16string_view(text + 2, 3)));
  EXPECT_EQ(std::u16string_view(text, StringLength(text)), u"cde");
  FreeString(text);
}

TEST(WideString, FreshOneIsNull) {
  const WideString text;
  EXPECT_TRUE(text.IsNull());
  EXPECT_TRUE(text.IsEmpty());
  EXPECT_EQ(text.size(), 0U);
  EXPECT_EQ(text.data(), nullptr);
  EXPECT_EQ(text.view(), u""sv);
}

TEST(WideString, OnlyANullPointerIsNull) {
  EXPECT_TRUE(WideString(static_cast<const char16_t*>(nullptr)).IsNull());
  EXPECT_FALSE(WideString(std::u16string_view()).IsNull());
  EXPECT_FALSE(WideString(std::u16string()).IsNull());
  const WideString text(u"");
  EXPECT_FALSE(text.IsNull());
  EXPECT_TRUE(text.IsEmpty());
  ASSERT_NE(text.data(), nullptr);
  EXPECT_EQ(text.data()[0], u'\0');
}

TEST(WideString, PointerIsReadUpToTheFirstNullAndAViewWithAllUnits) {
  EXPECT_EQ(WideString(u"ab\0cd").view(), u"ab"sv);
  EXPECT_EQ(WideString(u"ab\0cd\0"sv).view(), u"ab\0cd\0"sv);
  EXPECT_EQ(WideString(std::u16string(u"ab\0cd", 5)).size(), 5U);
  EXPECT_EQ(WideString(std::u16string_view(u"abcdef").substr(0, 3)).data()[3], u'\0');
  EXPECT_EQ(WideString(u"\U0001F600").size(), 2U);
}

TEST(WideString, CopySharesTheText) {
  const WideString text(u"abc");
  const WideString copy(text);  // NOLINT(performance-unnecessary-copy-initialization): the copy is tested
  EXPECT_EQ(copy.data(), text.data());
  WideString assigned(u"other");
  assigned = text;
  EXPECT_EQ(assigned.data(), text.data());
}

TEST(WideString, CopyOutlivesTheOriginalAndMayBeNull) {
  WideString copy;
  {
    const WideString text(u"abc");
    copy = text;
  }
  EXPECT_EQ(copy.view(), u"abc"sv);
  const WideString null;
  EXPECT_TRUE(WideString(null).IsNull());
  copy = null;
  EXPECT_TRUE(copy.IsNull());
}

TEST(WideString, MoveTakesTheTextAndLeavesNull) {
  WideString text(u"abc");
  const char16_t* units = text.data();
  WideString moved(std::move(text));
  EXPECT_EQ(moved.data(), units);
  EXPECT_TRUE(text.IsNull());  // NOLINT: the state after a move is promised
  WideString assigned(u"other");
  assigned = std::move(moved);
  EXPECT_EQ(assigned.data(), units);
  EXPECT_EQ(assigned.view(), u"abc"sv);
}

TEST(WideString, AssignedToItselfItStays) {
  WideString text(u"abc");
  const WideString& same = text;
  text = same;
  EXPECT_EQ(text.view(), u"abc"sv);
}

TEST(WideString, AttachTakesTheBlockOver) {
  BStr raw = AllocString(u"a\0b", 3);
  const WideString text = WideString::Attach(raw);
  EXPECT_EQ(text.data(), raw);
  EXPECT_EQ(text.view(), u"a\0b"sv);
  EXPECT_TRUE(WideString::Attach(nullptr).IsNull());
}

TEST(WideString, DetachReturnsTheOnlyBlock) {
  WideString text(u"abc");
  const char16_t* units = text.data();
  BStr raw = text.Detach();
  EXPECT_EQ(raw, units);
  EXPECT_TRUE(text.IsNull());
  FreeString(raw);
  EXPECT_EQ(WideString().Detach(), nullptr);
}

TEST(WideString, DetachOfASharedTextReturnsACopy) {
  WideString text(u"a\0b"sv);
  const WideString other(text);
  BStr raw = text.Detach();
  EXPECT_TRUE(text.IsNull());
  EXPECT_NE(raw, other.data());
  EXPECT_EQ(std::u16string_view(raw, StringLength(raw)), u"a\0b"sv);
  raw[0] = u'X';
  EXPECT_EQ(other.view(), u"a\0b"sv);
  FreeString(raw);
}

TEST(WideString, EqualityLooksAtAllUnitsAndNullIsEmpty) {
  EXPECT_TRUE(WideString() == WideString(u""));
  EXPECT_FALSE(WideString() != WideString(u""));
  EXPECT_FALSE(WideString() == WideString(u"a"));
  EXPECT_TRUE(WideString(u"a\0b"sv) == WideString(u"a\0b"sv));
  EXPECT_TRUE(WideString(u"a\0b"sv) != WideString(u"a\0c"sv));
  EXPECT_TRUE(WideString(u"a"sv) != WideString(u"a\0"sv));
  EXPECT_TRUE(WideString(u"a") != WideString(u"A"));
}

TEST(WideString, OrderPutsNullFirstAndThenGoesByUnits) {
  const WideString ascending[] = {
      WideString(),          u"",       u"\0"sv,  u"A", u"a", u"a\0"sv, u"ab", u"b", u"\u00E9", u"\u0430",
      WideString(u"\xD83D"), u"\uE000", u"\uFFFF"};
  const std::size_t count = std::size(ascending);
  for (std::size_t i = 0; i < count; ++i)
    for (std::size_t j = 0; j < count; ++j)
      EXPECT_EQ(ascending[i] < ascending[j], i < j) << "rows " << i << " and " << j;
}

TEST(WideString, CopiesOnSeveralThreadsShareOneText) {
  WideString text(u"shared");
  std::vector<std::thread> threads(4);
  for (std::thread& thread : threads) {
    thread = std::thread([copy = text] {
      for (int round = 0; round < 20000; ++round) {
        WideString again(copy);
        again = WideString(again);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  threads.clear();
  EXPECT_EQ(text.view(), u"shared"sv);
  WideString last(text);
  text = WideString();
  const char16_t* units = last.data();
  BStr raw = last.Detach();
  EXPECT_EQ(raw, units) << "the count of owners did not come back to one";
  FreeString(raw);
}

}  // namespace
}  // namespace qv
