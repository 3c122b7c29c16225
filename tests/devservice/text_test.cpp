#include "devservice/values/text.h"

#include <gtest/gtest.h>

namespace qv::devservice {
namespace {

TEST(Text, Utf8AndUtf16Convert) {
  std::u16string units;
  EXPECT_TRUE(Utf8ToUtf16("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", units));
  EXPECT_EQ(units, u"a\u00e9\u20ac\U0001F600");
  EXPECT_EQ(Utf16ToUtf8(units), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
}

TEST(Text, SurrogatesInThreeBytesFormAPair) {
  std::u16string units;
  EXPECT_TRUE(Utf8ToUtf16("\xED\xA0\xBD\xED\xB8\x80", units));
  EXPECT_EQ(Utf16ToUtf8(units), "\xF0\x9F\x98\x80");
}

TEST(Text, LoneSurrogateBecomesReplacement) {
  EXPECT_EQ(Utf16ToUtf8(std::u16string(1, char16_t{0xD83D})), "\xEF\xBF\xBD");
  EXPECT_EQ(Utf16ToUtf8(std::u16string(1, char16_t{0xDE00}) + u"a"),
            "\xEF\xBF\xBD"
            "a");
}

TEST(Text, MalformedUtf8IsRefused) {
  std::u16string units;
  for (const char* bytes : {"\x80", "\xC0\x80", "\xC3", "\xC3(", "\xE2\x82", "\xE0\x80\x80",
                            "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"}) {
    EXPECT_FALSE(Utf8ToUtf16(bytes, units)) << bytes;
  }
}

TEST(Text, ForbiddenUnitsAreFound) {
  EXPECT_EQ(FindForbiddenUnit(u"ab\t\n\r \U0001F600"), std::u16string::npos);
  EXPECT_EQ(FindForbiddenUnit(u"ab\u0001"), 2u);
  EXPECT_EQ(FindForbiddenUnit(std::u16string(1, char16_t{0})), 0u);
  EXPECT_EQ(FindForbiddenUnit(u"\uFFFE"), 0u);
  EXPECT_EQ(FindForbiddenUnit(u"a" + std::u16string(1, char16_t{0xDC00})), 1u);
}

TEST(Text, MakeCarriableReplacesWhatXmlRefuses) {
  EXPECT_EQ(MakeCarriable("a\x01"
                          "b\xFF\n\xEF\xBF\xBE"),
            "a\xEF\xBF\xBD"
            "b\xEF\xBF\xBD\n\xEF\xBF\xBD");
}

TEST(Text, EscapeCoversMarkupAndCarriageReturn) {
  EXPECT_EQ(EscapeXml("a&b<c>d\"e'f\rg\n]]>"), "a&amp;b&lt;c&gt;d&quot;e'f&#13;g\n]]&gt;");
}

TEST(Text, EncodingsForTheWire) {
  EXPECT_EQ(EncodeLatin1("a\xC3\xBF\xC4\x80\xF0\x9F\x98\x80"), "a\xFF&#256;&#128512;");
  EXPECT_EQ(EncodeUtf16("a\xC3\xA9"), std::string("\xFF\xFE"
                                                  "a\0\xE9\0",
                                                  6));
}

}  // namespace
}  // namespace qv::devservice
