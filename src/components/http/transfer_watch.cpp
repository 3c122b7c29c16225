#include "components/http/transfer_watch.h"

#include "components/http/http_error.h"

namespace qv {

void TransferWatch::Report(bool sending, std::int64_t done, std::int64_t total) {
  sending_ = sending;
  done_ = done;
  total_ = total;
  Tick();
}

void TransferWatch::Tick() {
  if (!MayGoOn()) ThrowCurl(CURLE_ABORTED_BY_CALLBACK);
}

bool TransferWatch::MayGoOn() noexcept {
  const bool goOn = progress_ == nullptr || progress_->OnProgress(sending_, done_, total_) == S_OK;
  return goOn && !aborted_.load(std::memory_order_relaxed);
}

}  // namespace qv
