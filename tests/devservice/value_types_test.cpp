#include "devservice/values/value_types.h"

#include <gtest/gtest.h>

#include <limits>

namespace qv::devservice {
namespace {

std::string Normalised(const char* type, std::string_view text) {
  std::string result;
  return NormaliseText(*FindValueType(type), text, result) ? result : "(refused)";
}

TEST(ValueTypes, NamesAreExact) {
  EXPECT_EQ(std::string(FindValueType("float")->answerType), "float");
  EXPECT_EQ(std::string(FindValueType("double")->answerType), "xsd:double");
  EXPECT_EQ(FindValueType("Int"), nullptr);
  EXPECT_EQ(std::string(FindValueType("datetime")->answerType), "xsd:dateTime");
  EXPECT_EQ(std::string(FindValueType("url")->answerType), "sof:url");
  EXPECT_EQ(FindValueType("dateTime"), nullptr);
  EXPECT_EQ(FindValueType(""), nullptr);
}

TEST(ValueTypes, IntegersAreCheckedAgainstTheirRange) {
  EXPECT_EQ(Normalised("byte", " -128\n"), "-128");
  EXPECT_EQ(Normalised("byte", "+007"), "7");
  EXPECT_EQ(Normalised("byte", "128"), "(refused)");
  EXPECT_EQ(Normalised("short", "-32768"), "-32768");
  EXPECT_EQ(Normalised("int", "2147483648"), "(refused)");
  EXPECT_EQ(Normalised("long", "-9223372036854775808"), "-9223372036854775808");
  EXPECT_EQ(Normalised("long", "9223372036854775808"), "(refused)");
  for (const char* text : {"", "+", "-", "+-1", "1 2", "0x1", "1e3", "1."}) {
    EXPECT_EQ(Normalised("int", text), "(refused)") << text;
  }
}

TEST(ValueTypes, BooleansHaveFourSpellings) {
  EXPECT_EQ(Normalised("boolean", "1"), "true");
  EXPECT_EQ(Normalised("boolean", "true"), "true");
  EXPECT_EQ(Normalised("boolean", "0"), "false");
  EXPECT_EQ(Normalised("boolean", " false "), "false");
  EXPECT_EQ(Normalised("boolean", "True"), "(refused)");
  EXPECT_EQ(Normalised("boolean", ""), "(refused)");
}

TEST(ValueTypes, NumbersTakeTheSpellingsOfSchemaAndC) {
  EXPECT_EQ(Normalised("double", "1.5e+003"), "1500");
  EXPECT_EQ(Normalised("double", "INF"), "INF");
  EXPECT_EQ(Normalised("double", "-inf"), "-INF");
  EXPECT_EQ(Normalised("float", "nan"), "NaN");
  for (const char* text : {"", "1,5", "1e999", "abc", "0x10", "infinity"}) {
    EXPECT_EQ(Normalised("double", text), "(refused)") << text;
  }
}

TEST(ValueTypes, StringsStayAsTheyAre) {
  EXPECT_EQ(Normalised("string", " a\n "), " a\n ");
}

TEST(ValueTypes, DatesTimesAndDurationsTakeOneForm) {
  EXPECT_EQ(Normalised("date", "2024-03-05"), "2024-03-05");
  EXPECT_EQ(Normalised("time", "10:15:30.7Z"), "10:15:30.007Z");
  EXPECT_EQ(Normalised("datetime", "2024-03-05T10:15:30+02:00"), "2024-03-05T08:15:30.000Z");
  EXPECT_EQ(Normalised("duration", "PT1.23457e+07S"), "PT12345700S");
  EXPECT_EQ(Normalised("date", "10:15:30Z"), "(refused)");
  EXPECT_EQ(Normalised("time", "2024-03-05"), "(refused)");
  EXPECT_EQ(Normalised("datetime", "2024-03-05"), "(refused)");
  EXPECT_EQ(Normalised("duration", "P"), "(refused)");
}

TEST(ValueTypes, LinksBecomeMarkup) {
  EXPECT_EQ(Normalised("url", "http://a/"), "<URL>http://a/</URL><C></C>");
  EXPECT_EQ(Normalised("url", "<URL/><C>c</C>"), "<URL></URL><C>c</C>");
  EXPECT_EQ(Normalised("url", "<URL>"), "(refused)");
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

}  // namespace
}  // namespace qv::devservice
