#include "components/http/body_framing.h"

#include <algorithm>
#include <charconv>
#include <string>
#include <vector>

#include "components/http/http_error.h"
#include "components/http/http_syntax.h"

namespace qv {
namespace {

// Digits only, below 2^63; -1 for anything else.
std::int64_t LengthOf(std::string_view text) noexcept {
  std::int64_t length = -1;
  if (text.empty() || text.front() == '-') return -1;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), length);
  const bool whole = result.ec == std::errc() && result.ptr == text.data() + text.size();
  return whole ? length : -1;
}

bool HasNoBody(int status) noexcept {
  return status == 204 || status == 304;
}

bool IsChunked(const ResponseHead& head) {
  bool chunked = false;
  for (const std::string_view coding : head.FindAll("Transfer-Encoding")) {
    if (coding.empty() || EqualsIgnoringCase(coding, "identity")) continue;
    if (chunked || !EqualsIgnoringCase(coding, "chunked"))
      ThrowCurl(CURLE_WEIRD_SERVER_REPLY, "Unsupported transfer encoding");
    chunked = true;
  }
  return chunked;
}

bool AllowsKeeping(const ResponseHead& head) {
  bool close = false;
  bool keep = false;
  for (const std::string_view value : head.FindAll("Connection")) {
    close = close || ListHasToken(value, "close");
    keep = keep || ListHasToken(value, "keep-alive");
  }
  return !head.IsOdd() && !close && (head.MinorVersion() >= 1 || keep);
}

bool Promises(const ResponseHead& head) {
  for (const char* name : {"Connection", "Proxy-Connection"})
    for (const std::string_view value : head.FindAll(name))
      if (ListHasToken(value, "keep-alive")) return true;
  return false;
}

}  // namespace

BodyFraming::BodyFraming(const ResponseHead& head, bool answersHead, std::int64_t overheadLimit)
    : chunks_(overheadLimit) {
  mayKeep_ = AllowsKeeping(head);
  promises_ = Promises(head);
  if (answersHead || HasNoBody(head.Status())) return;
  std::string_view length;
  if (IsChunked(head)) {
    kind_ = Kind::kChunked;
    announced_ = -1;
    mayKeep_ = mayKeep_ && head.MinorVersion() >= 1 && !head.Find("Content-Length", &length);
  } else {
    SetLength(head);
  }
}

// The first length counts. Another one beside it, or none that is a number, leaves the connection to this
// answer.
void BodyFraming::SetLength(const ResponseHead& head) {
  const std::vector<std::string_view> lengths = head.FindAll("Content-Length");
  announced_ = lengths.empty() ? -1 : LengthOf(lengths.front());
  left_ = announced_;
  kind_ = announced_ < 0 ? Kind::kToClose : Kind::kLength;
  const bool same = std::all_of(lengths.begin(), lengths.end(),
                                [&](std::string_view other) { return LengthOf(other) == announced_; });
  mayKeep_ = mayKeep_ && announced_ >= 0 && same;
}

std::size_t BodyFraming::Take(std::string_view input, std::size_t most, std::string_view* data) {
  if (kind_ == Kind::kChunked) return chunks_.Take(input, most, data);
  *data = {};
  if (IsAtEnd()) return 0;
  std::size_t size = std::min(input.size(), most);
  if (kind_ == Kind::kLength)
    size = static_cast<std::size_t>(std::min<std::int64_t>(left_, static_cast<std::int64_t>(size)));
  *data = input.substr(0, size);
  left_ -= static_cast<std::int64_t>(size);
  return size;
}

bool BodyFraming::IsAtEnd() const noexcept {
  switch (kind_) {
    case Kind::kLength:
      return left_ == 0;
    case Kind::kChunked:
      return chunks_.IsAtEnd();
    case Kind::kToClose:
      return closed_;
    case Kind::kNone:
      break;
  }
  return true;
}

void BodyFraming::OnClosed() {
  mayKeep_ = false;
  closed_ = true;
  if (IsAtEnd()) return;
  if (kind_ == Kind::kChunked)
    ThrowCurl(CURLE_PARTIAL_FILE, "transfer closed with outstanding read data remaining");
  ThrowCurl(CURLE_PARTIAL_FILE, "transfer closed with " + std::to_string(left_) + " bytes remaining to read");
}

}  // namespace qv
