#include "tools/parameter_text.h"

#include <gtest/gtest.h>

#include "tools/failure.h"

namespace qv::cli {
namespace {

// What the user is told; "accepted" when nothing is wrong.
std::string Refusal(const std::string& text) {
  try {
    ParseParameter(text);
    return "accepted";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), ExitStatus::kLocal);
    return failure.Message();
  }
}

// What the wire makes of it, joined with a bar.
std::string Notes(const std::string& text) {
  std::string all;
  for (const std::string& note : ParseParameter(text).notes) all += (all.empty() ? "" : "|") + note;
  return all;
}

std::u16string StringOf(const std::string& text) {
  const ScriptParameter parameter = ParseParameter(text);
  EXPECT_EQ(parameter.value.Tag(), VT_BSTR);
  EXPECT_FALSE(parameter.value.Text().IsNull());
  return std::u16string(parameter.value.Text().view());
}

TEST(ParameterText, ByteTakesItsWholeRange) {
  EXPECT_EQ(ParseParameter("a=byte:-128").value.Tag(), VT_I1);
  EXPECT_EQ(ParseParameter("a=byte:-128").value.Data().cVal, -128);
  EXPECT_EQ(ParseParameter("a=byte:127").value.Data().cVal, 127);
  EXPECT_EQ(Refusal("a=byte:128"), "parameter 'a': 128 is out of range for byte (-128 to 127)");
  EXPECT_EQ(Refusal("a=byte:-129"), "parameter 'a': -129 is out of range for byte (-128 to 127)");
}

TEST(ParameterText, ShortTakesItsWholeRange) {
  EXPECT_EQ(ParseParameter("a=short:-32768").value.Tag(), VT_I2);
  EXPECT_EQ(ParseParameter("a=short:-32768").value.Data().iVal, -32768);
  EXPECT_EQ(ParseParameter("a=short:32767").value.Data().iVal, 32767);
  EXPECT_EQ(Refusal("a=short:32768"), "parameter 'a': 32768 is out of range for short (-32768 to 32767)");
}

TEST(ParameterText, IntTakesItsWholeRange) {
  EXPECT_EQ(ParseParameter("a=int:-2147483648").value.Tag(), VT_INT);
  EXPECT_EQ(ParseParameter("a=int:-2147483648").value.Data().intVal, -2147483647 - 1);
  EXPECT_EQ(ParseParameter("a=int:2147483647").value.Data().intVal, 2147483647);
  EXPECT_EQ(Refusal("a=int:99999999999"),
            "parameter 'a': 99999999999 is out of range for int (-2147483648 to 2147483647)");
}

TEST(ParameterText, LongTakesItsWholeRange) {
  EXPECT_EQ(ParseParameter("a=long:9223372036854775807").value.Tag(), VT_I8);
  EXPECT_EQ(ParseParameter("a=long:9223372036854775807").value.Data().llVal, 9223372036854775807LL);
  EXPECT_EQ(ParseParameter("a=long:-9223372036854775808").value.Data().llVal, -9223372036854775807LL - 1);
  EXPECT_EQ(Refusal("a=long:9223372036854775808"),
            "parameter 'a': 9223372036854775808 is out of range for long "
            "(-9223372036854775808 to 9223372036854775807)");
}

TEST(ParameterText, WholeNumbersAreNothingButDigitsAndMinus) {
  EXPECT_EQ(Refusal("a=int:"), "parameter 'a': '' is not a whole number");
  EXPECT_EQ(Refusal("a=int:12abc"), "parameter 'a': '12abc' is not a whole number");
  EXPECT_EQ(Refusal("a=int: 12"), "parameter 'a': ' 12' is not a whole number");
  EXPECT_EQ(Refusal("a=int:12 "), "parameter 'a': '12 ' is not a whole number");
  EXPECT_EQ(Refusal("a=int:+12"), "parameter 'a': '+12' is not a whole number");
  EXPECT_EQ(Refusal("a=int:0x10"), "parameter 'a': '0x10' is not a whole number");
  EXPECT_EQ(Refusal("a=int:1.0"), "parameter 'a': '1.0' is not a whole number");
  EXPECT_EQ(Refusal("a=int:99999999999999999999x"),
            "parameter 'a': '99999999999999999999x' is not a whole number");
}

