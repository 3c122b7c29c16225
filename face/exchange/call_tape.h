// What records the exchanges of a session, or plays them in place of the network.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "components/http/http_error.h"
#include "components/http/wire_tap.h"
#include "face/exchange/exchange_record.h"
#include "scriptwells/options.h"

namespace scriptwells {

// Why there is no connection, as it was recorded.
class TapedFailure : public qv::HttpFailure {
 public:
  TapedFailure(qv::HRESULT code, const std::string& words, bool isOfHandshake)
      : HttpFailure(code, words), isOfHandshake_(isOfHandshake) {}
  bool IsOfHandshake() const noexcept { return isOfHandshake_; }

 private:
  bool isOfHandshake_;
};

struct TapedRequest {
  Purpose purpose;
  std::string_view head, body;
  std::string file;  // the local path of an upload; empty for a body
};

// Called for one exchange after the other, in this order. Everything but TapedFailure that a function throws
// ends the call and reaches its caller.
class CallTape {
 public:
  CallTape() = default;
  virtual ~CallTape() = default;
  CallTape(const CallTape&) = delete;
  CallTape& operator=(const CallTape&) = delete;

  // Null: the exchange goes over the network. Throws TapedFailure.
  virtual std::unique_ptr<qv::WireLine> Connect() = 0;
  // Before the first byte is sent. Throws Error to send nothing.
  virtual void Request(const TapedRequest& request) = 0;
  // With all bytes that were seen and every secret, also those of a file that was downloaded.
  virtual void Ended(const ExchangeRecord& record, const Exchange& exchange) = 0;
};

}  // namespace scriptwells
