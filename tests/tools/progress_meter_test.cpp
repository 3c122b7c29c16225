#include "tools/progress_meter.h"

#include <gtest/gtest.h>

namespace qv::cli {
namespace {

using Act = ProgressMeter::Act;

constexpr std::int64_t kMega = 1'000'000;

TEST(ProgressMeter, ShowsNothingForHalfASecond) {
  ProgressMeter meter;
  EXPECT_EQ(meter.Update(true, 0, kMega, 100.0), Act::kKeep);
  EXPECT_EQ(meter.Update(true, 1000, kMega, 100.25), Act::kKeep);
  EXPECT_EQ(meter.Update(true, 2000, kMega, 100.49), Act::kKeep);
  EXPECT_EQ(meter.Update(true, 3000, kMega, 100.5), Act::kDraw);
}

TEST(ProgressMeter, SmallTransferIsNeverShown) {
  ProgressMeter meter;
  EXPECT_EQ(meter.Update(false, 0, 63'999, 0), Act::kKeep);
  EXPECT_EQ(meter.Update(false, 5, 63'999, 100), Act::kKeep);
  EXPECT_EQ(meter.Update(false, 5, 64'000, 200), Act::kDraw);
}

TEST(ProgressMeter, UnknownTotalIsShownOnceMuchHasCome) {
  ProgressMeter meter;
  EXPECT_EQ(meter.Update(false, 0, -1, 0), Act::kKeep);
  EXPECT_EQ(meter.Update(false, 63'999, -1, 10), Act::kKeep);
  EXPECT_EQ(meter.Update(false, 64'000, -1, 11), Act::kDraw);
}

TEST(ProgressMeter, DrawsTenTimesASecond) {
  ProgressMeter meter;
  meter.Update(true, 0, kMega, 0);
  int drawings = 0;
  for (int i = 1; i <= 4000; ++i)
    if (meter.Update(true, i, kMega, i * 0.001) == Act::kDraw) ++drawings;
  EXPECT_EQ(drawings, 36);  // at 0.5, 0.6, ... 4.0 s
}

TEST(ProgressMeter, EndClearsTheLine) {
  ProgressMeter meter;
  meter.Update(true, 0, kMega, 0);
  meter.Update(true, 500'000, kMega, 1);
  EXPECT_EQ(meter.Update(true, kMega, kMega, 1.01), Act::kClear);
  EXPECT_EQ(meter.Update(true, kMega, kMega, 9), Act::kClear);
}

TEST(ProgressMeter, AnswerIsATransferOfItsOwn) {
  ProgressMeter meter;
  meter.Update(true, 0, kMega, 0);
  EXPECT_EQ(meter.Update(true, 500'000, kMega, 1), Act::kDraw);
  EXPECT_EQ(meter.State().name, "upload");
  EXPECT_EQ(meter.Update(false, 0, kMega, 2), Act::kKeep);
  EXPECT_EQ(meter.Update(false, 100'000, kMega, 2.5), Act::kDraw);
  EXPECT_EQ(meter.State().name, "download");
  EXPECT_EQ(meter.State().done, 100'000);
  EXPECT_EQ(meter.State().total, kMega);
  EXPECT_EQ(meter.State().seconds, 0.5);
}

TEST(ProgressMeter, FewerBytesAreANewTransfer) {
  ProgressMeter meter;
  meter.Update(true, 0, kMega, 0);
  EXPECT_EQ(meter.Update(true, 500'000, kMega, 1), Act::kDraw);
  EXPECT_EQ(meter.Update(true, 0, kMega, 2), Act::kKeep);
}

TEST(ProgressMeter, FileGivesItsName) {
  ProgressMeter meter;
  meter.Begin("a.txt");
  meter.Update(true, 0, kMega, 0);
  EXPECT_EQ(meter.Update(true, 1, kMega, 1), Act::kDraw);
  EXPECT_EQ(meter.State().name, "a.txt");
  meter.Begin("b.txt");
  EXPECT_EQ(meter.Update(true, 2, kMega, 2), Act::kKeep);
  EXPECT_EQ(meter.Update(true, 2, kMega, 3), Act::kDraw);
  EXPECT_EQ(meter.State().name, "b.txt");
  EXPECT_EQ(meter.State().seconds, 1);
}

}  // namespace
}  // namespace qv::cli
