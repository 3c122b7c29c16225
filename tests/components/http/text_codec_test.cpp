// Texts and their bytes: UTF-8, UTF-16, Latin-1 and whatever else iconv knows.
#include "components/http/text_codec.h"

#include <gtest/gtest.h>

#include <string>

#include "fixtures/shown_text.h"

namespace qv {
namespace {

std::string Encoded(std::u16string_view first, std::u16string_view second = {}) {
  const RoomyBytes bytes = EncodeUtf8WithRoom(first, second, 7);
  EXPECT_EQ(bytes.room, 7U);
  return std::string(bytes.Text(), bytes.size);
}

std::string FromUtf16(std::string_view bytes, bool bigEndian) {
  char16_t units[16];
  const char16_t* const end = PutDecodedUtf16(bytes, bigEndian, units);
  return Shown(WideString(std::u16string_view(units, static_cast<std::size_t>(end - units))));
}

TEST(EncodeUtf8WithRoom, EachLengthOfCharacterHasItsBytes) {
  EXPECT_EQ(Encoded(u"\x7F\u0080\u07FF\u0800\uFFFF"), "\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF");
  EXPECT_EQ(Encoded(u"\U00010000\U0010FFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(EncodeUtf8WithRoom, LoneSurrogateBecomesReplacement) {
  const char16_t units[] = {0xD800, u'a', 0xDC00, 0xD800, 0xD800, 0xDC00};
  EXPECT_EQ(Encoded({units, 6}),
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

// The fast way takes sixteen at a time; the odd character is at each place of two steps.
TEST(Utf8, OddCharacterAtEveryPlaceIsEncodedAndDecoded) {
  for (std::size_t place = 0; place < 40; ++place) {
    std::u16string text(40, u'x');
    text[place] = u'\u0080';
    const std::string bytes = std::string(place, 'x') + "\xC2\x80" + std::string(39 - place, 'x');
    EXPECT_EQ(Encoded(text), bytes) << place;
    EXPECT_EQ(DecodeUtf8(bytes), WideString(text)) << place;
  }
}

TEST(DecodeUtf8, BadBytesAreReplaced) {
  const struct {
    std::string bytes;
    const char* shown;
  } rows[] = {
      {"", ""},
      {std::string("a\0b", 3), "a\\u0000b"},
      {"\xC3\xA9", "\\u00E9"},
      {"\xE2\x82\xAC", "\\u20AC"},
      {"\xF0\x9F\x98\x80", "\\uD83D\\uDE00"},
      {"\xF4\x8F\xBF\xBF", "\\uDBFF\\uDFFF"},  // the last character
      {"a\x80z", "a\\uFFFDz"},
      {"\xE2\x82", "\\uFFFD"},  // cut
      {"\xE2\x82z", "\\uFFFDz"},
      {"\xC0\xAF", "\\uFFFD\\uFFFD"},  // overlong
      {"\xE0\x80\xAF", R"(\uFFFD\uFFFD\uFFFD)"},
      {"\xED\xA0\x80", R"(\uFFFD\uFFFD\uFFFD)"},            // a surrogate
      {"\xF4\x90\x80\x80", R"(\uFFFD\uFFFD\uFFFD\uFFFD)"},  // beyond Unicode
      {"\xFE\xFF", "\\uFFFD\\uFFFD"},
  };
  for (const auto& row : rows) EXPECT_EQ(Shown(DecodeUtf8(row.bytes)), row.shown) << row.bytes;
}

TEST(DecodeLatin1, BytesAreUnits) {
  EXPECT_EQ(Shown(DecodeLatin1("a\x80\xFF")), "a\\u0080\\u00FF");
}

TEST(DecodeUtf16, BothByteOrdersGiveTheText) {
  EXPECT_EQ(FromUtf16(std::string_view("a\0\xAC\x20", 4), false), "a\\u20AC");
  EXPECT_EQ(FromUtf16(std::string_view("\0a\x20\xAC", 4), true), "a\\u20AC");
}

TEST(DecodeUtf16, PairStaysAndLoneHalvesAndOddByteAreReplaced) {
  EXPECT_EQ(FromUtf16(std::string_view("\xD8\x3D\xDE\x00", 4), true), "\\uD83D\\uDE00");
  EXPECT_EQ(FromUtf16(std::string_view("\xD8\x3D\0a\xDE\0\0", 7), true), "\\uFFFDa\\uFFFD\\uFFFD");
}

std::string ByIconv(std::string_view bytes, const char* charset) {
  WideString text;
  EXPECT_TRUE(DecodeByIconv(bytes, charset, &text));
  return Shown(text);
}

TEST(DecodeByIconv, RareCharsetIsReadAndBadBytesAreReplaced) {
  EXPECT_EQ(ByIconv("\x80\xE4", "windows-1252"), "\\u20AC\\u00E4");
  EXPECT_EQ(ByIconv("\x82\xA0", "shift_jis"), "\\u3042");
  EXPECT_EQ(ByIconv("a\xFFy\x82", "shift_jis"), "a\\uFFFDy\\uFFFD");
}

TEST(DecodeByIconv, LongTextIsReadWhole) {
  WideString text;
  ASSERT_TRUE(DecodeByIconv(std::string(100'000, '\xE4'), "windows-1252", &text));
  EXPECT_EQ(text, WideString(std::u16string(100'000, u'\u00E4')));
}

TEST(DecodeByIconv, UnknownCharsetIsReported) {
  WideString text;
  EXPECT_FALSE(DecodeByIconv("a", "no-such-charset", &text));
}

TEST(OpenTailUtf8, CountsTheBytesOfACutCharacter) {
  const std::pair<const char*, std::size_t> rows[] = {
      {"abc", 0},          {"a\xC3", 1},    {"\xE2\x82", 2}, {"\xF0\x9F\x98", 3},
      {"\xE2\x82\xAC", 0}, {"\x80\x80", 0}, {"", 0}};
  for (const auto& [bytes, tail] : rows) EXPECT_EQ(OpenTailUtf8(bytes), tail) << bytes;
}

TEST(OpenTailUtf16, CountsAnOddByteAndHalfAPair) {
  EXPECT_EQ(OpenTailUtf16(std::string_view("\0a", 2), true), 0U);
  EXPECT_EQ(OpenTailUtf16(std::string_view("\0a\0", 3), true), 1U);
  EXPECT_EQ(OpenTailUtf16("\xD8\x3D", true), 2U);
  EXPECT_EQ(OpenTailUtf16("\xD8\x3D\xDE", true), 3U);
  EXPECT_EQ(OpenTailUtf16("x", false), 1U);
}

}  // namespace
}  // namespace qv
