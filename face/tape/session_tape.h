// The tapes of one session: records its exchanges, plays them, or both.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "face/exchange/call_tape.h"
#include "face/tape/played_answer.h"
#include "face/tape/tape_file.h"
#include "face/tape/tape_mask.h"
#include "face/tape/tape_player.h"

namespace scriptwells {

class SessionTape final : public CallTape {
 public:
  // Paths; empty for none. Throws Error (kLocalFile) for a tape that cannot be written or read.
  SessionTape(const std::string& record, const std::string& replay);

  // A secret that is masked from the start.
  void Know(SecretKind kind, const std::string& secret) { mask_.Know(kind, secret); }

  std::unique_ptr<qv::WireLine> Connect() override;
  void Request(const TapedRequest& request) override;
  void Ended(const ExchangeRecord& record, const Exchange& exchange) override;

 private:
  void AddAnswer(const ExchangeRecord& record, const Exchange& exchange);
  void AddBreak(const ExchangeRecord& record);

  std::optional<TapeSeat> seat_;
  std::optional<TapeFile> file_;
  TapeMask mask_;
  TapeEntry entry_;  // of the exchange under way
  std::shared_ptr<PlayedAnswer> answer_;
};

}  // namespace scriptwells
