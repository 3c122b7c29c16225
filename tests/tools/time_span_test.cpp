#include "tools/time_span.h"

#include <gtest/gtest.h>

#include "tests/tools/options_fixture.h"
#include "tools/time_budget.h"

namespace qv::cli {
namespace {

TEST(TimeSpan, NumbersAreSecondsAndUnitsAreShort) {
  EXPECT_EQ(SecondsOf("90"), 90);
  EXPECT_EQ(SecondsOf("0"), 0);
  EXPECT_EQ(SecondsOf("1.5s"), 1.5);
  EXPECT_EQ(SecondsOf("2m"), 120);
  EXPECT_EQ(SecondsOf("1.5m"), 90);
  EXPECT_EQ(SecondsOf("250ms"), 0.25);
  EXPECT_EQ(SecondsOf("1h"), 3600);
  EXPECT_EQ(SecondsOf(".5"), 0.5);
  EXPECT_EQ(SecondsOf("1e2"), 100);
  EXPECT_EQ(SecondsOf("-1s"), -1);
}

TEST(TimeSpan, EverythingElseIsNoTime) {
  for (const char* text :
       {"", "s", "m", "soon", "5 s", " 5", "5s ", "5S", "2min", "1d", "1m30s", "1,5", "1e999"})
    EXPECT_FALSE(SecondsOf(text).has_value()) << text;
}

TEST(TimeSpan, MillisecondsAreRoundedUp) {
  EXPECT_EQ(Milliseconds(0), 0);
  EXPECT_EQ(Milliseconds(0.0001), 1);
  EXPECT_EQ(Milliseconds(1.5), 1500);
  EXPECT_EQ(Milliseconds(86400), 86'400'000);
}

class TimeOptions : public testing::OptionsTest {};

TEST_F(TimeOptions, AllTakeUnits) {
  const RunOptions run = Run(
      {"run", "-e", "1", "--local", "--timeout", "2m", "--connect-timeout", "250ms", "--max-time", "1.5s"});
  EXPECT_EQ(run.timeoutSeconds, 120);
  EXPECT_EQ(run.connectTimeoutSeconds, 0.25);
  EXPECT_EQ(run.maxTimeSeconds, 1.5);
  EXPECT_EQ(Run({"run-document", "a.xml", "--local", "--max-time", "1h"}).maxTimeSeconds, 3600);
  EXPECT_EQ(Download({"download", "u", "--max-time", "90"}).maxTimeSeconds, 90);
  EXPECT_EQ(Serve({"serve", "--script-timeout", "2m"}).scriptTimeoutSeconds, 120);
}

TEST_F(TimeOptions, NoTotalTimeUnlessAsked) {
  EXPECT_EQ(Run({"run", "-e", "1", "--local"}).maxTimeSeconds, 0);
}

TEST_F(TimeOptions, VariablesTakeUnitsToo) {
  ::setenv("SCRIPTWELLS_TIMEOUT", "2m", 1);
  ::setenv("SCRIPTWELLS_MAX_TIME", "1.5s", 1);
  const RunOptions run = Run({"run", "-e", "1", "--local"});
  EXPECT_EQ(run.timeoutSeconds, 120);
  EXPECT_EQ(run.maxTimeSeconds, 1.5);
}

TEST_F(TimeOptions, TextsThatAreNoTimeAreRefused) {
  for (const char* name : {"--timeout", "--connect-timeout", "--max-time"})
    EXPECT_EQ(Refusal({"run", "-e", "1", "--local", name, "soon"}),
              std::string(name) + ": 'soon' is no time, such as 90, 1.5s or 2m|scriptwells run --help");
  EXPECT_EQ(Refusal({"serve", "--script-timeout", "2min"}),
            "--script-timeout: '2min' is no time, such as 90, 1.5s or 2m|scriptwells serve --help");
  EXPECT_EQ(Refusal({"run", "-e", "1", "--local", "--max-time", "-1"}),
            "--max-time has to lie between 0 and 86400 seconds|scriptwells run --help");
  EXPECT_EQ(Refusal({"run", "-e", "1", "--local", "--max-time", "25h"}),
            "--max-time has to lie between 0 and 86400 seconds|scriptwells run --help");
}

TEST(TimeBudget, NoneIsNoLimit) {
  const TimeBudget budget(0);
  EXPECT_EQ(budget.Left(), 0);
  EXPECT_FALSE(budget.IsBelow(2000));
}

TEST(TimeBudget, NeverBecomesNoLimit) {
  const TimeBudget budget(1);
  EXPECT_EQ(budget.Left(), 1);
  EXPECT_TRUE(budget.IsBelow(2000));
}

TEST(TimeBudget, LeftIsWhatHasNotPassed) {
  const TimeBudget budget(3'600'000);
  EXPECT_LE(budget.Left(), 3'600'000);
  EXPECT_GT(budget.Left(), 1);
  EXPECT_FALSE(budget.IsBelow(1));
}

}  // namespace
}  // namespace qv::cli
