// Decodes the chunked transfer coding (RFC 9112, 7.1) incrementally.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace qv {

class ChunkDecoder {
 public:
  // `limit` bounds the overhead bytes in one chunk line and in all trailers; 0 means no limit.
  explicit ChunkDecoder(std::int64_t limit = 0) noexcept : limit_(limit) {}

  // Consumes bytes of `input` up to and including the next run of data, at most `most` bytes of it. Returns
  // the number of bytes consumed. *data views the run; empty if `input` ends before one, if `most` is 0, or
  // at the end of the body. Throws HttpFailure: HTTP_E_MALFORMED, HTTP_E_TOO_LARGE.
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
