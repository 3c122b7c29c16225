// Searching, cutting, folding and comparing wide strings.
#include "support/string_helpers.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <utility>

#include "fixtures/thrown.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

constexpr std::u16string_view kBeyondAscii =
    u"\u00E9\u00C9\u00DF\u00FF\u0131\u0130\u03B1\u0391\u0436\u0416\uFF41\uFF21";

TEST(WhiteSpace, IsBlankTabReturnAndFeed) {
  EXPECT_EQ(kWhiteSpace, u" \t\r\n"sv);
}

TEST(Find, GivesThePlaceOfTheFirstOccurrenceOrMinusOne) {
  const struct {
    std::u16string_view pattern, text;
    int place;
  } rows[] = {{u"b", u"abc", 1},    {u"abc", u"b", -1},      {u"ab", u"xxabab", 2}, {u"aab", u"aaab", 1},
              {u"abc", u"abc", 0},  {u"c", u"abc", 2},       {u"x", u"abc", -1},    {u"abcd", u"abc", -1},
              {u"A", u"abc", -1},   {u"", u"abc", -1},       {u"a", u"", -1},       {u"", u"", -1},
              {u"b", u"a\0b"sv, 2}, {u"\0b"sv, u"a\0b"sv, 1}};
  for (const auto& row : rows)
    EXPECT_EQ(Find(WideString(row.pattern), WideString(row.text)), row.place) << Shown(WideString(row.text));
  EXPECT_EQ(Find(WideString(), u"abc"), -1);
  EXPECT_EQ(Find(u"a", WideString()), -1);
  EXPECT_EQ(Find(WideString(), WideString()), -1);
}

// A lone surrogate makes a text 0; a pair is junk like any other.
TEST(ToInt, ReadsLikeAtoi) {
  const std::pair<std::u16string_view, int> rows[] = {
      {u"42", 42},           {u"  -12abc", -12}, {u"abc", 0},        {u"", 0},
      {u"4294967301", 5},    {u"12\xD800"sv, 0}, {u"12\xDFFF"sv, 0}, {u"12abc\xD83Dx"sv, 0},
      {u"12\U0001F600", 12}, {u"12\u00E9", 12}};
  for (const auto& [text, value] : rows) EXPECT_EQ(ToInt(WideString(text)), value) << Shown(WideString(text));
  EXPECT_EQ(ToInt(WideString(u"\xDE00\xD83D"
                             u"7"sv)),
            0);
  EXPECT_EQ(ToInt(u"\U0001F600"
                  u"12"),
            0);
  EXPECT_EQ(ToInt(WideString()), 0);
}

TEST(ToLong, IsThirtyTwoBitsWide) {
  const std::pair<std::u16string_view, std::int32_t> rows[] = {
      {u"42", 42}, {u" -7x", -7}, {u"2147483648", INT32_MIN}, {u"4294967295", -1}, {u"4294967301", 5}};
  for (const auto& [text, value] : rows)
    EXPECT_EQ(ToLong(WideString(text)), value) << Shown(WideString(text));
  EXPECT_EQ(ToLong(WideString()), 0);
}

WideString Replaced(WideString text) {
  ReplaceChar(text, u'.', u'/');
  return text;
}

// The low byte of U+012E is that of the point.
TEST(ReplaceChar, ReplacesEachOccurrenceUpToANullUnit) {
  EXPECT_EQ(Replaced(u"a.b..c").view(), u"a/b//c"sv);
  EXPECT_EQ(Replaced(WideString(u"a.b\0c.d"sv)).view(), u"a/b\0c.d"sv);
  EXPECT_EQ(Replaced(u"\u012E.").view(), u"\u012E/"sv);
  EXPECT_TRUE(Replaced(WideString()).IsNull());
  EXPECT_FALSE(Replaced(u"").IsNull());
  EXPECT_TRUE(Replaced(u"").IsEmpty());
}

TEST(CaseMapping, MapsAsciiLettersOnly) {
  const struct {
    std::u16string_view text, upper, lower;
  } rows[] = {{u"abcxyzABCXYZ", u"ABCXYZABCXYZ", u"abcxyzabcxyz"},
              {u"@[`{0 9~", u"@[`{0 9~", u"@[`{0 9~"},
              {kBeyondAscii, kBeyondAscii, kBeyondAscii},
              {u"a\0B"sv, u"A\0B"sv, u"a\0b"sv}};
  for (const auto& row : rows) {
    const WideString text(row.text);
    EXPECT_EQ(ToUpper(text).view(), row.upper);
    EXPECT_EQ(ToLower(text).view(), row.lower);
    EXPECT_EQ(text.view(), row.text);
  }
  for (const auto map : {&ToUpper, &ToLower}) {
    EXPECT_TRUE(map(WideString()).IsNull());
    EXPECT_FALSE(map(u"").IsNull());
  }
}

