// Texts in the encodings that meet in the service, and the names of files.
#include "devservice/values/text.h"

#include <gtest/gtest.h>

#include "devservice/values/names.h"

namespace qv::devservice {
namespace {

using std::string_literals::operator""s;

constexpr char kReplacement[] = "\xEF\xBF\xBD";  // U+FFFD

TEST(Text, Utf8AndUtf16Convert) {
  std::u16string units;
  EXPECT_TRUE(Utf8ToUtf16("a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", units));
  EXPECT_EQ(units, u"a\u00e9\u20ac\U0001F600");
  EXPECT_EQ(Utf16ToUtf8(units), "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80");
  EXPECT_TRUE(Utf8ToUtf16("\xED\xA0\xBD\xED\xB8\x80", units)) << "a pair in three bytes each";
  EXPECT_EQ(Utf16ToUtf8(units), "\xF0\x9F\x98\x80");
  EXPECT_EQ(Utf16ToUtf8(std::u16string(1, char16_t{0xD83D})), kReplacement);
  EXPECT_EQ(Utf16ToUtf8(std::u16string(1, char16_t{0xDE00}) + u"a"), kReplacement + "a"s);
  for (const char* bytes : {"\x80", "\xC0\x80", "\xC3", "\xC3(", "\xE2\x82", "\xE0\x80\x80",
                            "\xF0\x80\x80\x80", "\xF4\x90\x80\x80", "\xF5\x80\x80\x80", "\xFF"})
    EXPECT_FALSE(Utf8ToUtf16(bytes, units)) << bytes;
}

TEST(Text, CharactersThatXmlCannotCarry) {
  EXPECT_EQ(FindForbiddenUnit(u"ab\t\n\r \U0001F600"), std::u16string::npos);
  EXPECT_EQ(FindForbiddenUnit(u"ab\u0001"), 2u);
  EXPECT_EQ(FindForbiddenUnit(std::u16string(1, char16_t{0})), 0u);
  EXPECT_EQ(FindForbiddenUnit(u"\uFFFE"), 0u);
  EXPECT_EQ(FindForbiddenUnit(u"a" + std::u16string(1, char16_t{0xDC00})), 1u);
  EXPECT_EQ(MakeCarriable("a\x01-\xFF\n\xEF\xBF\xBE"),
            "a"s + kReplacement + "-" + kReplacement + "\n" + kReplacement);
}

TEST(Text, FormsForTheWire) {
  EXPECT_EQ(EscapeXml("a&b<c>d\"e'f\rg\n]]>"), "a&amp;b&lt;c&gt;d&quot;e'f&#13;g\n]]&gt;");
  EXPECT_EQ(EncodeLatin1("a\xC3\xBF\xC4\x80\xF0\x9F\x98\x80"), "a\xFF&#256;&#128512;");
  EXPECT_EQ(EncodeUtf16("-\xC3\xA9"), "\xFF\xFE-\0\xE9\0"s);
}

TEST(FileName, NamesThatClientsCanStore) {
  for (const char* name : {"a", "a b.txt", "...", ".hidden", "\xC3\xA9", "\xC2\xA0x", "a,b'(c)%20[d]~"})
    EXPECT_TRUE(IsFileName(name)) << name;
  EXPECT_TRUE(IsFileName(std::string(255, 'a')));
  for (const char* name : {"", ".", "..", "a/b", "a\\b", "a\"b", "a;b", "a=b", " a", "a ", "a\nb", "a\rb",
                           "a\x1F", "a\x7F", "a\xC2\x85"})
    EXPECT_FALSE(IsFileName(name)) << name;
  EXPECT_FALSE(IsFileName("a\0b"s));
  EXPECT_FALSE(IsFileName(std::string(256, 'a')));
}

}  // namespace
}  // namespace qv::devservice
