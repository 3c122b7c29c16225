// Parameters on the command line: which are rejected, and which get a note.
#include "tools/values/parameter_text.h"

#include "tests/tools/refusal.h"
#include "tests/tools/words.h"

namespace qv::cli {
namespace {

using testing::Each;

Variant Value(const std::string& text) {
  return ParseParameter(text).value;
}

std::string Refusal(const std::string& text) {
  return testing::RefusalOf([&] { ParseParameter(text); });
}

// Parameters named "a", each rejected with the reason after its own value.
struct ReasonRow {
  const char* text;  // "type:value"
  const char* reason;
};

void ExpectReasons(const std::vector<ReasonRow>& rows) {
  for (const ReasonRow& row : rows)
    EXPECT_EQ(Refusal(std::string("a=") + row.text), std::string("parameter 'a': ") + row.reason);
}

// All of them have these notes, joined with a bar.
void ExpectNotes(const std::string& parameters, const std::string& notes) {
  for (const std::string& text : Each(parameters)) {
    std::string all;
    for (const std::string& note : ParseParameter(text).notes) all += (all.empty() ? "" : "|") + note;
    EXPECT_EQ(all, notes) << text;
  }
}

TEST(ParameterText, WholeNumbersTakeTheirWholeRange) {
  EXPECT_EQ(Value("a=byte:-128").Tag(), VT_I1);
  EXPECT_EQ(Value("a=byte:-128").Data().cVal, -128);
  EXPECT_EQ(Value("a=byte:127").Data().cVal, 127);
  EXPECT_EQ(Value("a=short:-32768").Tag(), VT_I2);
  EXPECT_EQ(Value("a=short:-32768").Data().iVal, -32768);
  EXPECT_EQ(Value("a=short:32767").Data().iVal, 32767);
  EXPECT_EQ(Value("a=int:-2147483648").Tag(), VT_INT);
  EXPECT_EQ(Value("a=int:-2147483648").Data().intVal, -2147483647 - 1);
  EXPECT_EQ(Value("a=int:2147483647").Data().intVal, 2147483647);
  EXPECT_EQ(Value("a=long:9223372036854775807").Tag(), VT_I8);
  EXPECT_EQ(Value("a=long:9223372036854775807").Data().llVal, 9223372036854775807LL);
  EXPECT_EQ(Value("a=long:-9223372036854775808").Data().llVal, -9223372036854775807LL - 1);
}

TEST(ParameterText, NumbersOutOfRangeAreRejected) {
  ExpectReasons(
      {{"byte:128", "128 is out of range for byte (-128 to 127)"},
       {"byte:-129", "-129 is out of range for byte (-128 to 127)"},
       {"short:32768", "32768 is out of range for short (-32768 to 32767)"},
       {"int:99999999999", "99999999999 is out of range for int (-2147483648 to 2147483647)"},
       {"long:9223372036854775808",
        "9223372036854775808 is out of range for long (-9223372036854775808 to 9223372036854775807)"},
       {"float:1e39", "1e39 is out of range for float"},
       {"double:1e400", "1e400 is out of range for double"}});
}

TEST(ParameterText, ValuesOfAnotherTypeAreRejected) {
  for (const std::string& text : Each("|12abc| 12|12 |+12|0x10|1.0|99999999999999999999x"))
    EXPECT_EQ(Refusal("a=int:" + text), "parameter 'a': '" + text + "' is not a whole number");
  ExpectReasons(
      {{"boolean:TRUE", "'TRUE' is not a boolean (true or false)"},
       {"boolean:", "'' is not a boolean (true or false)"},
       {"double:one", "'one' is not a number"},
       {"double:1,5", "'1,5' is not a number"},
       {"double:", "'' is not a number"},
       {"double:inf", "'inf' is not a finite number"},
       {"float:nan", "'nan' is not a finite number"},
       {"date:2024-3-5", "'2024-3-5' is not a date (YYYY-MM-DD)"},
       {"time:24:00", "'24:00' names no time of day (00:00 to 23:59:59.999)"},
       {"datetime:2024-03-05", "'2024-03-05' is not a datetime (YYYY-MM-DDThh:mm or YYYY-MM-DDThh:mm:ss)"},
       {"duration:P1.5D", "'P1.5D' has a fraction of its days; only seconds may have one"}});
}

TEST(ParameterText, OtherTypesHaveTheirValues) {
  EXPECT_EQ(Value("a=boolean:true").Tag(), VT_BOOL);
  for (const char* text : {"a=boolean:true", "a=boolean:1"})
    EXPECT_EQ(Value(text).Data().boolVal, VARIANT_TRUE);
  for (const char* text : {"a=boolean:false", "a=boolean:0"})
    EXPECT_EQ(Value(text).Data().boolVal, VARIANT_FALSE);
  EXPECT_EQ(Value("a=float:0.5").Tag(), VT_R4);
  EXPECT_EQ(Value("a=float:0.5").Data().fltVal, 0.5F);
  EXPECT_EQ(Value("a=double:-1.25e3").Tag(), VT_R8);
  EXPECT_EQ(Value("a=double:-1.25e3").Data().dblVal, -1250.0);
  const std::pair<const char*, double> rows[] = {
      {"a=date:2024-03-05", 45356.0}, {"a=time:12:00", 0.5}, {"a=datetime:2024-03-05T12:00:00", 45356.5}};
  for (const auto& [text, serial] : rows) {
    EXPECT_EQ(Value(text).Tag(), VT_DATE) << text;
    EXPECT_EQ(Value(text).Data().date, serial) << text;
  }
  const Variant value = Value("a=duration:P1DT2H");
  EXPECT_EQ(value.Tag(), VT_UNKNOWN);
  ASSERT_NE(value.Object(), nullptr);
}

TEST(ParameterText, StringIsEverythingAfterTheColon) {
  const std::pair<const char*, const char16_t*> rows[] = {{"", u""},
                                                          {"a=b:c", u"a=b:c"},
                                                          {" two words ", u" two words "},
                                                          {"\xC3\xA9\xF0\x9F\x98\x80", u"\u00E9\U0001F600"}};
  for (const auto& [text, expected] : rows) {
    const Variant value = Value(std::string("x=string:") + text);
    EXPECT_EQ(value.Tag(), VT_BSTR);
    EXPECT_FALSE(value.Text().IsNull());
    EXPECT_EQ(value.Text().view(), expected);
  }
  EXPECT_EQ(ParseParameter("a:b=string:c").name, "a:b");
  EXPECT_EQ(ParseParameter("two words=int:1").name, "two words");
}

TEST(ParameterText, ChangesOnTheWayAreNoted) {
  ExpectNotes(
      "a=double:1234567|a=double:3.14159265|a=float:1.2345678|a=duration:PT12345.678S|a=duration:P1DT0."
      "1234567S",
      "travels with 6 significant digits");
  ExpectNotes(
      "a=double:0.1|a=double:123456|a=float:0.1|a=int:1234567|a=duration:PT12345.6S|a=duration:PT999999S|"
      "a=duration:P32767D",
      "");
  ExpectNotes("a=time:10:15:30.007",
              "travels with '.7' for its 7 milliseconds, which a server may read as a decimal fraction");
  ExpectNotes("a=datetime:2024-03-05T10:15:30.05",
              "travels with '.50' for its 50 milliseconds, which a server may read as a decimal fraction");
  ExpectNotes("a=time:10:15:30.100|a=time:10:15:30.999", "");
  // The value decides on the type that is sent.
  ExpectNotes("a=datetime:2024-03-05T00:00|a=datetime:2024-03-05T00:00:00.000Z", "travels as date");
  ExpectNotes("a=datetime:1899-12-30T10:15|a=datetime:1899-12-30T00:00|a=date:1899-12-30", "travels as time");
  ExpectNotes("a=date:2024-03-05|a=date:1899-12-29|a=time:00:00|a=time:10:15|a=datetime:2024-03-05T10:15",
              "");
}

// The example in the message has the type that the value looks like.
TEST(ParameterText, MissingPartsAreRejectedWithAnExample) {
  const std::pair<std::string, const char*> rows[] = {
      {"x", "a=int:5"},
      {"x=int", "a=int:5"},
      {"x:int=1", "a=int:5"},
      {"=int:1", "a=int:5"},
      {"", "a=int:5"},
      {"x=" + std::string(100, 'y'), "a=int:5"},
      {"a=5", "a=int:5"},
      {"b=5000000000", "b=long:5000000000"},
      {"c=1e3", "c=double:1e3"},
      {"d=true", "d=boolean:true"},
      {"e=2024-03-05", "e=date:2024-03-05"},
      {"f=P1D", "f=duration:P1D"},
      {"g=hello world", "g=string:hello world"},
      {"h=", "h=string:"},
  };
  for (const auto& [given, example] : rows)
    EXPECT_EQ(Refusal(given),
              "parameter '" + given + "' is not of the form name=type:value, such as " + example);
  for (const std::string& type : Each("Int|Date|dateTime|xsd||decimal"))
    EXPECT_EQ(Refusal("d=" + type + ":1"),
              "parameter 'd': unknown type '" + type +
                  "' (known: byte, short, int, long, boolean, float, double, string, date, time, datetime, "
                  "duration, file)");
  ExpectReasons({{"url:http://srv/", "a URL cannot be sent as a parameter; send its text as a string"},
                 {"table:a,b",
                  "a table cannot be sent as a parameter; send its text, such as CSV or JSON, as a string"},
                 {"recordlist:people.csv",
                  "a table cannot be sent as a parameter; send its text, such as CSV or JSON, as a string"}});
  for (const char* text : {"x=string:\xFF", "\xC3=string:x"})
    EXPECT_EQ(Refusal(text), "a parameter is not valid UTF-8");
}

}  // namespace
}  // namespace qv::cli
