// Dates, times, durations and links between the wire and a script.
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

using ScriptValues = ServiceTest;

TEST_F(ScriptValues, BadTextsAreFaultsOfTheRequest) {
  constexpr const char* kRows[][2] = {{"date", "2024-02-30"},
                                      {"time", "10:15"},
                                      {"datetime", "2024-03-05"},
                                      {"duration", "P5H"},
                                      {"url", "<URL>"}};
  for (const auto& [type, text] : kRows)
    EXPECT_EQ(Fault("1", OneParameter(std::string("xsd:") + type, Escape(text))),
              std::string("1008|The parameter \"p\" holds \"") + text + "\", which is no value of the type " +
                  type + ".|request");
  EXPECT_EQ(FaultCode("1", OneParameter("xsd:decimal", "2024-03-05T10:15:30Z")), "1009");
  EXPECT_EQ(FaultCode("1", OneParameter("ns2:date", "2024-03-05")), "1009");
}

TEST_F(ScriptValues, DatesAreDatesInUtc) {
  const std::string iso = "(p => p instanceof Date && p.toISOString())(parameters.p)";
  const std::string date = "(new Date(Date.UTC(2024, 2, 5, 10, 15, 30, 7)))";
  ExpectValues({
      {iso, "xsd:string|2024-03-05T00:00:00.000Z", "xsd:date", "2024-03-05"},
      {iso, "xsd:string|2024-03-05T10:15:30.000Z", "xsd:datetime", "2024-03-05T10:15:30.0Z"},
      {iso, "xsd:string|2024-03-05T10:15:30.007Z", "xsd:datetime", "2024-03-05T10:15:30.7Z"},
      {iso, "xsd:string|2024-03-05T08:15:30.000Z", "xsd:datetime", "2024-03-05T10:15:30+02:00"},
      {iso, "xsd:string|1970-01-01T10:15:30.500Z", "xsd:time", "10:15:30.500Z"},
      {iso, "xsd:string|0001-01-01T00:00:00.000Z", "xsd:datetime", "0001-01-01T00:00:00.0Z"},
      {"parameterTypes.p", "xsd:string|datetime", "xsd:datetime", "2024-03-05T10:15:30.0Z"},
      {"parameterList[0].value.getUTCMinutes()", "xsd:int|15", "xsd:time", "10:15:30.0Z"},
      {"parameters.p", "xsd:dateTime|2024-03-05T00:00:00.000Z", "xsd:date", "2024-03-05"},
      {"typed.date" + date, "xsd:date|2024-03-05"},
      {"typed.time" + date, "xsd:time|10:15:30.007Z"},
      {"typed.datetime" + date, "xsd:dateTime|2024-03-05T10:15:30.007Z"},
      {"typed.date('2024-03-05')", "xsd:date|2024-03-05"},
      {"typed.time('10:15:30.7Z')", "xsd:time|10:15:30.007Z"},
      {"typed.datetime('2024-03-05T10:15:30+02:00')", "xsd:dateTime|2024-03-05T08:15:30.000Z"},
      {"typed.datetime(new Date(-1))", "xsd:dateTime|1969-12-31T23:59:59.999Z"},
      {"new Date(0)", "xsd:dateTime|1970-01-01T00:00:00.000Z"},
      {"new (class extends Date {})(5)", "xsd:dateTime|1970-01-01T00:00:00.005Z"},
      {"new Date(253402300799999)", "xsd:dateTime|9999-12-31T23:59:59.999Z"},
  });
  ExpectFaults({
      {"new Date(NaN)", "1012|The script's value is an invalid Date.|script"},
      {"new Date(253402300800000)", "1012|The script's Date is beyond the years 1 to 9999.|script"},
      {"new Date(-62135596800001)", "1012|The script's Date is beyond the years 1 to 9999.|script"},
      {"typed.date(new Date(8.64e15))",
       "1010|typed.date: the value is none of this type (a Date of the years 1 to 9999, or a text such as "
       "\"2024-03-05\"). (line 1)|script, line 1"},
  });
  ExpectFaultStart("1010|typed.",
                   {"typed.time(new Date(NaN))", "typed.datetime(0)", "typed.date('2024-3-5')",
                    "typed.datetime('2024-03-05')", "typed.time({})", "typed.date(null)", "typed.date()",
                    "typed.date({getTime() { return 0 }, __proto__: Date.prototype})",
                    "typed.date('\\ud83d')", "typed.datetime(new Date(0), 1)"});
}

TEST_F(ScriptValues, TamperedDatesKeepTheirTime) {
  const std::string tamper =
      "Date.prototype.getTime = Date.prototype.valueOf = Date.prototype[Symbol.toPrimitive] = () => 1;"
      "Date.prototype.toISOString = null; Reflect.apply = null; Function.prototype.call = null;";
  ExpectValues({
      {tamper + "new Date(5000)", "xsd:dateTime|1970-01-01T00:00:05.000Z"},
      {tamper + "typed.time(new Date(5000))", "xsd:time|00:00:05.000Z"},
      {"globalThis.Date = class {}; typed.date('2024-03-05')", "xsd:date|2024-03-05"},
      {"Date = 0; parameters.p.getUTCDate()", "xsd:int|5", "xsd:date", "2024-03-05"},
      {"new Date(7000)", "xsd:dateTime|1970-01-01T00:00:07.000Z"},
  });
}

