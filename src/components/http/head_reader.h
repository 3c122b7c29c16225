// Collects received bytes until the head is complete, and skips interim answers (1xx).
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "components/http/response_head.h"

namespace qv {

class HeadReader {
 public:
  // `limit` counts the bytes of all heads together; 0 means none.
  explicit HeadReader(std::int64_t limit) noexcept : limit_(limit) {}

  // Consumes `input` up to the end of the head and returns the number of bytes; the rest is body. Throws
  // HttpFailure: HTTP_E_TOO_LARGE, HTTP_E_MALFORMED.
  std::size_t Feed(std::string_view input);
  bool IsComplete() const noexcept { return complete_; }
  bool HasBegun() const noexcept { return total_ > 0; }
  // Whether a head is partly read; false between an interim answer and the next one.
  bool IsUnderWay() const noexcept { return !text_.empty(); }
  // The final answer's head; meaningful when complete.
  const ResponseHead& Head() const noexcept { return head_; }

 private:
  std::size_t FeedOne(std::string_view input);
  std::size_t EndOfHead(std::string_view input) noexcept;
  void AddToLine(std::string_view part) noexcept;
  void Count(std::size_t bytes);
  void Finish();

  std::int64_t limit_;
  std::int64_t total_ = 0;
  std::string text_;
  bool lineHasContent_ = true;  // the status line is never empty, so an empty line there ends nothing
  bool lineHasCr_ = false;      // the last byte so far
  bool ended_ = false;
  bool complete_ = false;
  ResponseHead head_;
};

}  // namespace qv
