// Collects what a listener gets of one exchange.
#pragma once

#include <chrono>
#include <string_view>

#include "face/exchange/exchange_record.h"
#include "face/exchange/masking.h"
#include "scriptwells/options.h"

namespace scriptwells {

class ShownExchange {
 public:
  // Without `texts` heads and bodies stay empty.
  explicit ShownExchange(bool texts) : texts_(texts) {}

  // The first byte of the request is sent next.
  void Request(std::string_view head, std::string_view body);
  void Connected(bool isKeptConnection);
  // Bytes of the head of the answer.
  void Answering(std::string_view bytes);
  void Transferred(bool sending, std::int64_t bytes);

  // All of it. `secrets` masks it; null does not.
  Exchange Ended(const ExchangeRecord& record, const Masking* secrets);
  std::string_view RequestHead() const noexcept { return exchange_.requestHead; }

 private:
  using Clock = std::chrono::steady_clock;

  static std::chrono::microseconds Since(Clock::time_point start);

  bool texts_;
  bool answering_ = false;
  Exchange exchange_{};
  Clock::time_point begin_ = Clock::now();
  std::chrono::system_clock::time_point beginOfDay_ = std::chrono::system_clock::now();
  Clock::time_point requestBegin_{};
};

}  // namespace scriptwells
