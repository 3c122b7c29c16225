// Single values as text, JSON, CSV and as a table.
#include "tools/output/answer_format.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "fixtures/variant_makers.h"
#include "qvscriptwells/create_objects.h"

namespace qv::cli {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

Variant Duration(const char16_t* text) {
  return Variant::FromObject(CreateDuration(text).get());
}

struct Row {
  Variant value;
  std::string text;
};

// The texts are without their line end.
void ExpectTexts(OutputFormat format, const std::vector<Row>& rows) {
  for (const Row& row : rows) EXPECT_EQ(FormatAnswer(format, row.value), row.text + "\n");
}

TEST(AnswerFormat, JsonOfPlainValues) {
  ExpectTexts(OutputFormat::kJson,
              {{Int(42), R"({"type":"int","value":42,"tag":22})"},
               {I1(-128), R"({"type":"byte","value":-128,"tag":16})"},
               {I2(32767), R"({"type":"short","value":32767,"tag":2})"},
               {Bool(true), R"({"type":"boolean","value":true,"tag":11})"},
               {R8(0.30000000000000004), R"({"type":"double","value":0.30000000000000004,"tag":5})"},
               {R4(0.1F), R"({"type":"float","value":0.1,"tag":4})"},
               {I8(9007199254740991), R"({"type":"long","value":9007199254740991,"tag":20})"}});
  ExpectTexts(OutputFormat::kJson,
              {{I8(9007199254740992), R"({"type":"long","value":"9007199254740992","tag":20})"},
               {I8(-9007199254740992), R"({"type":"long","value":"-9007199254740992","tag":20})"},
               {R8(std::nan("")), R"({"type":"double","value":"NaN","tag":5})"},
               {R8(-kInfinity), R"({"type":"double","value":"-INF","tag":5})"},
               {R4(static_cast<float>(kInfinity)), R"({"type":"float","value":"INF","tag":4})"},
               {Text(u"a\"b\\\n\u00E9\U0001F600"),
                "{\"type\":\"string\",\"value\":\"a\\\"b\\\\\\n\xC3\xA9\xF0\x9F\x98\x80\",\"tag\":8}"},
               {Text(u""), R"({"type":"string","value":"","tag":8})"},
               {NullText(), R"({"type":"string","value":null,"tag":8})"},
               {Variant(), R"({"type":"empty","value":null,"tag":0})"},
               {Variant::Null(), R"({"type":"null","value":null,"tag":1})"},
               {Variant::FromRaw(VT_UI1, VariantData()), R"({"type":"unknown","value":null,"tag":17})"}});
}

TEST(AnswerFormat, JsonOfDatesHasTheNumber) {
  ExpectTexts(OutputFormat::kJson,
              {{Date(45356), R"({"type":"date","value":"2024-03-05","tag":7,"serial":45356.0})"},
               {Date(45356.42743055556),
                R"({"type":"datetime","value":"2024-03-05T10:15:30","tag":7,"serial":45356.42743055556})"},
               {Date(0.25), R"({"type":"time","value":"06:00:00","tag":7,"serial":0.25})"},
               {Date(-0.25), R"({"type":"datetime","value":"1899-12-29T18:00:00","tag":7,"serial":-0.25})"},
               {Date(2958466.5), R"({"type":"datetime","value":"2958466.5","tag":7,"serial":2958466.5})"},
               {Date(std::nan("")), R"({"type":"datetime","value":"NaN","tag":7,"serial":"NaN"})"}});
}

// The text has 6 significant digits of the seconds, the number all of them.
TEST(AnswerFormat, JsonOfObjectsHasTheirFields) {
  ExpectTexts(OutputFormat::kJson,
              {{Duration(u"P1DT2H"),
                R"({"type":"duration","value":"P1DT2H","tag":13,"negative":false,"years":0,"months":0,)"
                R"("days":1,"hours":2,"minutes":0,"seconds":0})"},
               {Duration(u"-P1Y2M3DT4H5M12345.678S"),
                R"({"type":"duration","value":"-P1Y2M3DT4H5M12345.7S","tag":13,"negative":true,"years":1,)"
                R"("months":2,"days":3,"hours":4,"minutes":5,"seconds":12345.678})"},
               {Variant::FromObject(CreateUrl().get()), R"({"type":"url","value":"","tag":13,"caption":""})"},
               {Variant::FromObject(nullptr), R"({"type":"object","value":null,"tag":13})"},
               {Variant::FromObject(CreateParameters().get()), R"({"type":"object","value":"","tag":13})"}});
  EXPECT_EQ(TypeName(Variant::FromObject(CreateRecordList().get())), "recordlist");
  // A server's text must not make the JSON invalid.
  const std::pair<const char16_t*, const char*> rows[] = {{u"PTINFS", R"(,"seconds":"INF"})"},
                                                          {u"PTNANS", R"(,"seconds":"NaN"})"}};
  for (const auto& [text, end] : rows)
    EXPECT_NE(FormatAnswer(OutputFormat::kJson, Duration(text)).find(end), std::string::npos);
}

TEST(AnswerFormat, TextIsTheBareValue) {
  ExpectTexts(OutputFormat::kText, {{Int(-7), "-7"},
                                    {I1(65), "65"},
                                    {I8(9223372036854775807), "9223372036854775807"},
                                    {R8(0.1), "0.1"},
                                    {R8(0.30000000000000004), "0.30000000000000004"},
                                    {R4(0.1F), "0.1"},
                                    {R8(3.0), "3"},
                                    {R8(kInfinity), "INF"},
                                    {Bool(false), "false"},
                                    {Text(u"two\nlines"), "two\nlines"},
                                    {Variant(), ""},
                                    {Date(45356), "2024-03-05"},
                                    {Date(45356.5), "2024-03-05T12:00:00"},
                                    {Date(0.25), "06:00:00"},
                                    {Date(-0.25), "1899-12-29T18:00:00"},
                                    {Date(2958466), "2958466"},
                                    {Duration(u"P1DT2H"), "P1DT2H"},
                                    {Variant::FromObject(CreateUrl().get()), ""}});
}

TEST(AnswerFormat, TableAndCsv) {
  ExpectTexts(OutputFormat::kTable,
              {{Int(42), "NAME   TYPE VALUE\nanswer int  42"},
               {Date(45356.5), "NAME   TYPE     VALUE\nanswer datetime 2024-03-05T12:00:00"},
               {Duration(u"P1DT2H"), "NAME   TYPE     VALUE\nanswer duration P1DT2H"}});
  ExpectTexts(OutputFormat::kCsv, {{Int(42), "value\r\n42\r"},
                                   {Text(u"a,\"b\""), "value\r\n\"a,\"\"b\"\"\"\r"},
                                   {Date(45356.5), "value\r\n2024-03-05T12:00:00\r"},
                                   {Text(u""), "value\r\n\"\"\r"},
                                   {Variant(), "value\r\n\r"}});
  const Row rows[] = {{Variant(), "value\r\nNULL\r\n"},
                      {Text(u""), "value\r\n\"\"\r\n"},
                      {Text(u"NULL"), "value\r\n\"NULL\"\r\n"}};
  for (const Row& row : rows) EXPECT_EQ(FormatAnswer(OutputFormat::kCsv, row.value, "NULL"), row.text);
}

TEST(AnswerFormat, NoValueIsEmptyOrNull) {
  for (const Variant& value : {Variant(), Variant::Null(), NullText(), Variant::FromObject(nullptr),
                               Variant::FromRaw(VT_UI1, VariantData())})
    EXPECT_FALSE(HasValue(value)) << value.Tag();
  for (const Variant& value : {Text(u""), Int(0), Bool(false), Date(0), R8(std::nan("")),
                               Variant::FromObject(CreateParameters().get())})
    EXPECT_TRUE(HasValue(value)) << value.Tag();
}

}  // namespace
}  // namespace qv::cli
