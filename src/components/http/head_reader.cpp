#include "components/http/head_reader.h"

#include <utility>

#include "components/http/http_error.h"

namespace qv {

std::size_t HeadReader::Feed(std::string_view input) {
  std::size_t used = 0;
  while (!complete_ && used < input.size()) used += FeedOne(input.substr(used));
  return used;
}

std::size_t HeadReader::FeedOne(std::string_view input) {
  const std::size_t size = EndOfHead(input);
  Count(size);
  text_.append(input.substr(0, size));
  if (ended_) Finish();
  return size;
}

// How many bytes belong to the head; sets ended_ when they close it. A line ends at LF, with or without CR.
std::size_t HeadReader::EndOfHead(std::string_view input) noexcept {
  std::size_t start = 0;
  for (;;) {
    const std::size_t end = input.find('\n', start);
    const std::string_view line = input.substr(start, end == std::string_view::npos ? end : end - start);
    AddToLine(line);
    if (end == std::string_view::npos) return input.size();
    lineHasCr_ = false;
    if (!lineHasContent_) {
      ended_ = true;
      return end + 1;
    }
    lineHasContent_ = false;
    start = end + 1;
  }
}

// Only the last CR of a line belongs to its end, and which one that is shows with what comes next.
void HeadReader::AddToLine(std::string_view part) noexcept {
  if (part.empty()) return;
  const bool endsWithCr = part.back() == '\r';
  lineHasContent_ = lineHasContent_ || lineHasCr_ || part.size() > (endsWithCr ? 1U : 0U);
  lineHasCr_ = endsWithCr;
}

void HeadReader::Count(std::size_t bytes) {
  total_ += static_cast<std::int64_t>(bytes);
  if (limit_ > 0 && total_ > limit_)
    ThrowCurl(CURLE_FILESIZE_EXCEEDED,
              "Too large response headers: " + std::to_string(total_) + " > " + std::to_string(limit_));
}

void HeadReader::Finish() {
  head_.Parse(std::exchange(text_, {}));
  ended_ = false;
  lineHasContent_ = true;
  if (head_.Status() == 101) ThrowCurl(CURLE_WEIRD_SERVER_REPLY, "Weird server reply: another protocol");
  complete_ = head_.Status() >= 200;
}

}  // namespace qv
