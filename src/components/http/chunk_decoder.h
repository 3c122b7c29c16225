// Takes the chunked transfer coding apart (RFC 9112, 7.1), whatever pieces the bytes come in.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qv {

class ChunkDecoder {
 public:
  // `limit` bounds the bytes that are no data in one chunk line or all trailers; 0 means none.
  explicit ChunkDecoder(std::int64_t limit = 0) noexcept : limit_(limit) {}

  // Takes bytes off the front of `input` and returns how many: up to and including the next run of data, of
  // which it takes at most `most` bytes. *data views the run, empty when `input` ended before one (or with
  // `most` 0, or at the end of all). Throws HttpFailure: HTTP_E_MALFORMED, HTTP_E_TOO_LARGE.
  std::size_t Take(std::string_view input, std::size_t most, std::string_view* data);
  bool IsAtEnd() const noexcept { return state_ == State::kEnd; }

 private:
  enum class State {
    kSize,
    kExtension,
    kSizeEnd,
    kData,
    kDataCr,
    kDataLf,
    kTrailerStart,
    kTrailer,
    kLastLf,
    kEnd
  };

  void Step(char c);
  void StepSize(char c);
  void StepTrailerStart(char c);
  void AddDigit(char c);
  void EndSizeLine();
  void CountOverhead();

  std::int64_t limit_;
  std::int64_t overhead_ = 0;
  std::uint64_t size_ = 0;  // of the chunk, then what is left of it
  int digits_ = 0;
  State state_ = State::kSize;
};

}  // namespace qv
