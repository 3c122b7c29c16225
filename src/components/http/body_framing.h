// Where the body of an answer ends: by its length, by its chunks, where the connection closes, or at once.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "components/http/chunk_decoder.h"
#include "components/http/response_head.h"

namespace qv {

class BodyFraming {
 public:
  BodyFraming() = default;  // no body
  // Throws HttpFailure (HTTP_E_MALFORMED) for a transfer coding other than chunked.
  BodyFraming(const ResponseHead& head, bool answersHead, std::int64_t overheadLimit);

  // As ChunkDecoder::Take, for every kind of framing.
  std::size_t Take(std::string_view input, std::size_t most, std::string_view* data);
  bool IsAtEnd() const noexcept;
  // The server has closed. Throws HttpFailure (HTTP_E_CUT_OFF) if the body is incomplete.
  void OnClosed();
  // Bytes of the body, -1 if the head does not say.
  std::int64_t Announced() const noexcept { return announced_; }
  // Whether head and framing allow another answer on this connection.
  bool MayKeepConnection() const noexcept { return mayKeep_; }
  // Whether the answer says so explicitly, which HTTP/1.1 does not require.
  bool PromisesToKeepConnection() const noexcept { return promises_; }

 private:
  enum class Kind { kNone, kLength, kChunked, kToClose };

  void SetLength(const ResponseHead& head);

  Kind kind_ = Kind::kNone;
  std::int64_t announced_ = 0;
  std::int64_t left_ = 0;
  ChunkDecoder chunks_;
  bool closed_ = false;
  bool promises_ = false;
  bool mayKeep_ = false;
};

}  // namespace qv
