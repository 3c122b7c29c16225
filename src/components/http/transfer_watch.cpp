#include "components/http/transfer_watch.h"

#include <algorithm>
#include <limits>
#include <string>

#include "components/http/http_error.h"

namespace qv {
namespace {

using Clock = TransferWatch::Clock;

constexpr std::int64_t kNoLimit = std::numeric_limits<std::int64_t>::max();

// Never less than the time itself, so that a wait of this length is not repeated for a rest of it.
std::int64_t Milliseconds(Clock::duration time) noexcept {
  return std::chrono::ceil<std::chrono::milliseconds>(time).count();
}

std::int64_t PassedSince(Clock::time_point start) noexcept {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
}

std::int64_t Left(std::int64_t limit, Clock::time_point start) noexcept {
  return limit > 0 ? limit - PassedSince(start) : kNoLimit;
}

[[noreturn]] void ThrowTimedOut(std::int64_t passed, const char* how) {
  ThrowCurl(CURLE_OPERATION_TIMEDOUT, "Operation timed out after " + std::to_string(passed) + how);
}

}  // namespace

void TransferWatch::Report(bool sending, std::int64_t done, std::int64_t total) {
  sending_ = sending;
  done_ = done;
  total_ = total;
  Tick();
}

void TransferWatch::Tick() {
  if (!MayGoOn()) ThrowCurl(CURLE_ABORTED_BY_CALLBACK);
  CheckTotal();
}

void TransferWatch::CheckTotal() const {
  if (Left(options_.totalTimeout, start_) <= 0) ThrowTimedOut(PassedSince(start_), " milliseconds in total");
}

std::int64_t TransferWatch::NextWait(Clock::time_point idleSince, std::int64_t most) {
  const std::int64_t idle = Left(options_.idleTimeout, idleSince);
  if (idle <= 0) ThrowTimedOut(PassedSince(idleSince), " milliseconds without a byte");
  rate_.Check();
  CheckTotal();
  return std::max<std::int64_t>(
      1, std::min({most, idle, Left(options_.totalTimeout, start_), Milliseconds(rate_.Left())}));
}

std::int64_t TransferWatch::ConnectTime(Clock::time_point begun) const {
  CheckTotal();
  const std::int64_t connect = Left(options_.connectTimeout, begun);
  if (connect <= 0)
    ThrowCurl(CURLE_OPERATION_TIMEDOUT,
              "Connection timed out after " + std::to_string(PassedSince(begun)) + " milliseconds");
  return std::max<std::int64_t>(1, std::min(connect, Left(options_.totalTimeout, start_)));
}

bool TransferWatch::MayGoOn() noexcept {
  const bool goOn = progress_ == nullptr || progress_->OnProgress(sending_, done_, total_) == S_OK;
  return goOn && !aborted_.load(std::memory_order_relaxed);
}

}  // namespace qv
