// How long a transfer may wait, and when its total time is over. What has passed is given, not waited for.
#include "components/http/transfer_watch.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <limits>

#include "components/http/http_error.h"

namespace qv {
namespace {

using std::chrono::hours;
using std::chrono::minutes;
using Clock = TransferWatch::Clock;

constexpr std::int64_t kHour = 3'600'000;

class TransferWatchTest : public ::testing::Test {
 protected:
  // With `spent` of the total time.
  TransferWatch Watch(Clock::duration spent = {}) const {
    return TransferWatch(options_, nullptr, aborted_, spent);
  }
  // The code of what it throws.
  static HRESULT CodeOf(const std::function<void()>& action) {
    try {
      action();
      return S_OK;
    } catch (const HttpFailure& failure) {
      return failure.Code();
    }
  }

  HttpOptions options_;
  std::atomic<bool> aborted_{false};
};

// A transfer that always has bytes to read or to send never waits.
TEST_F(TransferWatchTest, TotalTimeIsLookedAtWithEveryPiece) {
  options_.totalTimeout = kHour;
  TransferWatch spent = Watch(hours(1));
  EXPECT_EQ(CodeOf([&] { spent.Report(false, 1, 2); }), HTTP_E_TIMED_OUT);
  TransferWatch fresh = Watch();
  EXPECT_EQ(CodeOf([&] { fresh.Report(false, 1, 2); }), S_OK);
}

TEST_F(TransferWatchTest, NoTotalTimeByDefault) {
  TransferWatch watch = Watch(hours(100'000));
  EXPECT_EQ(CodeOf([&] { watch.Report(false, 1, 2); }), S_OK);
}

TEST_F(TransferWatchTest, WaitEndsWithTheNearestLimit) {
  options_.totalTimeout = kHour;
  EXPECT_EQ(Watch().NextWait(Clock::now(), 250), 250);
  EXPECT_LE(Watch(minutes(60) - std::chrono::milliseconds(100)).NextWait(Clock::now(), 250), 100);
  options_.idleTimeout = kHour;
  EXPECT_LE(Watch().NextWait(Clock::now() - minutes(60) + std::chrono::milliseconds(100), 250), 100);
  options_.rateWindow = 100;
  TransferWatch watch = Watch();
  watch.Rate().Count(1);
  EXPECT_EQ(watch.NextWait(Clock::now(), 250), 100);
}

TEST_F(TransferWatchTest, LimitsThatAreReachedEndTheWait) {
  const auto next = [](TransferWatch watch, Clock::time_point idleSince) {
    return CodeOf([&] { watch.NextWait(idleSince, 250); });
  };
  options_.totalTimeout = kHour;
  EXPECT_EQ(next(Watch(hours(1)), Clock::now()), HTTP_E_TIMED_OUT);
  EXPECT_EQ(next(Watch(), Clock::now() - minutes(1)), HTTP_E_TIMED_OUT);
  EXPECT_EQ(next(Watch(), Clock::now()), S_OK);
}

TEST_F(TransferWatchTest, ConnectingHasWhatIsLeftOfBothTimes) {
  const Clock::time_point now = Clock::now();
  EXPECT_EQ(CodeOf([&] { Watch().ConnectTime(now - minutes(1)); }), HTTP_E_TIMED_OUT);
  EXPECT_LE(Watch().ConnectTime(now - std::chrono::seconds(20)), 10'000);
  options_.connectTimeout = 0;
  EXPECT_EQ(Watch().ConnectTime(now - minutes(1)), std::numeric_limits<std::int64_t>::max());
  options_.totalTimeout = kHour;
  EXPECT_LE(Watch(minutes(59)).ConnectTime(now), 60'000);
  EXPECT_EQ(CodeOf([&] { Watch(hours(1)).ConnectTime(now); }), HTTP_E_TIMED_OUT);
}

}  // namespace
}  // namespace qv
