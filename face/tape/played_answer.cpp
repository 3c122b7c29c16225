#include "face/tape/played_answer.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "components/http/http_error.h"

namespace scriptwells {

namespace {

// Whether a head says that the body comes in chunks.
bool IsChunked(std::string head) {
  std::transform(head.begin(), head.end(), head.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  const std::size_t header = head.find("\r\ntransfer-encoding:");
  return header != std::string::npos && head.find("chunked", header) < head.find('\r', header + 2);
}

// As one chunk, whatever they were; without an end if the connection broke.
std::string Chunked(const std::string& body, bool isWhole) {
  char size[24];
  static_cast<void>(std::snprintf(size, sizeof size, "%zx\r\n", body.size()));
  const std::string chunk = body.empty() ? "" : size + body + "\r\n";
  return isWhole ? chunk + "0\r\n\r\n"
                 : chunk.substr(0, chunk.size() - std::min<std::size_t>(chunk.size(), 2));
}

}  // namespace

PlayedAnswer::PlayedAnswer(const TapeEntry& entry, TapeMask& mask) : failure_(entry.failure) {
  const auto played = [&mask](const TapePiece& piece) { return mask.PlayedFor(piece); };
  bytes_ = JoinedBytes(entry.answerHead, played);
  const std::string body = JoinedBytes(entry.answerBody, played);
  bytes_ += IsChunked(bytes_) ? Chunked(body, !failure_) : body;
}

void PlayedAnswer::Send() const {
  if (failure_ && failure_->phase == Phase::kSend) Fail();
}

std::size_t PlayedAnswer::Receive(char* bytes, std::size_t most) {
  const std::size_t count = std::min(most, bytes_.size() - done_);
  if (count == 0 && failure_) Fail();
  std::memcpy(bytes, bytes_.data() + done_, count);
  done_ += count;
  return count;
}

void PlayedAnswer::Fail() const {
  throw qv::HttpFailure(static_cast<qv::HRESULT>(failure_->code), WordsOf(*failure_));
}

std::string WordsOf(const TapedBreak& failure) {
  const std::string words =
      JoinedBytes(failure.message, [](const TapePiece& piece) { return "[" + piece.mask + "]"; });
  return words.substr(0, words.find('\n'));
}

}  // namespace scriptwells