TEST(CaseMapping, KnowsNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(ToUpper(WideString(kBeyondAscii)).view(), kBeyondAscii);
  EXPECT_EQ(ToLower(WideString(kBeyondAscii)).view(), kBeyondAscii);
  EXPECT_FALSE(EqualIgnoreCase(u"\u00E9", u"\u00C9"));
}

// The count is cut at the end.
TEST(Copy, GivesThePiece) {
  const struct {
    std::u16string_view text;
    std::size_t position, count;
    std::u16string_view piece;
  } rows[] = {{u"abcdef", 0, 3, u"abc"},     {u"abcdef", 2, 3, u"cde"},
              {u"abcdef", 2, 0, u""},        {u"a\0bc"sv, 1, 2, u"\0b"sv},
              {u"abc", 1, 100, u"bc"},       {u"abc", 1, SIZE_MAX, u"bc"},
              {u"abc", 0, SIZE_MAX, u"abc"}, {u"abc", 3, 1, u""},
              {u"abc", 3, SIZE_MAX, u""},    {u"", 0, 1, u""}};
  for (const auto& row : rows)
    EXPECT_EQ(Copy(WideString(row.text), row.position, row.count).view(), row.piece)
        << Shown(WideString(row.text)) << row.position;
  EXPECT_TRUE(Copy(WideString(), 0, 1).IsEmpty());
}

TEST(Copy, PositionAfterTheEndRaises) {
  constexpr char kInvalid[] = "EQvException 0x00000000 Invalid position in function Copy";
  for (const std::size_t position : {std::size_t{4}, std::size_t{100}, SIZE_MAX})
    EXPECT_EQ(Thrown([position] { Copy(u"abc", position, 1); }), kInvalid) << position;
  EXPECT_EQ(Thrown([] { Copy(WideString(), 1, 1); }), kInvalid);
  EXPECT_EQ(Thrown([] { Copy(u"", 1, 0); }), kInvalid);
}

WideString Resized(WideString text, std::size_t size) {
  Resize(text, size);
  return text;
}

TEST(Resize, CutsALongerTextAndFillsAnEmptyOneWithBlanks) {
  EXPECT_EQ(Resized(u"abcdef", 3).view(), u"abc"sv);
  EXPECT_EQ(Resized(WideString(u"a\0bc"sv), 3).view(), u"a\0b"sv);
  EXPECT_TRUE(Resized(u"abc", 0).IsEmpty());
  EXPECT_EQ(Resized(u"abc", 10).view(), u"abc"sv);
  EXPECT_EQ(Resized(u"abc", 3).view(), u"abc"sv);
  EXPECT_EQ(Resized(u"", 3).view(), u"   "sv);
  EXPECT_EQ(Resized(WideString(), 3).view(), u"   "sv);
  EXPECT_TRUE(Resized(u"", 0).IsEmpty());
}

TEST(ChangesInPlace, AreNotSeenByOtherHolders) {
  WideString replaced(u"a.b");
  WideString resized(u"abcdef");
  const WideString others[] = {replaced, resized};
  ReplaceChar(replaced, u'.', u'/');
  Resize(resized, 3);
  EXPECT_EQ(replaced.view(), u"a/b"sv);
  EXPECT_EQ(resized.view(), u"abc"sv);
  EXPECT_EQ(others[0].view(), u"a.b"sv);
  EXPECT_EQ(others[1].view(), u"abcdef"sv);
}

// Null is like empty, a null unit ends both texts, and the low bytes of U+0141 and U+0161 are "A" and "a".
TEST(EqualIgnoreCase, FoldsAsciiLetters) {
  using Pairs = std::initializer_list<std::pair<const char16_t*, const char16_t*>>;
  const Pairs equal = {{u"abcXYZ09", u"ABCxyz09"}, {u"", u""},     {u"\u00E9", u"\u00E9"},
                       {nullptr, nullptr},         {nullptr, u""}, {u"", nullptr},
                       {u"ab\0c", u"AB\0d"}};
  for (const auto& [a, b] : equal) EXPECT_TRUE(EqualIgnoreCase(a, b)) << Shown(a) << ' ' << Shown(b);
  const Pairs different = {
      {u"abc", u"abd"},  {u"abc", u"abcd"},      {u"abcd", u"abc"}, {u"", u"a"},
      {u"@", u"`"},      {u"[", u"{"},           {u"0", u"P"},      {u"\u00E9", u"\u00C9"},
      {u"k", u"\u212A"}, {u"\u0141", u"\u0161"}, {nullptr, u"a"},   {u"a", nullptr}};
  for (const auto& [a, b] : different) EXPECT_FALSE(EqualIgnoreCase(a, b)) << Shown(a) << ' ' << Shown(b);
}

}  // namespace
}  // namespace qv
