// Parameters on the command line: which are rejected, and which get a note.
#include "tools/input/parameter_text.h"

#include "fixtures/current_directory.h"
#include "fixtures/temporary_directory.h"
#include "tests/tools/refusal.h"
#include "tests/tools/words.h"

namespace qv::cli {
namespace {

using scriptwells::Value;
using testing::Each;

Value ValueOf(const std::string& text) {
  const ScriptParameter parameter = ParseParameter(text);
  const Value* value = parameter.argument.GetValue();
  EXPECT_NE(value, nullptr) << text;
  return value == nullptr ? Value() : *value;
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

TEST(ParameterText, EveryTypeHasItsValue) {
  EXPECT_EQ(ValueOf("a=byte:-128"), scriptwells::Byte(-128));
  EXPECT_EQ(ValueOf("a=short:32767"), scriptwells::Short(32767));
  EXPECT_EQ(ValueOf("a=int:-2147483648"), scriptwells::Int(-2147483648LL));
  EXPECT_EQ(ValueOf("a=long:9223372036854775807"), scriptwells::Long(9223372036854775807LL));
  EXPECT_EQ(ValueOf("a=boolean:1"), Value(true));
  EXPECT_EQ(ValueOf("a=float:0.5"), scriptwells::Float(0.5));
  EXPECT_EQ(ValueOf("a=double:-1.25e3"), Value(-1250.0));
  EXPECT_EQ(ValueOf("a=date:2024-03-05"), Value(scriptwells::Date{2024, 3, 5}));
  EXPECT_EQ(ValueOf("a=time:12:00Z"), Value(scriptwells::Time{12, 0, 0, 0}));
  EXPECT_EQ(ValueOf("a=datetime:2024-03-05T12:00"),
            Value(scriptwells::DateTime{{2024, 3, 5}, {12, 0, 0, 0}}));
  EXPECT_EQ(ValueOf("a=duration:P1DT2H"), Value(scriptwells::Duration{false, 0, 0, 1, 2, 0, 0}));
}

TEST(ParameterText, StringIsEverythingAfterTheColon) {
  for (const char* text : {"", "a=b:c", " two words ", "\xC3\xA9\xF0\x9F\x98\x80"})
    EXPECT_EQ(ValueOf(std::string("x=string:") + text), Value(text));
  EXPECT_EQ(ParseParameter("a:b=string:c").argument.Name(), "a:b");
  EXPECT_EQ(ParseParameter("two words=int:1").argument.Name(), "two words");
}

TEST(ParameterText, ReasonOfTheLibraryFollowsTheName) {
  ExpectReasons({{"byte:128", "128 is out of range for byte (-128 to 127)"},
                 {"int: 12", "' 12' is not a whole number"},
                 {"double:1e400", "1e400 is out of range for double"},
                 {"boolean:TRUE", "'TRUE' is not a boolean (true or false)"},
                 {"float:nan", "'nan' is not a finite number"},
                 {"time:24:00", "'24:00' names no time of day (00:00 to 23:59:59.999)"},
                 {"duration:P1.5D", "'P1.5D' has a fraction of its days; only seconds may have one"},
                 {"duration:PT1000000S", "'PT1000000S' would travel as 'PT1e+06S'; write it in other units"},
                 {"datetime:1899-12-29T05:00",
                  "'1899-12-29T05:00' would arrive as another one: no time of day travels on 1899-12-29, nor "
                  "in the last half second of a day; send a string"}});
}

TEST(ParameterText, ChangesOnTheWayAreNoted) {
  const std::string refused =
      "holds U+1F600, which does not travel as well-formed XML, so most servers refuse it";
  ExpectNotes("a=double:3.14159265|a=duration:PT12345.678S", "travels with 6 significant digits");
  ExpectNotes("a=datetime:2024-03-05T00:00", "travels as date");
  ExpectNotes("a=date:1899-12-30", "travels as time");
  ExpectNotes("a=time:10:15:30.007",
              "travels with '.7' for its 7 milliseconds, which a server may read as a decimal fraction");
  ExpectNotes("a=string:\xF0\x9F\x98\x80", refused);
  ExpectNotes("\xF0\x9F\x98\x80=int:1", "has a name that " + refused);
  ExpectNotes("\xF0\x9F\x98\x80=string:\xF0\x9F\x98\x80", "has a name that " + refused + "|" + refused);
  ExpectNotes("\xF0\x9F\x98\x80=double:0.1234567",
              "travels with 6 significant digits|has a name that " + refused);
  ExpectNotes("a=int:1234567|a=string:|a=date:2024-03-05", "");
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

class FileParameter : public ::testing::Test {
 protected:
  TemporaryDirectory folder_;
};

TEST_F(FileParameter, HoldsTheAbsolutePath) {
  const std::string path = folder_.Write("a b:c=d.txt", "text");
  const CurrentDirectory inside(folder_.Path());
  const ScriptParameter parameter = ParseParameter("doc=file:a b:c=d.txt");
  EXPECT_EQ(parameter.argument.Name(), "doc");
  EXPECT_TRUE(parameter.notes.empty());
  ASSERT_NE(parameter.argument.GetFile(), nullptr);
  EXPECT_EQ(parameter.argument.GetFile()->path, path);
  EXPECT_EQ(ParseParameter("a=string:/etc/passwd").argument.GetFile(), nullptr);
}

TEST_F(FileParameter, IsCheckedAtOnce) {
  const std::string missing = folder_.Path("missing");
  const std::string odd = folder_.Write("a\\b", "text");
  const std::pair<std::string, std::string> rows[] = {
      {missing, "cannot read the file " + missing + ": No such file or directory"},
      {"", "the file has no name"},
      {odd, "the path " + odd + " holds '\\', which the library takes for '/'; rename or copy the file"},
  };
  for (const auto& [file, reason] : rows)
    EXPECT_EQ(Refusal("doc=file:" + file), "parameter 'doc': " + reason);
}

}  // namespace
}  // namespace qv::cli
