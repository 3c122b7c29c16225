// Dates, times, durations and links between the wire and a script.
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

class ScriptValues : public ServiceTest {
 protected:
  std::string With(const std::string& type, const std::string& text, const std::string& script) {
    return Value(script, ArrayOf(1, ParameterElement("p", type, text)));
  }
  std::string FaultWith(const std::string& type, const std::string& text) {
    return Fault("1", ArrayOf(1, ParameterElement("p", type, text)));
  }
};

TEST_F(ScriptValues, DatesArriveAsDatesInUtc) {
  const std::string iso = "(p => p instanceof Date && p.toISOString())(parameters.p)";
  EXPECT_EQ(With("xsd:date", "2024-03-05", iso), "xsd:string|2024-03-05T00:00:00.000Z");
  EXPECT_EQ(With("xsd:datetime", "2024-03-05T10:15:30.0Z", iso), "xsd:string|2024-03-05T10:15:30.000Z");
  EXPECT_EQ(With("xsd:datetime", "2024-03-05T10:15:30.7Z", iso), "xsd:string|2024-03-05T10:15:30.007Z");
  EXPECT_EQ(With("xsd:datetime", "2024-03-05T10:15:30+02:00", iso), "xsd:string|2024-03-05T08:15:30.000Z");
  EXPECT_EQ(With("xsd:time", "10:15:30.500Z", iso), "xsd:string|1970-01-01T10:15:30.500Z");
  EXPECT_EQ(With("xsd:datetime", "0001-01-01T00:00:00.0Z", iso), "xsd:string|0001-01-01T00:00:00.000Z");
  EXPECT_EQ(With("xsd:datetime", "2024-03-05T10:15:30.0Z", "parameterTypes.p"), "xsd:string|datetime");
  EXPECT_EQ(With("xsd:time", "10:15:30.0Z", "parameterList[0].value.getUTCMinutes()"), "xsd:int|15");
}

TEST_F(ScriptValues, DurationArrivesAsObjectOfCounts) {
  EXPECT_EQ(With("xsd:duration", "-P1Y2M3DT4H5M6.5S", "JSON.stringify(parameters.p)"),
            "xsd:string|{\"negative\":true,\"years\":1,\"months\":2,\"days\":3,\"hours\":4,\"minutes\":5,"
            "\"seconds\":6.5}");
  EXPECT_EQ(With("xsd:duration", "PT1.23457e+07S", "parameters.p.seconds"), "xsd:int|12345700");
  EXPECT_EQ(With("xsd:duration", "P1DT2H", "`${parameters.p}`"), "xsd:string|P1DT2H");
  EXPECT_EQ(With("xsd:duration", "P0", "`${parameters.p}`"), "xsd:string|P0");
  EXPECT_EQ(With("xsd:duration", "P1D", "parameters.p.hours += 3; `${parameters.p}`"), "xsd:string|P1DT3H");
  EXPECT_EQ(With("xsd:duration", "P1D",
                 "parameters.p.days = 'x'; try { `${parameters.p}` } catch (e) { e.message }"),
            "xsd:string|The fields of the object make no duration.");
  EXPECT_EQ(With("xsd:duration", "P1D", "Object.keys({...parameters.p, days: 2}).length"), "xsd:int|7");
}

TEST_F(ScriptValues, UrlArrivesAsObjectOfTexts) {
  const std::string escaped = "&lt;URL&gt;http://a/?b=1&amp;amp;c&lt;/URL&gt;&lt;C&gt;\xC3\xA9&lt;/C&gt;";
  EXPECT_EQ(With("xsd:url", escaped, "JSON.stringify(parameters.p)"),
            "xsd:string|{\"url\":\"http://a/?b=1&amp;c\",\"caption\":\"\xC3\xA9\"}");
  EXPECT_EQ(With("xsd:url", "http://a/", "parameters.p + '|' + parameters.p.caption"),
            "xsd:string|http://a/|");
  EXPECT_EQ(With("ns2:url", "http://a/", "`${parameters.p}`"), "xsd:string|http://a/");
  EXPECT_EQ(FaultWith("ns2:date", "2024-03-05").substr(0, 5), "1009|");
}

TEST_F(ScriptValues, BadTextsAreFaultsOfTheRequest) {
  EXPECT_EQ(FaultWith("xsd:date", "2024-02-30"),
            "1008|The parameter \"p\" holds \"2024-02-30\", which is no value of the type date.|request");
  EXPECT_EQ(FaultWith("xsd:time", "10:15"),
            "1008|The parameter \"p\" holds \"10:15\", which is no value of the type time.|request");
  EXPECT_EQ(FaultWith("xsd:datetime", "2024-03-05"),
            "1008|The parameter \"p\" holds \"2024-03-05\", which is no value of the type datetime.|request");
  EXPECT_EQ(FaultWith("xsd:duration", "P5H"),
            "1008|The parameter \"p\" holds \"P5H\", which is no value of the type duration.|request");
  EXPECT_EQ(FaultWith("xsd:url", "&lt;URL&gt;"),
            "1008|The parameter \"p\" holds \"<URL>\", which is no value of the type url.|request");
  EXPECT_EQ(FaultWith("xsd:decimal", "2024-03-05T10:15:30Z").substr(0, 5), "1009|");
}

