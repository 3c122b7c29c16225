#include "support/string_helpers.h"

#include <gtest/gtest.h>

#include "qvscriptwells/e_qv_exception.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

TEST(WhiteSpace, IsBlankTabReturnAndFeed) {
  EXPECT_EQ(kWhiteSpace, u" \t\r\n"sv);
}

TEST(Find, PatternComesFirst) {
  EXPECT_EQ(Find(u"b", u"abc"), 1);
  EXPECT_EQ(Find(u"abc", u"b"), -1);
}

TEST(Find, FirstOccurrenceCounts) {
  EXPECT_EQ(Find(u"ab", u"xxabab"), 2);
  EXPECT_EQ(Find(u"aab", u"aaab"), 1);
  EXPECT_EQ(Find(u"abc", u"abc"), 0);
  EXPECT_EQ(Find(u"c", u"abc"), 2);
}

TEST(Find, AbsentPatternGivesMinusOne) {
  EXPECT_EQ(Find(u"x", u"abc"), -1);
  EXPECT_EQ(Find(u"abcd", u"abc"), -1);
  EXPECT_EQ(Find(u"A", u"abc"), -1);
}

TEST(Find, EmptyPatternOrTextGivesMinusOne) {
  EXPECT_EQ(Find(u"", u"abc"), -1);
  EXPECT_EQ(Find(WideString(), u"abc"), -1);
  EXPECT_EQ(Find(u"a", u""), -1);
  EXPECT_EQ(Find(u"a", WideString()), -1);
  EXPECT_EQ(Find(u"", u""), -1);
  EXPECT_EQ(Find(WideString(), WideString()), -1);
}

TEST(Find, NullUnitsAreOrdinaryContent) {
  EXPECT_EQ(Find(u"b", WideString(u"a\0b"sv)), 2);
  EXPECT_EQ(Find(WideString(u"\0b"sv), WideString(u"a\0b"sv)), 1);
}

TEST(ToInt, ReadsLikeAtoi) {
  EXPECT_EQ(ToInt(u"42"), 42);
  EXPECT_EQ(ToInt(u"  -12abc"), -12);
  EXPECT_EQ(ToInt(u"abc"), 0);
  EXPECT_EQ(ToInt(u""), 0);
  EXPECT_EQ(ToInt(WideString()), 0);
  EXPECT_EQ(ToInt(u"4294967301"), 5);
}

TEST(ToInt, LoneSurrogateMakesItZero) {
  EXPECT_EQ(ToInt(WideString(u"12\xD800"sv)), 0);
  EXPECT_EQ(ToInt(WideString(u"12\xDFFF"sv)), 0);
  EXPECT_EQ(ToInt(WideString(u"12abc\xD83D"
                             u"x"sv)),
            0);
  EXPECT_EQ(ToInt(WideString(u"\xDE00\xD83D"
                             u"7"sv)),
            0);
}

TEST(ToInt, PairOfSurrogatesIsJunkLikeAnyOther) {
  EXPECT_EQ(ToInt(u"12\U0001F600"), 12);
  EXPECT_EQ(ToInt(u"12\u00E9"), 12);
  EXPECT_EQ(ToInt(u"\U0001F600"
                  u"12"),
            0);
}

TEST(ToLong, IsThirtyTwoBitsWide) {
  EXPECT_EQ(ToLong(u"42"), 42);
  EXPECT_EQ(ToLong(u" -7x"), -7);
  EXPECT_EQ(ToLong(u"2147483648"), INT32_MIN);
  EXPECT_EQ(ToLong(u"4294967295"), -1);
  EXPECT_EQ(ToLong(u"4294967301"), 5);
  EXPECT_EQ(ToLong(WideString()), 0);
}

TEST(ReplaceChar, ReplacesEachOccurrence) {
  WideString text(u"a.b..c");
  ReplaceChar(text, u'.', u'/');
  EXPECT_EQ(text.view(), u"a/b//c"sv);
}

TEST(ReplaceChar, StopsAtTheFirstNullUnit) {
  WideString text(u"a.b\0c.d"sv);
  ReplaceChar(text, u'.', u'/');
  EXPECT_EQ(text.view(), u"a/b\0c.d"sv);
}

