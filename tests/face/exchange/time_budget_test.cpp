// The time that is left of a call.
#include "face/exchange/time_budget.h"

#include <gtest/gtest.h>

namespace scriptwells {
namespace {

TEST(TimeBudget, LeftIsTheTimeThatHasNotPassed) {
  const TimeBudget budget(3'600'000);
  EXPECT_LE(budget.Left(), 3'600'000);
  EXPECT_GT(budget.Left(), 1);
  EXPECT_EQ(TimeBudget(0).Left(), 0);  // no limit
  EXPECT_EQ(TimeBudget(1).Left(), 1);  // never none
}

}  // namespace
}  // namespace scriptwells
