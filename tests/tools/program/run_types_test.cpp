// Dates, times, durations and URLs, there and back with the service inside the program.
#include <gtest/gtest.h>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;

Outcome Eval(const std::string& code, const std::string& options = "") {
  return RunTool("run --local " + options + " -e", {code});
}

Outcome Echo(const std::string& value, const std::string& format = "text") {
  return Eval("parameters.v", "-o " + format + " -p v=" + value);
}

TEST(RunTypes, DatesAndDurationsArriveInTheScript) {
  const std::pair<const char*, const char*> rows[] = {
      {"date:2024-03-05", "date 2024-03-05T00:00:00.000Z"},
      {"date:1850-07-14", "date 1850-07-14T00:00:00.000Z"},
      {"date:9999-12-31", "date 9999-12-31T00:00:00.000Z"},
      {"datetime:2024-03-05T10:15:30", "datetime 2024-03-05T10:15:30.000Z"},
      {"datetime:1960-06-01T18:00", "datetime 1960-06-01T18:00:00.000Z"},
      {"datetime:2024-03-05T10:15:30.123", "datetime 2024-03-05T10:15:30.123Z"},
      {"time:10:15:30Z", "time 1970-01-01T10:15:30.000Z"},
      // The value decides on the type that is sent.
      {"datetime:2024-03-05T00:00", "date 2024-03-05T00:00:00.000Z"},
      {"date:1899-12-30", "time 1970-01-01T00:00:00.000Z"}};
  for (const auto& [value, seen] : rows)
    EXPECT_EQ(Eval("parameterTypes.v + ' ' + parameters.v.toISOString()", std::string("-p v=") + value).out,
              std::string(seen) + "\n");
  EXPECT_EQ(Eval("var d = parameters.v; [parameterTypes.v, d.negative, d.years, d.months, d.days, d.hours, "
                 "d.minutes, d.seconds, d].join(' ')",
                 "-p v=duration:-P1Y2M3DT4H5M6.5S")
                .out,
            "duration true 1 2 3 4 5 6.5 -P1Y2M3DT4H5M6.5S\n");
}

TEST(RunTypes, ChangesOnTheWayAreNoted) {
  Echo("datetime:2024-03-05T00:00").Succeeds("2024-03-05\n", "note: parameter 'v' travels as date");
  EXPECT_EQ(Eval("1", "-p v=date:1899-12-30 --json").err, "{\"note\":\"parameter 'v' travels as time\"}\n");
  Echo("duration:PT12345.678S")
      .Succeeds("PT12345.7S\n", "note: parameter 'v' travels with 6 significant digits");
  Eval("typed.url('http://srv/a', 'here')", "--json")
      .Succeeds(
          R"({"type":"url","value":"","tag":13,"caption":""})"
          "\n",
          R"({"note":"the link of a URL answer does not arrive; let the script answer with a string"})");
}

TEST(RunTypes, ValuesComeBackInEveryFormat) {
  Echo("datetime:2024-03-05T10:15:30").Succeeds("2024-03-05T10:15:30\n");
  struct Row {
    const char* value;
    const char* format;
    const char* printed;
  };
  const Row rows[] = {
      {"datetime:2024-03-05T10:15:30", "json",
       R"({"type":"datetime","value":"2024-03-05T10:15:30","tag":7,"serial":45356.42743055556})"},
      {"datetime:2024-03-05T10:15:30", "table", "NAME   TYPE     VALUE\nanswer datetime 2024-03-05T10:15:30"},
      {"date:2024-03-05", "json", R"({"type":"date","value":"2024-03-05","tag":7,"serial":45356.0})"},
      {"duration:P1DT2H", "text", "P1DT2H"},
      {"duration:P1DT2H", "json",
       R"({"type":"duration","value":"P1DT2H","tag":13,"negative":false,"years":0,"months":0,"days":1,)"
       R"("hours":2,"minutes":0,"seconds":0})"},
      {"duration:P1DT2H", "table", "NAME   TYPE     VALUE\nanswer duration P1DT2H"}};
  for (const Row& row : rows) EXPECT_EQ(Echo(row.value, row.format).out, std::string(row.printed) + "\n");
  EXPECT_EQ(Eval("typed.time(parameters.v)", "-p v=time:06:00 -o json").out,
            R"({"type":"time","value":"06:00:00","tag":7,"serial":0.25})"
            "\n");
  const std::pair<const char*, const char*> typed[] = {
      {"typed.time(parameters.v)", "10:15:30"},
      {"typed.date(new Date(Date.UTC(2024, 2, 5)))", "2024-03-05"},
      {"typed.datetime(new Date(Date.UTC(2024, 2, 5, 10, 15, 30)))", "2024-03-05T10:15:30"},
      {"typed.duration('PT90S')", "PT90S"}};
  for (const auto& [code, text] : typed)
    EXPECT_EQ(Eval(code, "-p v=time:10:15:30").out, std::string(text) + "\n");
}

TEST(RunTypes, ValuesThatCannotBeSentAreLocalFailures) {
  Echo("date:2023-02-29")
      .Fails(6, "parameter 'v': '2023-02-29' names no day of the calendar of the years 1 to 9999");
  Echo("url:http://srv/", "json")
      .Fails(6, R"(parameter 'v': a URL cannot be sent as a parameter; send its text as a string)");
}

}  // namespace
}  // namespace qv::cli
