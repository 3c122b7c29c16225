#include "components/http/text_codec.h"

#include <gtest/gtest.h>

#include <string>

#include "fixtures/shown_text.h"

namespace qv {
namespace {

std::string Encoded(std::u16string_view first, std::u16string_view second = {}) {
  const RoomyBytes bytes = EncodeUtf8WithRoom(first, second, 7);
  EXPECT_EQ(bytes.room, 7u);
  return std::string(bytes.Text(), bytes.size);
}

TEST(EncodeUtf8, EachLengthOfCharacterHasItsBytes) {
  EXPECT_EQ(EncodeUtf8(u"\x7F\u0080\u07FF\u0800\uFFFF"), "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
  EXPECT_EQ(EncodeUtf8(u"\U00010000\U0010FFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(EncodeUtf8, LoneSurrogateBecomesReplacement) {
  const char16_t units[] = {0xD800, u'a', 0xDC00, 0xD800, 0xD800, 0xDC00};
  EXPECT_EQ(EncodeUtf8({units, 6}),
            "\xEF\xBF\xBD"
            "a\xEF\xBF\xBD\xEF\xBF\xBD\xF0\x90\x80\x80");
}

TEST(EncodeUtf8WithRoom, BothTextsAreJoined) {
  EXPECT_EQ(Encoded(u"", u""), "");
  EXPECT_EQ(Encoded(u"abc", u"def"), "abcdef");
  EXPECT_EQ(Encoded(u"ab\u00E9", u"def"),
            "ab\xC3\xA9"
            "def");
  EXPECT_EQ(Encoded(u"abc", u"d\u20AC"), "abcd\xE2\x82\xAC");
}

// The fast way takes sixteen at a time; the odd character stands at each place of two steps.
TEST(EncodeUtf8WithRoom, OddCharacterAtEveryPlaceIsEncoded) {
  for (std::size_t place = 0; place < 40; ++place) {
    std::u16string text(40, u'x');
    text[place] = u'\u0080';
    const std::string expected = std::string(place, 'x') + "\xC2\x80" + std::string(39 - place, 'x');
    EXPECT_EQ(Encoded(text), expected) << place;
    EXPECT_EQ(EncodeUtf8(text), expected) << place;
  }
}

TEST(DecodeUtf8, OddCharacterAtEveryPlaceIsDecoded) {
  for (std::size_t place = 0; place < 40; ++place) {
    const std::string bytes = std::string(place, 'x') + "\xC2\x80" + std::string(39 - place, 'x');
    std::u16string expected(40, u'x');
    expected[place] = u'\u0080';
    EXPECT_EQ(DecodeUtf8(bytes), WideString(expected)) << place;
  }
}

struct Utf8Row {
  const char* name;
  std::string bytes;
  const char* shown;
};

class DecodeUtf8Table : public ::testing::TestWithParam<Utf8Row> {};

TEST_P(DecodeUtf8Table, GivesThisText) {
  EXPECT_EQ(Shown(DecodeUtf8(GetParam().bytes)), GetParam().shown);
}

INSTANTIATE_TEST_SUITE_P(
    , DecodeUtf8Table,
    ::testing::Values(
        Utf8Row{"Empty", "", ""}, Utf8Row{"Nul", std::string("a\0b", 3), "a\\u0000b"},
        Utf8Row{"TwoBytes", "\xC3\xA9", "\\u00E9"}, Utf8Row{"ThreeBytes", "\xE2\x82\xAC", "\\u20AC"},
        Utf8Row{"FourBytes", "\xF0\x9F\x98\x80", "\\uD83D\\uDE00"},
        Utf8Row{"LastCharacter", "\xF4\x8F\xBF\xBF", "\\uDBFF\\uDFFF"},
        Utf8Row{"LoneContinuation", "a\x80z", "a\\uFFFDz"}, Utf8Row{"CutCharacter", "\xE2\x82", "\\uFFFD"},
        Utf8Row{"CutBeforeAscii", "\xE2\x82z", "\\uFFFDz"}, Utf8Row{"Overlong", "\xC0\xAF", "\\uFFFD\\uFFFD"},
        Utf8Row{"OverlongThree", "\xE0\x80\xAF", "\\uFFFD\\uFFFD\\uFFFD"},
        Utf8Row{"Surrogate", "\xED\xA0\x80", "\\uFFFD\\uFFFD\\uFFFD"},
        Utf8Row{"BeyondUnicode", "\xF4\x90\x80\x80", "\\uFFFD\\uFFFD\\uFFFD\\uFFFD"},
        Utf8Row{"BytesNeverUsed", "\xFE\xFF", "\\uFFFD\\uFFFD"}),
    [](const ::testing::TestParamInfo<Utf8Row>& row) { return row.param.name; });

TEST(DecodeLatin1, BytesAreUnits) {
  EXPECT_EQ(Shown(DecodeLatin1("a\x80\xFF")), "a\\u0080\\u00FF");
}

TEST(DecodeUtf16, BothByteOrdersGiveTheText) {
  EXPECT_EQ(Shown(DecodeUtf16(std::string_view("a\0\xAC\x20", 4), false)), "a\\u20AC");
  EXPECT_EQ(Shown(DecodeUtf16(std::string_view("\0a\x20\xAC", 4), true)), "a\\u20AC");
}

TEST(DecodeUtf16, PairStaysAndLoneHalvesAndOddByteAreReplaced) {
  EXPECT_EQ(Shown(DecodeUtf16(std::string_view("\xD8\x3D\xDE\x00", 4), true)), "\\uD83D\\uDE00");
  EXPECT_EQ(Shown(DecodeUtf16(std::string_view("\xD8\x3D\0a\xDE\0\0", 7), true)), "\\uFFFDa\\uFFFD\\uFFFD");
}

TEST(DecodeByIconv, RareCharsetIsRead) {
  WideString text;
  ASSERT_TRUE(DecodeByIconv("\x80\xE4", "windows-1252", &text));
  EXPECT_EQ(Shown(text), "\\u20AC\\u00E4");
  ASSERT_TRUE(DecodeByIconv("\x82\xA0", "shift_jis", &text));
  EXPECT_EQ(Shown(text), "\\u3042");
}

TEST(DecodeByIconv, BadBytesAreReplaced) {
  WideString text;
  ASSERT_TRUE(
      DecodeByIconv("a\xFF"
                    "b\x82",
                    "shift_jis", &text));
  EXPECT_EQ(Shown(text), "a\\uFFFDb\\uFFFD");
}

TEST(DecodeByIconv, LongTextIsReadWhole) {
  WideString text;
  ASSERT_TRUE(DecodeByIconv(std::string(100'000, '\xE4'), "windows-1252", &text));
  EXPECT_EQ(text, WideString(std::u16string(100'000, u'\u00E4')));
}

TEST(DecodeByIconv, UnknownCharsetIsTold) {
  WideString text;
  EXPECT_FALSE(DecodeByIconv("a", "no-such-charset", &text));
}

TEST(OpenTailUtf8, CountsTheBytesOfACutCharacter) {
  EXPECT_EQ(OpenTailUtf8("abc"), 0u);
  EXPECT_EQ(OpenTailUtf8("a\xC3"), 1u);
  EXPECT_EQ(OpenTailUtf8("\xE2\x82"), 2u);
  EXPECT_EQ(OpenTailUtf8("\xF0\x9F\x98"), 3u);
  EXPECT_EQ(OpenTailUtf8("\xE2\x82\xAC"), 0u);
  EXPECT_EQ(OpenTailUtf8("\x80\x80"), 0u);
  EXPECT_EQ(OpenTailUtf8(""), 0u);
}

TEST(OpenTailUtf16, CountsAnOddByteAndHalfAPair) {
  EXPECT_EQ(OpenTailUtf16(std::string_view("\0a", 2), true), 0u);
  EXPECT_EQ(OpenTailUtf16(std::string_view("\0a\0", 3), true), 1u);
  EXPECT_EQ(OpenTailUtf16(std::string_view("\xD8\x3D", 2), true), 2u);
  EXPECT_EQ(OpenTailUtf16(std::string_view("\xD8\x3D\xDE", 3), true), 3u);
  EXPECT_EQ(OpenTailUtf16(std::string_view("x", 1), false), 1u);
}

}  // namespace
}  // namespace qv
