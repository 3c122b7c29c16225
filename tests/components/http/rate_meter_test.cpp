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

class Meter : public RateMeter {
 public:
  explicit Meter(const HttpOptions& options = HttpOptions()) : RateMeter(options) {}

  // Bytes, and then a wait.
  Meter& Pass(std::size_t bytes, Duration time) {
    Count(bytes);
    Wait(time);
    return *this;
  }
  std::string Refusal() {
    try {
      Check();
      return "";
    } catch (const HttpFailure& failure) {
      EXPECT_EQ(failure.Code(), HTTP_E_TIMED_OUT);
      return failure.what();
    }
  }
};

constexpr char kTooSlow[] =
    "Operation too slow. Less than 16 bytes/sec transferred the last 60000 milliseconds";

TEST(RateMeter, SixteenBytesASecondAreEnoughAndOneByteLessIsNot) {
  EXPECT_EQ(Meter().Pass(960, seconds(60)).Refusal(), "");
  EXPECT_EQ(Meter().Pass(959, seconds(60)).Refusal(), kTooSlow);
}

TEST(RateMeter, NothingIsRefusedBeforeTheEndOfTheWindow) {
  Meter meter;
  EXPECT_EQ(meter.Pass(1, milliseconds(59'999)).Refusal(), "");
  EXPECT_EQ(meter.Left(), milliseconds(1));
  meter.Wait(milliseconds(1));
  EXPECT_EQ(meter.Refusal(), kTooSlow);
}

TEST(RateMeter, EveryWindowHasToHoldEnough) {
  Meter meter;
  EXPECT_EQ(meter.Pass(1'000'000, seconds(60)).Refusal(), "");
  EXPECT_EQ(meter.Left(), seconds(60));
  EXPECT_EQ(meter.Pass(959, seconds(60)).Refusal(), kTooSlow);
}

TEST(RateMeter, WaitingBeforeTheFirstByteDoesNotCount) {
  Meter meter;
  meter.Wait(seconds(3600));
  EXPECT_EQ(meter.Refusal(), "");
  EXPECT_EQ(meter.Left(), RateMeter::Duration::max());
  EXPECT_EQ(meter.Pass(1, seconds(59)).Refusal(), "");
}

TEST(RateMeter, StopForgetsTheWindow) {
  Meter meter;
  meter.Pass(1, seconds(59)).Stop();
  meter.Wait(seconds(59));
  EXPECT_EQ(meter.Refusal(), "");
  meter.Count(1);
  EXPECT_EQ(meter.Left(), seconds(60));
}

TEST(RateMeter, ZeroIsNoLimit) {
  for (const HttpOptions& options : {Limits(0, 60'000), Limits(16, 0)}) {
    Meter meter(options);
    EXPECT_EQ(meter.Pass(1, seconds(3600)).Refusal(), "");
    EXPECT_EQ(meter.Left(), RateMeter::Duration::max());
  }
}

TEST(RateMeter, GreatestNumbersAreLimitsToo) {
  constexpr std::int64_t kMost = std::numeric_limits<std::int64_t>::max();
  EXPECT_NE(Meter(Limits(kMost, 10)).Pass(1'000'000'000, milliseconds(10)).Refusal(), "");
  EXPECT_EQ(Meter(Limits(kMost, kMost)).Pass(1, seconds(3600)).Refusal(), "");
}

}  // namespace
}  // namespace qv
