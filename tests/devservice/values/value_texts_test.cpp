// Texts of values: numbers, booleans, durations and links, the table of their types, and their encodings.
#include <gtest/gtest.h>

#include <initializer_list>
#include <limits>

#include "devservice/values/duration_text.h"
#include "devservice/values/names.h"
#include "devservice/values/text.h"
#include "devservice/values/url_text.h"
#include "devservice/values/value_types.h"

namespace qv::devservice {
namespace {

using namespace std::string_literals;

constexpr char kRefused[] = "(refused)";

struct Row {
  const char* text;
  const char* read;
};
using Texts = std::initializer_list<const char*>;

std::string Rewritten(std::string_view text) {
  Duration duration;
  return ParseDuration(text, duration) ? FormatDuration(duration) : kRefused;
}

TEST(DurationText, EachPartGoesToItsField) {
  Duration duration;
  ASSERT_TRUE(ParseDuration("-P1Y2M3DT4H5M6.5S", duration));
  EXPECT_TRUE(duration.negative);
  for (const DurationField& field : kDurationFields)
    EXPECT_EQ(duration.*field.count, &field - kDurationFields + 1) << field.name;
  EXPECT_EQ(duration.seconds, 6.5);
  ASSERT_TRUE(ParseDuration("PT7M", duration));
  EXPECT_FALSE(duration.negative);
  EXPECT_EQ(duration.months, 0);
  EXPECT_EQ(duration.minutes, 7);
}

TEST(DurationText, FormsOfTheStandardAndOfClientsAreRead) {
  for (const char* same : {"P1Y2M3DT4H5M6.5S", "-P1D", "P0", "-P0", "PT90S", "P5M", "PT5M", "P1DT2H", "P1Y3D",
                           "PT0.001S", "P2147483647Y"})
    EXPECT_EQ(Rewritten(same), same);
  constexpr Row kRows[] = {
      {"P0D", "P0"},
      {"PT0S", "P0"},
      {"P01Y", "P1Y"},
      {"P1DT0H", "P1D"},
      {" P1D\n", "P1D"},
      {"PT1.50S", "PT1.5S"},
      {"PT1.5E1S", "PT15S"},
      {"PT1e-05S", "PT0.00001S"},
      {"PT1.23457e+07S", "PT12345700S"},
      {"PT1.23457e+007S", "PT12345700S"},
  };
  for (const Row& row : kRows) EXPECT_EQ(Rewritten(row.text), row.read) << row.text;
  EXPECT_EQ(Rewritten("PT1e300S").size(), 304U) << "no exponent";
  EXPECT_EQ(Rewritten("PT5e-324S").size(), 329U) << "no exponent";
}

TEST(DurationText, OtherFormsAreRefused) {
  for (const char* text : {"",         "P",        "-P",        "PT",           "P1DT",
                           "1D",       "p1d",      "P1d",       "PT1h",         "+P1D",
                           "P-1D",     "--P1D",    "-1D",       "P1D2Y",        "P3D1Y",
                           "P1Y1Y",    "P1.9Y",    "PT1.5M",    "P5H",          "PT5Y",
                           "PT5D",     "P1W",      "P1",        "PT1",          "P00",
                           "P0T0S",    "PT1SP",    "P1D T1H",   "P 1D",         "PT1,5S",
                           "PT.5S",    "PT1.S",    "PTS",       "PT-1S",        "PT1e5",
                           "PT1eS",    "PT1e+S",   "PTinfS",    "PTnanS",       "PT0x1S",
                           "P1DP1D",   "PT1S1M",   "P1DT1HT1M", "P2147483648Y", "PT99999999999H",
                           "PT1e999S", "PT1.5.5S", "PYMD"})
    EXPECT_EQ(Rewritten(text), kRefused) << text;
}

std::string LinkIn(std::string_view text) {
  UrlValue url;
  return ParseUrl(text, url) ? url.link + "|" + url.caption : kRefused;
}

TEST(UrlText, LinksAreReadWithAndWithoutMarkup) {
  constexpr Row kRows[] = {
      {"<URL>http://a/b?c=1&d=2</URL><C>a <b> c</C>", "http://a/b?c=1&d=2|a <b> c"},
      {"<URL></URL><C></C>", "|"},
      {"<URL/><C/>", "|"},
      {"<URL>u</URL><C/>", "u|"},
      {"<URL/><C>c</C>", "|c"},
      {"http://a/b", "http://a/b|"},
      {"", "|"},
      {"<url>u</url>", "<url>u</url>|"},
  };
  for (const Row& row : kRows) EXPECT_EQ(LinkIn(row.text), row.read) << row.text;
  for (const char* broken : {"<URL>", "<URL>u", "<URL>u</URL>", "<C>c</C>", "<URL>u</URL><C>c",
                             "<C>c</C><URL>u</URL>", "<URL>u</URL> <C>c</C>", "x<URL>u</URL><C>c</C>",
                             "<URL>u</URL><C>c</C>x", "<URL>a<URL>b</URL><C>c</C>",
                             "<URL>u</URL><C>a<C>b</C>", "<URL>a<C/>b</URL><C>c</C>", "<URL/><URL/>"})
    EXPECT_EQ(LinkIn(broken), kRefused) << broken;
  EXPECT_EQ(FormatUrl({"u", "c"}), "<URL>u</URL><C>c</C>");
  EXPECT_EQ(FormatUrl({"", ""}), "<URL></URL><C></C>") << "clients misread <URL/>";
}

TEST(ValueTypes, NamesAreExact) {
  EXPECT_EQ(std::string(FindValueType("float")->answerType), "float");
  EXPECT_EQ(std::string(FindValueType("double")->answerType), "xsd:double");
  EXPECT_EQ(std::string(FindValueType("datetime")->answerType), "xsd:dateTime");
  EXPECT_EQ(std::string(FindValueType("url")->answerType), "sof:url");
  for (const char* unknown : {"Int", "dateTime", ""}) EXPECT_EQ(FindValueType(unknown), nullptr) << unknown;
}

std::string Normalised(const char* type, std::string_view text) {
  std::string result;
  return NormaliseText(*FindValueType(type), text, result) ? result : kRefused;
}

void ExpectRefused(const char* type, Texts texts) {
  for (const char* text : texts) EXPECT_EQ(Normalised(type, text), kRefused) << type << " " << text;
}

TEST(ValueTypes, TextsTakeOneForm) {
  struct TypedRow {
    const char* type;
    const char* text;
    const char* normalised;
  };
  constexpr TypedRow kRows[] = {
      {"byte", " -128\n", "-128"},
      {"byte", "+007", "7"},
      {"short", "-32768", "-32768"},
      {"long", "-9223372036854775808", "-9223372036854775808"},
      {"boolean", "1", "true"},
      {"boolean", "true", "true"},
      {"boolean", "0", "false"},
      {"boolean", " false ", "false"},
      {"double", "1.5e+003", "1500"},
      {"double", "INF", "INF"},
      {"double", "-inf", "-INF"},
      {"float", "nan", "NaN"},
      {"string", " a\n ", " a\n "},
      {"date", "2024-03-05", "2024-03-05"},
      {"time", "10:15:30.7Z", "10:15:30.007Z"},
      {"datetime", "2024-03-05T10:15:30+02:00", "2024-03-05T08:15:30.000Z"},
      {"duration", "PT1.23457e+07S", "PT12345700S"},
      {"url", "http://a/", "<URL>http://a/</URL><C></C>"},
      {"url", "<URL/><C>c</C>", "<URL></URL><C>c</C>"},
  };
  for (const TypedRow& row : kRows) EXPECT_EQ(Normalised(row.type, row.text), row.normalised) << row.text;
  ExpectRefused("byte", {"128"});
  ExpectRefused("int", {"2147483648", "", "+", "-", "+-1", "1 2", "0x1", "1e3", "1."});
  ExpectRefused("long", {"9223372036854775808"});
  ExpectRefused("boolean", {"True", ""});
  ExpectRefused("double", {"", "1,5", "1e999", "abc", "0x10", "infinity"});
  ExpectRefused("date", {"10:15:30Z"});
  ExpectRefused("time", {"2024-03-05"});
  ExpectRefused("datetime", {"2024-03-05"});
  ExpectRefused("duration", {"P"});
  ExpectRefused("url", {"<URL>"});
}

TEST(ValueTypes, NumbersHaveTheShortestDigits) {
  EXPECT_EQ(FormatDouble(0.1), "0.1");
  EXPECT_EQ(FormatDouble(1.0 / 3.0), "0.3333333333333333");
  EXPECT_EQ(FormatDouble(-0.0), "-0");
  EXPECT_EQ(FormatDouble(1e300), "1e+300");
  EXPECT_EQ(FormatFloat(0.1F), "0.1");
  EXPECT_EQ(FormatFloat(16777216.0F), "16777216");
  EXPECT_EQ(FormatFloat(-std::numeric_limits<float>::infinity()), "-INF");
}

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
  EXPECT_EQ(FindForbiddenUnit(u"ab\u0001"), 2U);
  EXPECT_EQ(FindForbiddenUnit(std::u16string(1, char16_t{0})), 0U);
  EXPECT_EQ(FindForbiddenUnit(u"\uFFFE"), 0U);
  EXPECT_EQ(FindForbiddenUnit(u"a" + std::u16string(1, char16_t{0xDC00})), 1U);
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