TEST_F(ScriptValues, DurationsAreObjectsOfCounts) {
  ExpectValues({
      {"JSON.stringify(parameters.p)",
       "xsd:string|{\"negative\":true,\"years\":1,\"months\":2,\"days\":3,\"hours\":4,\"minutes\":5,"
       "\"seconds\":6.5}",
       "xsd:duration", "-P1Y2M3DT4H5M6.5S"},
      {"parameters.p.seconds", "xsd:int|12345700", "xsd:duration", "PT1.23457e+07S"},
      {"`${parameters.p}`", "xsd:string|P1DT2H", "xsd:duration", "P1DT2H"},
      {"`${parameters.p}`", "xsd:string|P0", "xsd:duration", "P0"},
      {"parameters.p.hours += 3; `${parameters.p}`", "xsd:string|P1DT3H", "xsd:duration", "P1D"},
      {"parameters.p.days = 'x'; try { `${parameters.p}` } catch (e) { e.message }",
       "xsd:string|The fields of the object make no duration.", "xsd:duration", "P1D"},
      {"Object.keys({...parameters.p, days: 2}).length", "xsd:int|7", "xsd:duration", "P1D"},
      {"parameters.p", "xsd:duration|P1D", "xsd:duration", "P1D"},
      {"typed.duration({...parameters.p, days: 2})", "xsd:duration|P2D", "xsd:duration", "P1D"},
      {"typed.duration({days: 1, hours: 2})", "xsd:duration|P1DT2H"},
      {"typed.duration({negative: true, years: 1, months: 2, days: 3, hours: 4, minutes: 5, seconds: 6.5})",
       "xsd:duration|-P1Y2M3DT4H5M6.5S"},
      {"typed.duration({seconds: 0})", "xsd:duration|P0"},
      {"typed.duration('PT90S')", "xsd:duration|PT90S"},
  });
  ExpectFaults({
      {"typed.duration({day: 1})",
       "1010|typed.duration: the value is none of this type (an object such as {days: 1, hours: 2}, or a "
       "text such "
       "as \"P1DT2H\"). (line 1)|script, line 1"},
      {"parameters.p.days = -1; parameters.p",
       "1012|The fields of the script's duration are no counts of their units.|script", "xsd:duration",
       "P1D"},
  });
  for (const char* value :
       {"{}", "{days: -1}", "{days: 1.5}", "{days: '1'}", "{days: 1n}", "{days: null}", "{days: 2147483648}",
        "{seconds: NaN}", "{seconds: 1/0}", "{seconds: -1}", "{days: 1, negative: 1}", "{negative: true}",
        "{get days() { throw 1 }}", "'P'", "'p1d'", "5", "null", "", "[1]"})
    ExpectFaultStart("1010|typed.", {"typed.duration(" + std::string(value) + ")"});
}

TEST_F(ScriptValues, UrlsAreObjectsOfTexts) {
  ExpectValues({
      {"JSON.stringify(parameters.p)",
       "xsd:string|{\"url\":\"http://a/?b=1&amp;c\",\"caption\":\"\xC3\xA9\"}", "xsd:url",
       "&lt;URL&gt;http://a/?b=1&amp;amp;c&lt;/URL&gt;&lt;C&gt;\xC3\xA9&lt;/C&gt;"},
      {"parameters.p + '|' + parameters.p.caption", "xsd:string|http://a/|", "xsd:url", "http://a/"},
      {"`${parameters.p}`", "xsd:string|http://a/", "ns2:url", "http://a/"},
      {"parameters.p.caption = 'new'; parameters.p", "sof:url|<URL>http://a/</URL><C>new</C>", "xsd:url",
       "http://a/"},
      {"typed.url({url: 'http://a/?b&c', caption: 'x <y>'})", "sof:url|<URL>http://a/?b&c</URL><C>x <y></C>"},
      {"typed.url('http://a/', 'c')", "sof:url|<URL>http://a/</URL><C>c</C>"},
      {"typed.url('http://a/')", "sof:url|<URL>http://a/</URL><C></C>"},
      {"typed.url({url: ''})", "sof:url|<URL></URL><C></C>"},
  });
  // Escaped once, and with a declaration of the prefix.
  EXPECT_TRUE(
      Contains(Execute("typed.url('http://a/', 'c')"),
               "<ExecuteResponse xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\" "
               "xmlns:sof=\"http://quorvane.example/dev/ns/SOF/2.0\"><ExecuteResult xsi:type=\"sof:url\">"
               "&lt;URL&gt;http://a/&lt;/URL&gt;&lt;C&gt;c&lt;/C&gt;</ExecuteResult></ExecuteResponse>"));
  EXPECT_FALSE(Contains(Execute("typed.date('2024-03-05')"), "xmlns:sof"));
  ExpectFaults({
      {"typed.url('a</URL>b')",
       "1010|typed.url: the value is none of this type (an object such as {url, caption}, or two texts, "
       "without the "
       "marks <URL> and <C>). (line 1)|script, line 1"},
      {"parameters.p.url = 1; parameters.p",
       "1012|The fields of the script's link are no texts that it can carry.|script", "xsd:url", "u"},
  });
  ExpectFaultStart("1010|typed.",
                   {"typed.url()", "typed.url('a', 'b', 'c')", "typed.url(5)", "typed.url('a', 5)",
                    "typed.url('a', null)", "typed.url({caption: 'c'})", "typed.url({url: 'u', caption: 1})",
                    "typed.url({url: 'u'}, 'c')", "typed.url('a', '<C/>')", "typed.url('\\u0000')",
                    "typed.url(null)", "typed.url({get url() { throw 1 }})"});
}

}  // namespace
}  // namespace qv::devservice::testing
