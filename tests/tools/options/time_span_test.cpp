// Times on the command line.
#include "tools/options/time_span.h"

#include "tests/tools/options_fixture.h"

namespace qv::cli {
namespace {

using testing::Each;

TEST(TimeSpan, IsANumberOfSecondsOrHasAUnit) {
  const std::pair<const char*, double> rows[] = {{"90", 90},   {"0", 0},        {"1.5s", 1.5}, {"2m", 120},
                                                 {"1.5m", 90}, {"250ms", 0.25}, {"1h", 3600},  {".5", 0.5},
                                                 {"1e2", 100}, {"-1s", -1}};
  for (const auto& [text, seconds] : rows) EXPECT_EQ(SecondsOf(text), seconds) << text;
  for (const std::string& text : Each("|s|m|soon|5 s| 5|5s |5S|2min|1d|1m30s|1,5|1e999"))
    EXPECT_FALSE(SecondsOf(text).has_value()) << text;
  const std::pair<double, std::int64_t> roundedUp[] = {{0, 0}, {0.0001, 1}, {1.5, 1500}, {86400, 86'400'000}};
  for (const auto& [seconds, milliseconds] : roundedUp) EXPECT_EQ(Milliseconds(seconds), milliseconds);
}

class TimeOptions : public testing::OptionsTest {};

TEST_F(TimeOptions, TakeUnits) {
  const RunOptions run = Run("run -e 1 --local --timeout 2m --connect-timeout 250ms --max-time 1.5s");
  EXPECT_EQ(run.timeoutSeconds, 120);
  EXPECT_EQ(run.connectTimeoutSeconds, 0.25);
  EXPECT_EQ(run.maxTimeSeconds, 1.5);
  EXPECT_EQ(Run("run-document a.xml --local --max-time 1h").maxTimeSeconds, 3600);
  EXPECT_EQ(Download("download u --max-time 90").maxTimeSeconds, 90);
  EXPECT_EQ(Serve("serve --script-timeout 2m").scriptTimeoutSeconds, 120);
}

TEST_F(TimeOptions, VariablesTakeUnitsToo) {
  Set("TIMEOUT", "2m");
  Set("MAX_TIME", "1.5s");
  const RunOptions run = Run("run -e 1 --local");
  EXPECT_EQ(run.timeoutSeconds, 120);
  EXPECT_EQ(run.maxTimeSeconds, 1.5);
}

TEST_F(TimeOptions, OtherTextsAreRefused) {
  for (const std::string name : {"--timeout", "--connect-timeout", "--max-time"})
    EXPECT_EQ(Refusal("run -e 1 --local " + name + " soon"),
              name + ": 'soon' is not a time, such as 90, 1.5s or 2m|scriptwells run --help");
  EXPECT_EQ(Refusal("serve --script-timeout 2min"),
            "--script-timeout: '2min' is not a time, such as 90, 1.5s or 2m|scriptwells serve --help");
  for (const char* time : {"-1", "25h"})
    EXPECT_EQ(Refusal("run -e 1 --local --max-time", {time}),
              "--max-time must be between 0 and 86400 seconds|scriptwells run --help");
}

}  // namespace
}  // namespace qv::cli