TEST_F(ScriptValues, TypedDatesTakeDatesAndTexts) {
  const std::string date = "(new Date(Date.UTC(2024, 2, 5, 10, 15, 30, 7)))";
  EXPECT_EQ(Value("typed.date" + date), "xsd:date|2024-03-05");
  EXPECT_EQ(Value("typed.time" + date), "xsd:time|10:15:30.007Z");
  EXPECT_EQ(Value("typed.datetime" + date), "xsd:dateTime|2024-03-05T10:15:30.007Z");
  EXPECT_EQ(Value("typed.date('2024-03-05')"), "xsd:date|2024-03-05");
  EXPECT_EQ(Value("typed.time('10:15:30.7Z')"), "xsd:time|10:15:30.007Z");
  EXPECT_EQ(Value("typed.datetime('2024-03-05T10:15:30+02:00')"), "xsd:dateTime|2024-03-05T08:15:30.000Z");
  EXPECT_EQ(Value("typed.datetime(new Date(-1))"), "xsd:dateTime|1969-12-31T23:59:59.999Z");
}

TEST_F(ScriptValues, BareDateIsADatetime) {
  EXPECT_EQ(Value("new Date(0)"), "xsd:dateTime|1970-01-01T00:00:00.000Z");
  EXPECT_EQ(With("xsd:date", "2024-03-05", "parameters.p"), "xsd:dateTime|2024-03-05T00:00:00.000Z");
  EXPECT_EQ(Value("new (class extends Date {})(5)"), "xsd:dateTime|1970-01-01T00:00:00.005Z");
}

TEST_F(ScriptValues, DatesBeyondTheCalendarAreFaults) {
  EXPECT_EQ(Fault("new Date(NaN)"), "1012|The script's value is an invalid Date.|script");
  EXPECT_EQ(Fault("new Date(253402300800000)"),
            "1012|The script's Date is beyond the years 1 to 9999.|script");
  EXPECT_EQ(Fault("new Date(-62135596800001)"),
            "1012|The script's Date is beyond the years 1 to 9999.|script");
  EXPECT_EQ(Value("new Date(253402300799999)"), "xsd:dateTime|9999-12-31T23:59:59.999Z");
  EXPECT_EQ(
      Fault("typed.date(new Date(8.64e15))"),
      "1010|typed.date: the value is none of this type (a Date of the years 1 to 9999, or a text such as "
      "\"2024-03-05\"). (line 1)|script, line 1");
  for (const char* script :
       {"typed.time(new Date(NaN))", "typed.datetime(0)", "typed.date('2024-3-5')",
        "typed.datetime('2024-03-05')", "typed.time({})", "typed.date(null)", "typed.date()",
        "typed.date({getTime() { return 0 }, __proto__: Date.prototype})", "typed.date('\\ud83d')",
        "typed.datetime(new Date(0), 1)"}) {
    EXPECT_EQ(Fault(script).substr(0, 11), "1010|typed.") << script;
  }
}

TEST_F(ScriptValues, TamperedDatesKeepTheirTime) {
  const std::string tamper =
      "Date.prototype.getTime = Date.prototype.valueOf = Date.prototype[Symbol.toPrimitive] = () => 1;"
      "Date.prototype.toISOString = null; Reflect.apply = null; Function.prototype.call = null;";
  EXPECT_EQ(Value(tamper + "new Date(5000)"), "xsd:dateTime|1970-01-01T00:00:05.000Z");
  EXPECT_EQ(Value(tamper + "typed.time(new Date(5000))"), "xsd:time|00:00:05.000Z");
  EXPECT_EQ(Value("globalThis.Date = class {}; typed.date('2024-03-05')"), "xsd:date|2024-03-05");
  EXPECT_EQ(With("xsd:date", "2024-03-05", "Date = 0; parameters.p.getUTCDate()"), "xsd:int|5");
  EXPECT_EQ(Value("new Date(7000)"), "xsd:dateTime|1970-01-01T00:00:07.000Z");
}

