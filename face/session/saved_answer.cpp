#include "face/session/saved_answer.h"

#include <memory>
#include <utility>

#include "face/session/session_impl.h"
#include "face/tape/played_answer.h"
#include "face/tape/tape.h"
#include "face/tape/tape_mask.h"
#include "face/tape/typed_values.h"

namespace scriptwells {

namespace {

// Answers every request with the same bytes.
class AnswerTape final : public CallTape {
 public:
  AnswerTape(std::string bytes, const std::optional<SavedBreak>& failure)
      : bytes_(std::move(bytes)), failure_(failure) {}

  std::unique_ptr<qv::WireLine> Connect() override {
    if (failure_ && (failure_->phase == Phase::kConnect || failure_->phase == Phase::kTls))
      throw TapedFailure(static_cast<qv::HRESULT>(failure_->code), failure_->message,
                         failure_->phase == Phase::kTls);
    std::optional<TapedBreak> end;
    if (failure_) end = TapedBreak{failure_->phase, failure_->code, {{failure_->message, {}, 0}}};
    return std::make_unique<PlayedLine>(std::make_shared<PlayedAnswer>(bytes_, end));
  }
  void Request(const TapedRequest&) override {}
  void Ended(const ExchangeRecord&, const Exchange&) override {}

 private:
  const std::string bytes_;
  const std::optional<SavedBreak> failure_;
};

// Joins texts of one exchange, and keeps what is made up for their masks.
class Joiner {
 public:
  explicit Joiner(SavedExchange& exchange) : exchange_(exchange) {}

  std::string operator()(const TapeText& text) {
    return JoinedBytes(text, [this](const TapePiece& piece) {
      exchange_.secrets.push_back(mask_.PlayedFor(piece));
      return exchange_.secrets.back();
    });
  }

  TapeMask& Mask() noexcept { return mask_; }

 private:
  SavedExchange& exchange_;
  TapeMask mask_;
};

std::string LineOf(const std::string& text) {
  return text.substr(0, text.find('\n'));
}

SavedExchange SavedFrom(const TapeEntry& entry) {
  SavedExchange exchange;
  Joiner joined(exchange);
  exchange.line = entry.line;
  exchange.purpose = entry.purpose;
  exchange.server = LineOf(joined(entry.server));
  exchange.request = joined(entry.requestHead) + joined(entry.requestBody);
  // The masks of the answer are among its secrets, and its chunks are written again.
  static_cast<void>(joined(entry.answerHead) + joined(entry.answerBody));
  exchange.answer = PlayedAnswer(entry, joined.Mask()).Bytes();
  if (entry.failure)
    exchange.failure =
        SavedBreak{entry.failure->phase, entry.failure->code, LineOf(joined(entry.failure->message))};
  return exchange;
}

}  // namespace

bool IsTape(std::string_view text) noexcept {
  return text.substr(0, kTapeHeader.size()) == kTapeHeader;
}

std::vector<SavedExchange> ExchangesOf(const std::string& name, std::string_view text) {
  std::vector<SavedExchange> exchanges;
  for (const TapeEntry& entry : ReadTape(name, text)) exchanges.push_back(SavedFrom(entry));
  return exchanges;
}

Value ReadSaved(const SavedExchange& exchange, bool strict) {
  auto tape = std::make_unique<AnswerTape>(exchange.answer, exchange.failure);
  Options options;
  options.strict = strict;
  if (exchange.purpose == Purpose::kOpenSession)
    return Value(SessionAccess::Open(exchange.server, std::move(tape), options).Release());
  Session session = SessionAccess::Adopt(exchange.server, std::move(tape), options);
  if (exchange.purpose != Purpose::kCloseSession) return session.Run("any");
  session.Close();
  return {};
}

std::vector<std::string> ShownLines(const Value& value) {
  return ShownValue(value);
}

}  // namespace scriptwells
