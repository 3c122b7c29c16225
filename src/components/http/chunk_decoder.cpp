#include "components/http/chunk_decoder.h"

#include <algorithm>

#include "components/http/http_error.h"
#include "text/ascii.h"

namespace qv {
namespace {

[[noreturn]] void ThrowMalformed(const char* words) {
  ThrowCurl(CURLE_WEIRD_SERVER_REPLY, words);
}

constexpr std::uint64_t kLargestBeforeDigit = UINT64_MAX >> 5;  // sizes stay below 2^63

}  // namespace

std::size_t ChunkDecoder::Take(std::string_view input, std::size_t most, std::string_view* data) {
  *data = {};
  std::size_t used = 0;
  while (used < input.size() && state_ != State::kEnd && state_ != State::kData) Step(input[used++]);
  if (state_ != State::kData) return used;
  const std::uint64_t run = std::min<std::uint64_t>({size_, input.size() - used, most});
  *data = input.substr(used, static_cast<std::size_t>(run));
  size_ -= run;
  if (size_ == 0) state_ = State::kDataCr;
  return used + data->size();
}

void ChunkDecoder::Step(char c) {
  CountOverhead();
  switch (state_) {
    case State::kSize:
      return StepSize(c);
    case State::kExtension:
      if (c == '\n') EndSizeLine();
      return;
    case State::kSizeEnd:
      if (c != '\n') ThrowMalformed("Illegal or missing hexadecimal sequence in chunked-encoding");
      return EndSizeLine();
    case State::kDataCr:
    case State::kDataLf:
      if (c == '\r' && state_ == State::kDataCr) {
        state_ = State::kDataLf;
        return;
      }
      if (c != '\n') ThrowMalformed("Malformed encoding found in chunked-encoding");
      state_ = State::kSize;
      overhead_ = 0;
      return;
    case State::kTrailerStart:
      return StepTrailerStart(c);
    case State::kTrailer:
      if (c == '\n') state_ = State::kTrailerStart;
      return;
    case State::kLastLf:
      if (c != '\n') ThrowMalformed("Malformed encoding found in chunked-encoding");
      state_ = State::kEnd;
      return;
    case State::kData:
    case State::kEnd:
      return;
  }
}

void ChunkDecoder::StepSize(char c) {
  if (IsHexDigit(c)) return AddDigit(c);
  if (digits_ == 0) ThrowMalformed("Illegal or missing hexadecimal sequence in chunked-encoding");
  if (c == '\n') return EndSizeLine();
  if (c == '\r') {
    state_ = State::kSizeEnd;
  } else if (c == ';' || c == ' ' || c == '\t') {
    state_ = State::kExtension;
  } else {
    ThrowMalformed("Illegal or missing hexadecimal sequence in chunked-encoding");
  }
}

void ChunkDecoder::AddDigit(char c) {
  if (size_ > kLargestBeforeDigit) ThrowMalformed("Too long hexadecimal number in chunked-encoding");
  size_ = size_ * 16 + static_cast<std::uint64_t>(HexDigitValue(c));
  ++digits_;
}

void ChunkDecoder::EndSizeLine() {
  state_ = size_ == 0 ? State::kTrailerStart : State::kData;
  digits_ = 0;
}

void ChunkDecoder::StepTrailerStart(char c) {
  if (c == '\n') {
    state_ = State::kEnd;
  } else {
    state_ = c == '\r' ? State::kLastLf : State::kTrailer;
  }
}

void ChunkDecoder::CountOverhead() {
  ++overhead_;
  if (limit_ > 0 && overhead_ > limit_)
    ThrowCurl(CURLE_FILESIZE_EXCEEDED, "Too large chunk line or trailers in chunked-encoding");
}

}  // namespace qv
