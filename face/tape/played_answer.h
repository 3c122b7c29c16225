// The bytes that a tape plays for an exchange, and how the connection ends.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "face/tape/tape.h"
#include "face/tape/tape_mask.h"

namespace scriptwells {

class PlayedAnswer {
 public:
  // Nothing, until a request has found its entry.
  PlayedAnswer() = default;
  PlayedAnswer(const TapeEntry& entry, TapeMask& mask);

  // Throws qv::HttpFailure where the recorded connection broke while it sent.
  void Send() const;
  // Up to `most` bytes; 0 at the end. Throws qv::HttpFailure there if the recorded connection broke.
  std::size_t Receive(char* bytes, std::size_t most);

 private:
  [[noreturn]] void Fail() const;

  std::string bytes_;
  std::size_t done_ = 0;
  std::optional<TapedBreak> failure_;
};

// The message of a failure.
std::string WordsOf(const TapedBreak& failure);

}  // namespace scriptwells
