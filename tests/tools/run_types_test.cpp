// Dates, times, durations and URLs through the program and its own service.
#include <gtest/gtest.h>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::RunTool;
using testing::Words;

Outcome Local(const Words& more) {
  Words words{"run", "--local"};
  words.insert(words.end(), more.begin(), more.end());
  return RunTool(words);
}

Outcome Echo(const std::string& value, const std::string& format = "text") {
  return Local({"-e", "parameters.v", "-p", "v=" + value, "-o", format});
}

// Its type and the point in time that the script sees.
std::string Seen(const std::string& value) {
  return Local({"-e", "parameterTypes.v + ' ' + parameters.v.toISOString()", "-p", "v=" + value}).out;
}

TEST(RunTypes, DatesArriveInTheScript) {
  EXPECT_EQ(Seen("date:2024-03-05"), "date 2024-03-05T00:00:00.000Z\n");
  EXPECT_EQ(Seen("date:1850-07-14"), "date 1850-07-14T00:00:00.000Z\n");
  EXPECT_EQ(Seen("date:9999-12-31"), "date 9999-12-31T00:00:00.000Z\n");
  EXPECT_EQ(Seen("datetime:2024-03-05T10:15:30"), "datetime 2024-03-05T10:15:30.000Z\n");
  EXPECT_EQ(Seen("datetime:1960-06-01T18:00"), "datetime 1960-06-01T18:00:00.000Z\n");
  EXPECT_EQ(Seen("datetime:2024-03-05T10:15:30.123"), "datetime 2024-03-05T10:15:30.123Z\n");
  EXPECT_EQ(Seen("time:10:15:30Z"), "time 1970-01-01T10:15:30.000Z\n");
}

TEST(RunTypes, ValueDecidesTheTypeOnTheWire) {
  EXPECT_EQ(Seen("datetime:2024-03-05T00:00"), "date 2024-03-05T00:00:00.000Z\n");
  EXPECT_EQ(Seen("date:1899-12-30"), "time 1970-01-01T00:00:00.000Z\n");
  const Outcome outcome = Echo("datetime:2024-03-05T00:00");
  EXPECT_EQ(outcome.out, "2024-03-05\n");
  EXPECT_EQ(outcome.err, "scriptwells: note: parameter 'v' travels as date\n");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(Local({"-e", "1", "-p", "v=date:1899-12-30", "--json"}).err,
            "{\"note\":\"parameter 'v' travels as time\"}\n");
}

TEST(RunTypes, DatesComeBackInEveryFormat) {
  const Outcome text = Echo("datetime:2024-03-05T10:15:30");
  EXPECT_EQ(text.out, "2024-03-05T10:15:30\n");
  EXPECT_EQ(text.err, "");
  EXPECT_EQ(text.exit, 0);
  EXPECT_EQ(
      Echo("datetime:2024-03-05T10:15:30", "json").out,
      "{\"type\":\"datetime\",\"value\":\"2024-03-05T10:15:30\",\"tag\":7,\"serial\":45356.42743055556}\n");
  EXPECT_EQ(Echo("datetime:2024-03-05T10:15:30", "table").out,
            "NAME   TYPE     VALUE\nanswer datetime 2024-03-05T10:15:30\n");
  EXPECT_EQ(Echo("date:2024-03-05", "json").out,
            "{\"type\":\"date\",\"value\":\"2024-03-05\",\"tag\":7,\"serial\":45356.0}\n");
}

TEST(RunTypes, TimeOfAScriptIsATime) {
  EXPECT_EQ(Local({"-e", "typed.time(parameters.v)", "-p", "v=time:06:00", "-o", "json"}).out,
            "{\"type\":\"time\",\"value\":\"06:00:00\",\"tag\":7,\"serial\":0.25}\n");
  EXPECT_EQ(Local({"-e", "typed.time(parameters.v)", "-p", "v=time:10:15:30"}).out, "10:15:30\n");
}

TEST(RunTypes, TypedDatesArrive) {
  EXPECT_EQ(Local({"-e", "typed.date(new Date(Date.UTC(2024, 2, 5)))"}).out, "2024-03-05\n");
  EXPECT_EQ(Local({"-e", "typed.datetime(new Date(Date.UTC(2024, 2, 5, 10, 15, 30)))"}).out,
            "2024-03-05T10:15:30\n");
}

TEST(RunTypes, DurationsArriveInTheScript) {
  EXPECT_EQ(Local({"-e",
                   "var d = parameters.v; [parameterTypes.v, d.negative, d.years, d.months, d.days, d.hours, "
                   "d.minutes, d.seconds, d].join(' ')",
                   "-p", "v=duration:-P1Y2M3DT4H5M6.5S"})
                .out,
            "duration true 1 2 3 4 5 6.5 -P1Y2M3DT4H5M6.5S\n");
}

TEST(RunTypes, DurationsComeBackInEveryFormat) {
  EXPECT_EQ(Echo("duration:P1DT2H").out, "P1DT2H\n");
  EXPECT_EQ(
      Echo("duration:P1DT2H", "json").out,
      "{\"type\":\"duration\",\"value\":\"P1DT2H\",\"tag\":13,\"negative\":false,\"years\":0,\"months\":0,"
      "\"days\":1,\"hours\":2,\"minutes\":0,\"seconds\":0}\n");
  EXPECT_EQ(Echo("duration:P1DT2H", "table").out, "NAME   TYPE     VALUE\nanswer duration P1DT2H\n");
  EXPECT_EQ(Local({"-e", "typed.duration('PT90S')"}).out, "PT90S\n");
}

TEST(RunTypes, LostDigitsOfADurationAreTold) {
  const Outcome outcome = Echo("duration:PT12345.678S");
  EXPECT_EQ(outcome.out, "PT12345.7S\n");
  EXPECT_EQ(outcome.err, "scriptwells: note: parameter 'v' travels with 6 significant digits\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST(RunTypes, UrlArrivesWithoutItsLink) {
  const Outcome outcome = Local({"-e", "typed.url('http://srv/a', 'here')", "--json"});
  EXPECT_EQ(outcome.out, "{\"type\":\"url\",\"value\":\"\",\"tag\":13,\"caption\":\"\"}\n");
  EXPECT_EQ(outcome.err,
            "{\"note\":\"the link of a URL answer does not arrive; let the script answer with a string\"}\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST(RunTypes, ValuesThatCannotTravelAreLocalFailures) {
  const Outcome day = Echo("date:2023-02-29");
  EXPECT_EQ(day.out, "");
  EXPECT_EQ(day.err,
            "scriptwells: parameter 'v': '2023-02-29' names no day of the calendar of the years 1 to 9999\n");
  EXPECT_EQ(day.exit, 6);
  const Outcome url = Echo("url:http://srv/", "json");
  EXPECT_EQ(url.err,
            "scriptwells: parameter 'v': a URL cannot be sent as a parameter; send its text as a string\n");
  EXPECT_EQ(url.exit, 6);
}

}  // namespace
}  // namespace qv::cli