TEST(ReplaceChar, OtherHoldersDoNotSeeIt) {
  WideString text(u"a.b");
  const WideString other(text);
  ReplaceChar(text, u'.', u'/');
  EXPECT_EQ(text.view(), u"a/b"sv);
  EXPECT_EQ(other.view(), u"a.b"sv);
}

TEST(ReplaceChar, NullAndEmptyStay) {
  WideString text;
  ReplaceChar(text, u'.', u'/');
  EXPECT_TRUE(text.IsNull());
  text = u"";
  ReplaceChar(text, u'.', u'/');
  EXPECT_FALSE(text.IsNull());
  EXPECT_TRUE(text.IsEmpty());
}

TEST(ReplaceChar, WholeUnitsAreCompared) {
  WideString text(u"\u012E.");  // the low byte of the first is that of the point
  ReplaceChar(text, u'.', u'/');
  EXPECT_EQ(text.view(), u"\u012E/"sv);
}

constexpr std::u16string_view kBeyondAscii =
    u"\u00E9\u00C9\u00DF\u00FF\u0131\u0130\u03B1\u0391\u0436\u0416\uFF41\uFF21";

TEST(ToUpper, MapsAsciiLettersOnly) {
  EXPECT_EQ(ToUpper(u"abcxyzABCXYZ").view(), u"ABCXYZABCXYZ"sv);
  EXPECT_EQ(ToUpper(u"@[`{0 9~").view(), u"@[`{0 9~"sv);
  EXPECT_EQ(ToUpper(WideString(kBeyondAscii)).view(), kBeyondAscii);
}

TEST(ToLower, MapsAsciiLettersOnly) {
  EXPECT_EQ(ToLower(u"abcxyzABCXYZ").view(), u"abcxyzabcxyz"sv);
  EXPECT_EQ(ToLower(u"@[`{0 9~").view(), u"@[`{0 9~"sv);
  EXPECT_EQ(ToLower(WideString(kBeyondAscii)).view(), kBeyondAscii);
}

TEST(CaseMapping, KnowsNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(ToUpper(WideString(kBeyondAscii)).view(), kBeyondAscii);
  EXPECT_EQ(ToLower(WideString(kBeyondAscii)).view(), kBeyondAscii);
  EXPECT_FALSE(EqualIgnoreCase(u"\u00E9", u"\u00C9"));
}

TEST(CaseMapping, NullStaysNullAndEmptyEmpty) {
  EXPECT_TRUE(ToUpper(WideString()).IsNull());
  EXPECT_TRUE(ToLower(WideString()).IsNull());
  EXPECT_FALSE(ToUpper(u"").IsNull());
  EXPECT_FALSE(ToLower(u"").IsNull());
}

TEST(CaseMapping, GoesBeyondNullUnits) {
  EXPECT_EQ(ToUpper(WideString(u"a\0b"sv)).view(), u"A\0B"sv);
  EXPECT_EQ(ToLower(WideString(u"A\0B"sv)).view(), u"a\0b"sv);
}

TEST(CaseMapping, LeavesItsArgument) {
  const WideString lower(u"abc");
  EXPECT_EQ(ToUpper(lower).view(), u"ABC"sv);
  EXPECT_EQ(lower.view(), u"abc"sv);
  const WideString upper(u"ABC");
  EXPECT_EQ(ToLower(upper).view(), u"abc"sv);
  EXPECT_EQ(upper.view(), u"ABC"sv);
}

TEST(Copy, GivesThePiece) {
  EXPECT_EQ(Copy(u"abcdef", 0, 3).view(), u"abc"sv);
  EXPECT_EQ(Copy(u"abcdef", 2, 3).view(), u"cde"sv);
  EXPECT_EQ(Copy(u"abcdef", 2, 0).view(), u""sv);
  EXPECT_EQ(Copy(WideString(u"a\0bc"sv), 1, 2).view(), u"\0b"sv);
}

TEST(Copy, CountIsCutAtTheEnd) {
  EXPECT_EQ(Copy(u"abc", 1, 100).view(), u"bc"sv);
  EXPECT_EQ(Copy(u"abc", 1, SIZE_MAX).view(), u"bc"sv);
  EXPECT_EQ(Copy(u"abc", 0, SIZE_MAX).view(), u"abc"sv);
}

