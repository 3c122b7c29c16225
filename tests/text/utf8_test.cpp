#include <gtest/gtest.h>

#include <set>
#include <string>

#include "fixtures/scarce_memory.h"
#include "qvscriptwells/wide_string.h"
#include "support/comma_locale.h"
#include "support/print_wide_string.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

struct Pair {
  const char* name;
  std::u16string_view wide;
  std::string_view bytes;
};

const Pair kPairs[] = {
    {"empty", u""sv, ""sv},
    {"ASCII", u"abc~\x7F"sv, "abc~\x7F"sv},
    {"null unit inside", u"a\0b"sv, "a\0b"sv},
    {"first of two bytes", u"\u0080"sv, "\xC2\x80"sv},
    {"e acute", u"\u00E9"sv, "\xC3\xA9"sv},
    {"last of two bytes", u"\u07FF"sv, "\xDF\xBF"sv},
    {"first of three bytes", u"\u0800"sv, "\xE0\xA0\x80"sv},
    {"euro", u"\u20AC"sv, "\xE2\x82\xAC"sv},
    {"below the surrogates", u"\uD7FF"sv, "\xED\x9F\xBF"sv},
    {"above the surrogates", u"\uE000"sv, "\xEE\x80\x80"sv},
    {"last of the plane", u"\uFFFF"sv, "\xEF\xBF\xBF"sv},
    {"first of four bytes", u"\U00010000"sv, "\xF0\x90\x80\x80"sv},
    {"grinning face", u"a\U0001F600b"sv,
     "a\xF0\x9F\x98\x80"
     "b"sv},
    {"last of all", u"\U0010FFFF"sv, "\xF4\x8F\xBF\xBF"sv},
};

TEST(Utf8, WellFormedTextGoesThere) {
  for (const Pair& row : kPairs) EXPECT_EQ(ToUtf8(row.wide), row.bytes) << row.name;
}

TEST(Utf8, WellFormedTextComesBack) {
  for (const Pair& row : kPairs) EXPECT_EQ(FromUtf8(row.bytes).view(), row.wide) << row.name;
}

TEST(Utf8, NullTextIsNoBytes) {
  EXPECT_EQ(ToUtf8(WideString()), "");
}

TEST(Utf8, WideStringGoesWithAllUnits) {
  EXPECT_EQ(ToUtf8(WideString(u"a\0\u00E9"sv)), "a\0\xC3\xA9"sv);
}

TEST(Utf8, EachLoneSurrogateBecomesOneReplacement) {
  const Pair rows[] = {
      {"lone high", u"a\xD83D"sv, "a\xEF\xBF\xBD"sv},
      {"lone low",
       u"\xDE00"
       u"b"sv,
       "\xEF\xBF\xBD"
       "b"sv},
      {"high before a letter",
       u"\xD83D"
       u"b"sv,
       "\xEF\xBF\xBD"
       "b"sv},
      {"wrong order", u"\xDE00\xD83D"sv, "\xEF\xBF\xBD\xEF\xBF\xBD"sv},
      {"high before a pair", u"\xD83D\xD83D\xDE00"sv, "\xEF\xBF\xBD\xF0\x9F\x98\x80"sv},
      {"low behind a pair", u"\xD83D\xDE00\xDE00"sv, "\xF0\x9F\x98\x80\xEF\xBF\xBD"sv},
      {"first and last surrogate", u"\xD800\xD800\xDFFF"sv, "\xEF\xBF\xBD\xF0\x90\x8F\xBF"sv},
  };
  for (const Pair& row : rows) EXPECT_EQ(ToUtf8(row.wide), row.bytes) << row.name;
}

struct Malformed {
  const char* name;
  std::string_view bytes;  // stands between "a" and "z"
};

// How many replacements stand for one bad sequence is open; that nothing else comes out of it is not.
TEST(Utf8, MalformedBytesBecomeReplacementsAndNothingElse) {
  const Malformed rows[] = {
      {"lone continuation", "\x80"sv},
      {"cut after one of two", "\xC3"sv},
      {"cut after one of three", "\xE2"sv},
      {"cut after two of three", "\xE2\x82"sv},
      {"cut after three of four", "\xF0\x9F\x98"sv},
      {"byte that never occurs", "\xFF"sv},
      {"another that never occurs", "\xC0"sv},
      {"overlong null", "\xC0\x80"sv},
      {"overlong slash", "\xE0\x80\xAF"sv},
      {"overlong in four", "\xF0\x80\x80\xAF"sv},
      {"encoded surrogate", "\xED\xA0\x80"sv},
      {"encoded pair of surrogates", "\xED\xA0\xBD\xED\xB8\x80"sv},
      {"beyond the last", "\xF4\x90\x80\x80"sv},
      {"five bytes", "\xF8\x88\x80\x80\x80"sv},
  };
  for (const Malformed& row : rows) {
    const WideString text = FromUtf8("a" + std::string(row.bytes) + "z");
    ASSERT_GE(text.size(), 3u) << row.name;
    EXPECT_EQ(text.view().front(), u'a') << row.name;
    EXPECT_EQ(text.view().back(), u'z') << row.name;
    const std::u16string_view inside = text.view().substr(1, text.size() - 2);
    EXPECT_EQ(inside.find_first_not_of(u'\uFFFD'), std::u16string_view::npos) << row.name;
    EXPECT_LE(inside.size(), row.bytes.size()) << row.name;
  }
}

TEST(Utf8, SequenceCutAtTheEndIsReplaced) {
  EXPECT_EQ(FromUtf8("a\xC3").view(), u"a\uFFFD"sv);
  EXPECT_EQ(FromUtf8("\x80").view(), u"\uFFFD"sv);
}

TEST(Utf8, WideTextWithoutMemoryHasOneCode) {
  for (const std::string_view bytes :
       {"a text of some length \xC3\xA9"sv, "a broken text of some length \xC3"sv}) {
    EXPECT_EQ(ThrownWithout(Memory::kBoth, [&] { FromUtf8(bytes); }),
              std::set<std::string>{"_com_error 0x8007000E <null>"});
  }
}

TEST(Utf8, StandardTextNeedsNoCast) {
  EXPECT_EQ(ToUtf8(std::u16string(u"caf\u00E9")), "caf\xC3\xA9");
}

TEST(Utf8, KnowsNoLocale) {
  const CommaLocale comma;
  EXPECT_EQ(ToUtf8(u"\u00E9"sv), "\xC3\xA9");
  EXPECT_EQ(FromUtf8("\xC3\xA9").view(), u"\u00E9"sv);
}

}  // namespace
}  // namespace qv