TEST(ParameterText, BooleanTakesWordsAndDigits) {
  EXPECT_EQ(ParseParameter("a=boolean:true").value.Tag(), VT_BOOL);
  EXPECT_EQ(ParseParameter("a=boolean:true").value.Data().boolVal, VARIANT_TRUE);
  EXPECT_EQ(ParseParameter("a=boolean:1").value.Data().boolVal, VARIANT_TRUE);
  EXPECT_EQ(ParseParameter("a=boolean:false").value.Data().boolVal, VARIANT_FALSE);
  EXPECT_EQ(ParseParameter("a=boolean:0").value.Data().boolVal, VARIANT_FALSE);
  EXPECT_EQ(Refusal("a=boolean:TRUE"), "parameter 'a': 'TRUE' is not a boolean (true or false)");
  EXPECT_EQ(Refusal("a=boolean:"), "parameter 'a': '' is not a boolean (true or false)");
}

TEST(ParameterText, FloatAndDoubleTakeNumbers) {
  EXPECT_EQ(ParseParameter("a=float:0.5").value.Tag(), VT_R4);
  EXPECT_EQ(ParseParameter("a=float:0.5").value.Data().fltVal, 0.5F);
  EXPECT_EQ(ParseParameter("a=double:-1.25e3").value.Tag(), VT_R8);
  EXPECT_EQ(ParseParameter("a=double:-1.25e3").value.Data().dblVal, -1250.0);
  EXPECT_EQ(Refusal("a=double:one"), "parameter 'a': 'one' is not a number");
  EXPECT_EQ(Refusal("a=double:1,5"), "parameter 'a': '1,5' is not a number");
  EXPECT_EQ(Refusal("a=double:"), "parameter 'a': '' is not a number");
  EXPECT_EQ(Refusal("a=float:1e39"), "parameter 'a': 1e39 is out of range for float");
  EXPECT_EQ(Refusal("a=double:1e400"), "parameter 'a': 1e400 is out of range for double");
  EXPECT_EQ(Refusal("a=double:inf"), "parameter 'a': 'inf' is not a finite number");
  EXPECT_EQ(Refusal("a=float:nan"), "parameter 'a': 'nan' is not a finite number");
}

TEST(ParameterText, DigitsBeyondTheSixthAreNoticed) {
  for (const char* text : {"a=double:1234567", "a=double:3.14159265", "a=float:1.2345678",
                           "a=duration:PT12345.678S", "a=duration:P1DT0.1234567S"})
    EXPECT_EQ(Notes(text), "travels with 6 significant digits") << text;
  for (const char* text : {"a=double:0.1", "a=double:123456", "a=float:0.1", "a=int:1234567",
                           "a=duration:PT12345.6S", "a=duration:PT999999S", "a=duration:P32767D"})
    EXPECT_EQ(Notes(text), "") << text;
}

TEST(ParameterText, DatesAndTimesAreSerialDates) {
  EXPECT_EQ(ParseParameter("a=date:2024-03-05").value.Tag(), VT_DATE);
  EXPECT_EQ(ParseParameter("a=date:2024-03-05").value.Data().date, 45356.0);
  EXPECT_EQ(ParseParameter("a=time:12:00").value.Tag(), VT_DATE);
  EXPECT_EQ(ParseParameter("a=time:12:00").value.Data().date, 0.5);
  EXPECT_EQ(ParseParameter("a=datetime:2024-03-05T12:00:00").value.Tag(), VT_DATE);
  EXPECT_EQ(ParseParameter("a=datetime:2024-03-05T12:00:00").value.Data().date, 45356.5);
}

TEST(ParameterText, DurationIsAnObject) {
  const Variant value = ParseParameter("a=duration:P1DT2H").value;
  EXPECT_EQ(value.Tag(), VT_UNKNOWN);
  ASSERT_NE(value.Object(), nullptr);
}

TEST(ParameterText, ReasonsNameTheParameter) {
  EXPECT_EQ(Refusal("a=date:2024-3-5"), "parameter 'a': '2024-3-5' is not a date (YYYY-MM-DD)");
  EXPECT_EQ(Refusal("a=time:24:00"), "parameter 'a': '24:00' names no time of day (00:00 to 23:59:59.999)");
  EXPECT_EQ(Refusal("a=datetime:2024-03-05"),
            "parameter 'a': '2024-03-05' is not a datetime (YYYY-MM-DDThh:mm or YYYY-MM-DDThh:mm:ss)");
  EXPECT_EQ(Refusal("a=duration:P1.5D"),
            "parameter 'a': 'P1.5D' has a fraction of its days; only seconds may have one");
}

