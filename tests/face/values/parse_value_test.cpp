// Values of a type that is given by its name.
#include "scriptwells/value.h"
#include "tests/face/refusal.h"
#include "tests/tools/words.h"

namespace scriptwells {
namespace {

using qv::cli::testing::Each;
using testing::RefusalOf;

std::string Refusal(const char* type, const std::string& text) {
  return RefusalOf([&] { Parse(type, text); });
}

struct Row {
  const char* type;
  const char* text;
  Value value;
};

TEST(ParseValue, TakesEveryType) {
  const Row rows[] = {{"byte", "-128", Byte(-128)},
                      {"byte", "127", Byte(127)},
                      {"short", "-32768", Short(-32768)},
                      {"short", "32767", Short(32767)},
                      {"int", "-2147483648", Int(INT32_MIN)},
                      {"int", "2147483647", Int(INT32_MAX)},
                      {"long", "-9223372036854775808", Long(INT64_MIN)},
                      {"long", "9223372036854775807", Long(INT64_MAX)},
                      {"boolean", "true", true},
                      {"boolean", "1", true},
                      {"boolean", "false", false},
                      {"boolean", "0", false},
                      {"float", "0.1", 0.1F},
                      {"double", "-1.25e3", -1250.0},
                      {"string", "", ""},
                      {"string", " a\n\xF0\x9F\x98\x80", " a\n\xF0\x9F\x98\x80"},
                      {"date", "2024-03-05", Date{2024, 3, 5}},
                      {"time", "10:15", Time{10, 15, 0, 0}},
                      {"datetime", "2024-03-05T10:15:30.5Z", DateTime{{2024, 3, 5}, {10, 15, 30, 500}}},
                      {"duration", "-P1DT2H", Duration{true, 0, 0, 1, 2, 0, 0}}};
  for (const Row& row : rows) EXPECT_EQ(Parse(row.type, row.text), row.value) << row.type << " " << row.text;
}

struct ReasonRow {
  const char* type;
  const char* text;
  const char* reason;
};

TEST(ParseValue, RefusesOtherTexts) {
  for (const std::string& text : Each("|12abc| 12|12 |+12|0x10|1.0|99999999999999999999x"))
    EXPECT_EQ(Refusal("int", text), "'" + text + "' is not a whole number");
  const ReasonRow rows[] = {
      {"byte", "128", "128 is out of range for byte (-128 to 127)"},
      {"byte", "-129", "-129 is out of range for byte (-128 to 127)"},
      {"short", "32768", "32768 is out of range for short (-32768 to 32767)"},
      {"int", "99999999999", "99999999999 is out of range for int (-2147483648 to 2147483647)"},
      {"long", "9223372036854775808",
       "9223372036854775808 is out of range for long (-9223372036854775808 to 9223372036854775807)"},
      {"float", "1e39", "1e39 is out of range for float"},
      {"double", "1e400", "1e400 is out of range for double"},
      {"boolean", "TRUE", "'TRUE' is not a boolean (true or false)"},
      {"boolean", "", "'' is not a boolean (true or false)"},
      {"double", "one", "'one' is not a number"},
      {"double", "1,5", "'1,5' is not a number"},
      {"double", "", "'' is not a number"},
      {"double", "inf", "'inf' is not a finite number"},
      {"float", "nan", "'nan' is not a finite number"},
      {"date", "2024-3-5", "'2024-3-5' is not a date (YYYY-MM-DD)"},
      {"time", "24:00", "'24:00' names no time of day (00:00 to 23:59:59.999)"},
      {"datetime", "2024-03-05", "'2024-03-05' is not a datetime (YYYY-MM-DDThh:mm or YYYY-MM-DDThh:mm:ss)"},
      {"duration", "P1.5D", "'P1.5D' has a fraction of its days; only seconds may have one"},
      {"string", "\xFF", "the text is not valid UTF-8"}};
  for (const ReasonRow& row : rows) EXPECT_EQ(Refusal(row.type, row.text), row.reason);
}

TEST(ParseValue, RefusesWhatDoesNotTravel) {
  for (const std::string& text :
       Each("1899-12-29T06:00|1899-12-29T00:00:01|1899-12-28T23:59:59.501|2024-03-05T23:59:59.501|"
            "2024-03-05T23:59:59.999|1960-01-01T23:59:59.6|9999-12-31T23:59:59.9"))
    EXPECT_EQ(Refusal("datetime", text),
              "'" + text +
                  "' would arrive as another one: no time of day travels on 1899-12-29, nor in the last half "
                  "second of a day; send a string");
  for (const std::string& text : Each("PT1000000S|PT999999.7S"))
    EXPECT_EQ(Refusal("duration", text),
              "'" + text + "' would travel as 'PT1e+06S'; write it in other units");
  EXPECT_EQ(Refusal("duration", "PT0.00001S"),
            "'PT0.00001S' would travel as 'PT1e-05S'; write it in other units");
  EXPECT_EQ(Refusal("time", "23:59:59.999"), "accepted");
}

TEST(ParseValue, RefusesOtherTypes) {
  for (const std::string& type : Each("Int|Date|dateTime|xsd||decimal|file|empty"))
    EXPECT_EQ(Refusal(type.c_str(), "1"),
              "unknown type '" + type +
                  "' (known: byte, short, int, long, boolean, float, double, string, date, time, datetime, "
                  "duration)");
  for (const char* type : {"url", "link"})
    EXPECT_EQ(Refusal(type, "http://srv/"), "a URL cannot be sent as a parameter; send its text as a string");
  for (const char* type : {"table", "recordlist"})
    EXPECT_EQ(Refusal(type, "a,b"),
              "a table cannot be sent as a parameter; send its text, such as CSV or JSON, as a string");
}

}  // namespace
}  // namespace scriptwells
