// The bytes that a tape plays for an exchange, and how the connection ends.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "components/http/wire_tap.h"
#include "face/tape/tape.h"
#include "face/tape/tape_mask.h"

namespace scriptwells {

class PlayedAnswer {
 public:
  // Nothing, until a request has found its entry.
  PlayedAnswer() = default;
  PlayedAnswer(const TapeEntry& entry, TapeMask& mask);
  // Head and body as they came.
  PlayedAnswer(std::string bytes, std::optional<TapedBreak> failure)
      : bytes_(std::move(bytes)), failure_(std::move(failure)) {}

  // Throws qv::HttpFailure where the recorded connection broke while it sent.
  void Send() const;
  // Up to `most` bytes; 0 at the end. Throws qv::HttpFailure there if the recorded connection broke.
  std::size_t Receive(char* bytes, std::size_t most);

  const std::string& Bytes() const noexcept { return bytes_; }

 private:
  [[noreturn]] void Fail() const;

  std::string bytes_;
  std::size_t done_ = 0;
  std::optional<TapedBreak> failure_;
};

// A connection that receives it.
class PlayedLine final : public qv::WireLine {
 public:
  explicit PlayedLine(std::shared_ptr<PlayedAnswer> answer) : answer_(std::move(answer)) {}
  void Send(std::string_view) override { answer_->Send(); }
  std::size_t Receive(char* bytes, std::size_t most) override { return answer_->Receive(bytes, most); }

 private:
  const std::shared_ptr<PlayedAnswer> answer_;
};

// The message of a failure.
std::string WordsOf(const TapedBreak& failure);

}  // namespace scriptwells