TEST_F(ScriptValues, DurationAnswersTakeObjectsAndTexts) {
  EXPECT_EQ(Value("typed.duration({days: 1, hours: 2})"), "xsd:duration|P1DT2H");
  EXPECT_EQ(Value("typed.duration({negative: true, years: 1, months: 2, days: 3, hours: 4, minutes: 5, "
                  "seconds: 6.5})"),
            "xsd:duration|-P1Y2M3DT4H5M6.5S");
  EXPECT_EQ(Value("typed.duration({seconds: 0})"), "xsd:duration|P0");
  EXPECT_EQ(Value("typed.duration('PT90S')"), "xsd:duration|PT90S");
  EXPECT_EQ(With("xsd:duration", "P1D", "parameters.p"), "xsd:duration|P1D");
  EXPECT_EQ(With("xsd:duration", "P1D", "typed.duration({...parameters.p, days: 2})"), "xsd:duration|P2D");
}

TEST_F(ScriptValues, BadDurationsAreFaults) {
  EXPECT_EQ(
      Fault("typed.duration({day: 1})"),
      "1010|typed.duration: the value is none of this type (an object such as {days: 1, hours: 2}, or a "
      "text such as \"P1DT2H\"). (line 1)|script, line 1");
  for (const char* script :
       {"typed.duration({})", "typed.duration({days: -1})", "typed.duration({days: 1.5})",
        "typed.duration({days: '1'})", "typed.duration({days: 1n})", "typed.duration({days: null})",
        "typed.duration({days: 2147483648})", "typed.duration({seconds: NaN})",
        "typed.duration({seconds: 1/0})", "typed.duration({seconds: -1})",
        "typed.duration({days: 1, negative: 1})", "typed.duration({negative: true})",
        "typed.duration({get days() { throw 1 }})", "typed.duration('P')", "typed.duration('p1d')",
        "typed.duration(5)", "typed.duration(null)", "typed.duration()", "typed.duration([1])"}) {
    EXPECT_EQ(Fault(script).substr(0, 11), "1010|typed.") << script;
  }
  EXPECT_EQ(
      Fault("parameters.p.days = -1; parameters.p", ArrayOf(1, ParameterElement("p", "xsd:duration", "P1D"))),
      "1012|The fields of the script's duration are no counts of their units.|script");
}

TEST_F(ScriptValues, UrlAnswersAreMarkupInText) {
  EXPECT_EQ(Value("typed.url({url: 'http://a/?b&c', caption: 'x <y>'})"),
            "sof:url|<URL>http://a/?b&c</URL><C>x <y></C>");
  EXPECT_EQ(Value("typed.url('http://a/', 'c')"), "sof:url|<URL>http://a/</URL><C>c</C>");
  EXPECT_EQ(Value("typed.url('http://a/')"), "sof:url|<URL>http://a/</URL><C></C>");
  EXPECT_EQ(Value("typed.url({url: ''})"), "sof:url|<URL></URL><C></C>");
  EXPECT_EQ(With("xsd:url", "http://a/", "parameters.p.caption = 'new'; parameters.p"),
            "sof:url|<URL>http://a/</URL><C>new</C>");
}

TEST_F(ScriptValues, UrlIsEscapedOnceAndItsPrefixDeclared) {
  EXPECT_NE(
      Execute("typed.url('http://a/', 'c')")
          .find("<ExecuteResponse xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\" "
                "xmlns:sof=\"http://quorvane.example/dev/ns/SOF/2.0\"><ExecuteResult xsi:type=\"sof:url\">"
                "&lt;URL&gt;http://a/&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;</ExecuteResult></ExecuteResponse>"),
      std::string::npos);
  EXPECT_EQ(Execute("typed.date('2024-03-05')").find("xmlns:sof"), std::string::npos);
}

TEST_F(ScriptValues, BadUrlsAreFaults) {
  EXPECT_EQ(Fault("typed.url('a</URL>b')"),
            "1010|typed.url: the value is none of this type (an object such as {url, caption}, or two texts, "
            "without the marks <URL> and <C>). (line 1)|script, line 1");
  for (const char* script :
       {"typed.url()", "typed.url('a', 'b', 'c')", "typed.url(5)", "typed.url('a', 5)",
        "typed.url('a', null)", "typed.url({caption: 'c'})", "typed.url({url: 'u', caption: 1})",
        "typed.url({url: 'u'}, 'c')", "typed.url('a', '<C/>')", "typed.url('\\u0000')", "typed.url(null)",
        "typed.url({get url() { throw 1 }})"}) {
    EXPECT_EQ(Fault(script).substr(0, 11), "1010|typed.") << script;
  }
  EXPECT_EQ(Fault("parameters.p.url = 1; parameters.p", ArrayOf(1, ParameterElement("p", "xsd:url", "u"))),
            "1012|The fields of the script's link are no texts that it can carry.|script");
}

}  // namespace
}  // namespace qv::devservice::testing
