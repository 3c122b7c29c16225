// Tests the parsers of heads, chunks and bodies with untrusted input. Nothing may crash, and the result must
// not depend on how the bytes are split: the same head, the same body, or the same failure.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "components/http/body_framing.h"
#include "components/http/head_reader.h"
#include "components/http/http_error.h"

namespace {

constexpr std::int64_t kMostHeadBytes = 2000;

void Require(bool holds) {
  if (!holds) std::abort();
}

struct Answer {
  qv::HRESULT code = qv::S_OK;  // of the failure
  int status = 0;               // 0: no head
  std::int64_t announced = 0;
  std::string body;
  bool whole = false;
  bool mayKeep = false;
  std::size_t left = 0;  // bytes after the answer

  bool operator==(const Answer& other) const {
    return code == other.code && status == other.status && announced == other.announced &&
           body == other.body && whole == other.whole && mayKeep == other.mayKeep;
  }
};

// A connection that returns `piece` bytes at a time.
class Pieces {
 public:
  Pieces(std::string_view bytes, std::size_t piece) : bytes_(bytes), piece_(piece) {}

  std::string_view Buffered() const { return bytes_.substr(begin_, end_ - begin_); }
  void Take(std::size_t size) {
    Require(size <= end_ - begin_);
    begin_ += size;
  }
  // False at the end.
  bool More() {
    const std::size_t before = end_;
    end_ = std::min(bytes_.size(), end_ + piece_);
    return end_ != before;
  }
  std::size_t Left() const { return bytes_.size() - begin_; }

 private:
  std::string_view bytes_;
  std::size_t piece_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

void LookAtHead(const qv::ResponseHead& head) {
  Require(head.Status() >= 200 && head.Status() <= 999);
  for (const char* name : {"Content-Length", "Set-Cookie", "Content-Disposition", "Transfer-Encoding"}) {
    std::string_view value;
    if (!head.Find(name, &value)) continue;
    Require(value.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos);
    Require(!head.FindAll(name).empty());
  }
}

void ReadBody(qv::BodyFraming& framing, Pieces& pieces, std::size_t most, Answer* answer) {
  while (!framing.IsAtEnd()) {
    std::string_view data;
    const std::size_t used = framing.Take(pieces.Buffered(), most, &data);
    Require(data.size() <= most && data.size() <= used);
    answer->body.append(data);
    pieces.Take(used);
    if (used != 0 || pieces.More()) continue;
    framing.OnClosed();
  }
  answer->whole = true;
}

Answer Read(std::string_view bytes, std::size_t piece, std::size_t most, bool answersHead) {
  Answer answer;
  Pieces pieces(bytes, piece);
  qv::HeadReader reader(kMostHeadBytes);
  try {
    while (!reader.IsComplete() && pieces.More()) pieces.Take(reader.Feed(pieces.Buffered()));
    Require(!reader.IsComplete() || !reader.IsUnderWay());
    if (!reader.IsComplete()) return answer;
    LookAtHead(reader.Head());
    answer.status = reader.Head().Status();
    qv::BodyFraming framing(reader.Head(), answersHead, kMostHeadBytes);
    answer.announced = framing.Announced();
    Require(answer.announced >= -1);
    ReadBody(framing, pieces, most, &answer);
    answer.mayKeep = framing.MayKeepConnection();
    answer.left = pieces.Left();
  } catch (const qv::HttpFailure& failure) {
    answer.code = failure.Code();
  }
  return answer;
}

}  // namespace

// The first byte says how the rest is split.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const bool answersHead = data[0] >= 0xF0;
  const std::size_t piece = data[0] % 16 + std::size_t{1};
  const Answer whole = Read(bytes, bytes.size() + 1, bytes.size() + 1, answersHead);
  const Answer pieces = Read(bytes, piece, piece % 5 + 1, answersHead);
  Require(whole == pieces);
  Require(!whole.whole || whole.announced < 0 ||
          whole.body.size() == static_cast<std::size_t>(whole.announced) || whole.body.empty());
  return 0;
}