// The value decides on the wire, and not what the user called it.
TEST(ParameterText, TypeThatChangesOnTheWayIsNoticed) {
  EXPECT_EQ(Notes("a=datetime:2024-03-05T00:00"), "travels as date");
  EXPECT_EQ(Notes("a=datetime:2024-03-05T00:00:00.000Z"), "travels as date");
  EXPECT_EQ(Notes("a=datetime:1899-12-30T10:15"), "travels as time");
  EXPECT_EQ(Notes("a=datetime:1899-12-30T00:00"), "travels as time");
  EXPECT_EQ(Notes("a=date:1899-12-30"), "travels as time");
  for (const char* text : {"a=date:2024-03-05", "a=date:1899-12-29", "a=time:00:00", "a=time:10:15",
                           "a=datetime:2024-03-05T10:15"})
    EXPECT_EQ(Notes(text), "") << text;
}

TEST(ParameterText, MillisecondsThatTravelWithoutZerosAreNoticed) {
  EXPECT_EQ(Notes("a=time:10:15:30.007"),
            "travels with '.7' for its 7 milliseconds, which a server may read as a decimal fraction");
  EXPECT_EQ(Notes("a=datetime:2024-03-05T10:15:30.05"),
            "travels with '.50' for its 50 milliseconds, which a server may read as a decimal fraction");
  EXPECT_EQ(Notes("a=time:10:15:30.100"), "");
  EXPECT_EQ(Notes("a=time:10:15:30.999"), "");
}

TEST(ParameterText, TypesOfAnswersOnlySayWhatToSend) {
  EXPECT_EQ(Refusal("u=url:http://srv/"),
            "parameter 'u': a URL cannot be sent as a parameter; send its text as a string");
  EXPECT_EQ(Refusal("t=table:a,b"),
            "parameter 't': a table cannot be sent as a parameter; send its text, such as CSV or JSON, as a "
            "string");
  EXPECT_EQ(Refusal("t=recordlist:people.csv"),
            "parameter 't': a table cannot be sent as a parameter; send its text, such as CSV or JSON, as a "
            "string");
}

TEST(ParameterText, StringIsEverythingBehindTheColon) {
  EXPECT_EQ(StringOf("x=string:"), u"");
  EXPECT_EQ(StringOf("x=string:a=b:c"), u"a=b:c");
  EXPECT_EQ(StringOf("x=string: two words "), u" two words ");
  EXPECT_EQ(StringOf("x=string:\xC3\xA9\xF0\x9F\x98\x80"), u"\u00E9\U0001F600");
}

TEST(ParameterText, NameIsEverythingBeforeTheFirstEqualsSign) {
  EXPECT_EQ(ParseParameter("a:b=string:c").name, "a:b");
  EXPECT_EQ(ParseParameter("two words=int:1").name, "two words");
}

TEST(ParameterText, MissingPiecesAreTold) {
  const std::string form = "' is not of the form name=type:value, such as ";
  EXPECT_EQ(Refusal("x"), "parameter 'x" + form + "a=int:5");
  EXPECT_EQ(Refusal("x=int"), "parameter 'x=int" + form + "a=int:5");
  EXPECT_EQ(Refusal("x:int=1"), "parameter 'x:int=1" + form + "a=int:5");
  EXPECT_EQ(Refusal("=int:1"), "parameter '=int:1" + form + "a=int:5");
  EXPECT_EQ(Refusal(""), "parameter '" + form + "a=int:5");
  const std::string longText = "x=" + std::string(100, 'y');
  EXPECT_EQ(Refusal(longText), "parameter '" + longText + form + "a=int:5");
}

TEST(ParameterText, ExampleHasTheTypeThatTheValueLooksLike) {
  const std::pair<const char*, const char*> rows[] = {
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
    EXPECT_EQ(Refusal(given), std::string("parameter '") + given +
                                  "' is not of the form name=type:value, such as " + example);
}

TEST(ParameterText, UnknownTypeListsTheKnownOnes) {
  for (const std::string type : {"Int", "Date", "dateTime", "xsd", "", "decimal"})
    EXPECT_EQ(Refusal("d=" + type + ":1"),
              "parameter 'd': unknown type '" + type +
                  "' (known: byte, short, int, long, boolean, float, double, string, date, time, datetime, "
                  "duration, file)");
}

TEST(ParameterText, BytesThatAreNoUtf8AreRefused) {
  EXPECT_EQ(Refusal("x=string:\xFF"), "a parameter is not valid UTF-8");
  EXPECT_EQ(Refusal("\xC3=string:x"), "a parameter is not valid UTF-8");
}

}  // namespace
}  // namespace qv::cli
