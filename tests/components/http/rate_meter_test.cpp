// Which transfers are too slow. No clock runs here: the test says how long was waited.
#include "components/http/rate_meter.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <string>

#include "components/http/http_error.h"

namespace qv {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

HttpOptions Limits(std::int64_t bytesPerSecond, std::int64_t window) {
  HttpOptions options;
  options.minBytesPerSecond = bytesPerSecond;
  options.rateWindow = window;
  return options;
}

std::string Refusal(RateMeter* meter) {
  try {
    meter->Check();
    return "";
  } catch (const HttpFailure& failure) {
    EXPECT_EQ(failure.Code(), HTTP_E_TIMED_OUT);
    return failure.what();
  }
}

constexpr char kTooSlow[] =
    "Operation too slow. Less than 16 bytes/sec transferred the last 60000 milliseconds";

TEST(RateMeter, SixteenBytesASecondAreEnough) {
  RateMeter meter{HttpOptions()};
  meter.Count(960);
  meter.Wait(seconds(60));
  EXPECT_EQ(Refusal(&meter), "");
}

TEST(RateMeter, OneByteLessIsTooSlow) {
  RateMeter meter{HttpOptions()};
  meter.Count(959);
  meter.Wait(seconds(60));
  EXPECT_EQ(Refusal(&meter), kTooSlow);
}

TEST(RateMeter, NothingIsSaidBeforeTheEndOfTheWindow) {
  RateMeter meter{HttpOptions()};
  meter.Count(1);
  meter.Wait(milliseconds(59'999));
  EXPECT_EQ(Refusal(&meter), "");
  EXPECT_EQ(meter.Left(), milliseconds(1));
  meter.Wait(milliseconds(1));
  EXPECT_EQ(Refusal(&meter), kTooSlow);
}

TEST(RateMeter, EveryWindowHasToHoldEnough) {
  RateMeter meter{HttpOptions()};
  meter.Count(1'000'000);
  meter.Wait(seconds(60));
  EXPECT_EQ(Refusal(&meter), "");
  EXPECT_EQ(meter.Left(), seconds(60));
  meter.Count(959);
  meter.Wait(seconds(60));
  EXPECT_EQ(Refusal(&meter), kTooSlow);
}

TEST(RateMeter, WaitingBeforeTheFirstByteDoesNotCount) {
  RateMeter meter{HttpOptions()};
  meter.Wait(seconds(3600));
  EXPECT_EQ(Refusal(&meter), "");
  EXPECT_EQ(meter.Left(), RateMeter::Duration::max());
  meter.Count(1);
  meter.Wait(seconds(59));
  EXPECT_EQ(Refusal(&meter), "");
}

TEST(RateMeter, StopForgetsTheWindow) {
  RateMeter meter{HttpOptions()};
  meter.Count(1);
  meter.Wait(seconds(59));
  meter.Stop();
  meter.Wait(seconds(59));
  EXPECT_EQ(Refusal(&meter), "");
  meter.Count(1);
  EXPECT_EQ(meter.Left(), seconds(60));
}

TEST(RateMeter, ZeroIsNoLimit) {
  for (const HttpOptions& options : {Limits(0, 60'000), Limits(16, 0)}) {
    RateMeter meter(options);
    meter.Count(1);
    meter.Wait(seconds(3600));
    EXPECT_EQ(Refusal(&meter), "");
    EXPECT_EQ(meter.Left(), RateMeter::Duration::max());
  }
}

TEST(RateMeter, GreatestNumbersAreLimitsToo) {
  const std::int64_t most = std::numeric_limits<std::int64_t>::max();
  RateMeter greedy(Limits(most, 10));
  greedy.Count(1'000'000'000);
  greedy.Wait(milliseconds(10));
  EXPECT_NE(Refusal(&greedy), "");
  RateMeter patient(Limits(most, most));
  patient.Count(1);
  patient.Wait(seconds(3600));
  EXPECT_EQ(Refusal(&patient), "");
}

}  // namespace
}  // namespace qv
