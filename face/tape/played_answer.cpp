#include "face/tape/played_answer.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

#include "components/http/body_charset.h"
#include "components/http/http_error.h"
#include "components/http/response_head.h"

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

using Writing = std::string (*)(const std::string&);

template <bool isBig>
std::string Utf16(const std::string& text) {
  std::string bytes;
  for (const char c : text) bytes += isBig ? std::string{'\0', c} : std::string{c, '\0'};
  return bytes;
}

// How the text of a secret is written in a body; null if as it is.
Writing WritingOf(const std::string& head, const TapeText& body) {
  const bool hasSecrets =
      std::any_of(body.begin(), body.end(), [](const TapePiece& piece) { return !piece.mask.empty(); });
  if (!hasSecrets) return nullptr;
  qv::ResponseHead parsed;
  std::string_view type;
  try {
    parsed.Parse(head);
    parsed.Find("Content-Type", &type);
  } catch (const qv::HttpFailure&) {  // of a broken connection
    return nullptr;
  }
  const qv::BodyCharset charset(type, body.front().text);
  if (charset.Decode(Utf16<false>("a")).view() == u"a") return Utf16<false>;
  return charset.Decode(Utf16<true>("a")).view() == u"a" ? Utf16<true> : nullptr;
}

}  // namespace

PlayedAnswer::PlayedAnswer(const TapeEntry& entry, TapeMask& mask) : failure_(entry.failure) {
  const auto played = [&mask](const TapePiece& piece) { return mask.PlayedFor(piece); };
  bytes_ = JoinedBytes(entry.answerHead, played);
  const Writing writing = WritingOf(bytes_, entry.answerBody);
  const std::string body = JoinedBytes(entry.answerBody, [&](const TapePiece& piece) {
    return writing == nullptr || piece.size % 2 != 0 ? played(piece)
                                                     : writing(played({{}, piece.mask, piece.size / 2}));
  });
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