TEST(Copy, PositionAtTheEndGivesEmpty) {
  EXPECT_TRUE(Copy(u"abc", 3, 1).IsEmpty());
  EXPECT_TRUE(Copy(u"abc", 3, SIZE_MAX).IsEmpty());
  EXPECT_TRUE(Copy(u"", 0, 1).IsEmpty());
  EXPECT_TRUE(Copy(WideString(), 0, 1).IsEmpty());
}

TEST(Copy, PositionBehindTheEndRaises) {
  for (const std::size_t position : {std::size_t{4}, std::size_t{100}, SIZE_MAX}) {
    try {
      Copy(u"abc", position, 1);
      ADD_FAILURE() << "nothing was thrown for " << position;
    } catch (const EQvException& error) {
      EXPECT_EQ(error.Description(), u"Invalid position in function Copy");
      EXPECT_EQ(error.Code(), 0);
    }
  }
  EXPECT_THROW(Copy(WideString(), 1, 1), EQvException);
  EXPECT_THROW(Copy(u"", 1, 0), EQvException);
}

WideString Resized(WideString text, std::size_t size) {
  Resize(text, size);
  return text;
}

TEST(Resize, LongerTextIsCut) {
  EXPECT_EQ(Resized(u"abcdef", 3).view(), u"abc"sv);
  EXPECT_EQ(Resized(WideString(u"a\0bc"sv), 3).view(), u"a\0b"sv);
  EXPECT_TRUE(Resized(u"abc", 0).IsEmpty());
}

TEST(Resize, ShorterTextStays) {
  EXPECT_EQ(Resized(u"abc", 10).view(), u"abc"sv);
  EXPECT_EQ(Resized(u"abc", 3).view(), u"abc"sv);
}

TEST(Resize, EmptyTextBecomesBlanks) {
  EXPECT_EQ(Resized(u"", 3).view(), u"   "sv);
  EXPECT_EQ(Resized(WideString(), 3).view(), u"   "sv);
  EXPECT_TRUE(Resized(u"", 0).IsEmpty());
}

TEST(Resize, OtherHoldersDoNotSeeIt) {
  WideString text(u"abcdef");
  const WideString other(text);
  Resize(text, 3);
  EXPECT_EQ(text.view(), u"abc"sv);
  EXPECT_EQ(other.view(), u"abcdef"sv);
}

TEST(EqualIgnoreCase, FoldsAsciiLetters) {
  EXPECT_TRUE(EqualIgnoreCase(u"abcXYZ09", u"ABCxyz09"));
  EXPECT_TRUE(EqualIgnoreCase(u"", u""));
  EXPECT_FALSE(EqualIgnoreCase(u"abc", u"abd"));
}

TEST(EqualIgnoreCase, LengthsMustAgree) {
  EXPECT_FALSE(EqualIgnoreCase(u"abc", u"abcd"));
  EXPECT_FALSE(EqualIgnoreCase(u"abcd", u"abc"));
  EXPECT_FALSE(EqualIgnoreCase(u"", u"a"));
}

TEST(EqualIgnoreCase, OnlyLettersFold) {
  EXPECT_FALSE(EqualIgnoreCase(u"@", u"`"));
  EXPECT_FALSE(EqualIgnoreCase(u"[", u"{"));
  EXPECT_FALSE(EqualIgnoreCase(u"0", u"P"));
  EXPECT_FALSE(EqualIgnoreCase(u"\u00E9", u"\u00C9"));
  EXPECT_FALSE(EqualIgnoreCase(u"k", u"\u212A"));
  EXPECT_FALSE(EqualIgnoreCase(u"\u0141", u"\u0161"));  // their low bytes are "A" and "a"
  EXPECT_TRUE(EqualIgnoreCase(u"\u00E9", u"\u00E9"));
}

TEST(EqualIgnoreCase, NullIsLikeEmpty) {
  EXPECT_TRUE(EqualIgnoreCase(nullptr, nullptr));
  EXPECT_TRUE(EqualIgnoreCase(nullptr, u""));
  EXPECT_TRUE(EqualIgnoreCase(u"", nullptr));
  EXPECT_FALSE(EqualIgnoreCase(nullptr, u"a"));
  EXPECT_FALSE(EqualIgnoreCase(u"a", nullptr));
}

TEST(EqualIgnoreCase, EndsAtTheFirstNullUnit) {
  EXPECT_TRUE(EqualIgnoreCase(u"ab\0c", u"AB\0d"));
}

}  // namespace
}  // namespace qv
