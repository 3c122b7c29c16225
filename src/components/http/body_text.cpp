#include "components/http/body_text.h"

#include <algorithm>

#include "components/http/http_error.h"

namespace qv {
namespace {

constexpr std::size_t kStartBytes = 1024;  // enough to find the charset

// The body bytes of one Read.
class Pieces {
 public:
  Pieces(HttpExchange& exchange, std::size_t length) : exchange_(exchange), left_(length) {}

  bool IsDone() const noexcept { return left_ == 0; }
  // The bytes that have arrived; empty only when done. The view is valid until the next call.
  std::string_view Next() {
    if (left_ == 0) return {};
    const std::string_view piece = exchange_.NextBody(left_);
    if (piece.empty())
      ThrowCurl(CURLE_PARTIAL_FILE,
                "transfer closed with " + std::to_string(left_) + " bytes remaining to read");
    left_ -= piece.size();
    return piece;
  }
  // At least `least` bytes, or all: a view of the connection's buffer, or of *gathered.
  std::string_view Next(std::size_t least, SecretBytes* gathered) {
    const std::string_view piece = Next();
    if (piece.size() >= least || left_ == 0) return piece;
    gathered->Append(piece);
    while (gathered->size() < least && left_ != 0) gathered->Append(Next());
    return gathered->view();
  }

 private:
  HttpExchange& exchange_;
  std::size_t left_;
};

}  // namespace

WideString BodyText::Read(HttpExchange& exchange, std::size_t length) {
  Pieces pieces(exchange, length);
  SecretBytes gathered;
  std::string_view piece = pieces.Next(kStartBytes, &gathered);
  LearnCharset(exchange, &piece);
  if (!charset_->DecodesPieces()) {
    SecretBytes all;
    for (all.Append(piece); !pieces.IsDone();) all.Append(pieces.Next());
    return charset_->Decode(all.view());
  }
  ArrivingText text(charset_->MostUnits(openTail_.size() + length));
  Append(piece, exchange.IsAtEnd(), &text);
  while (!pieces.IsDone()) {
    piece = pieces.Next();
    Append(piece, exchange.IsAtEnd(), &text);
  }
  return text.Take();
}

// Removes the byte order mark from *start.
void BodyText::LearnCharset(const HttpExchange& exchange, std::string_view* start) {
  if (charset_.has_value()) return;
  std::string_view contentType;
  exchange.Head().Find("Content-Type", &contentType);
  charset_.emplace(contentType, *start);
  start->remove_prefix(charset_->MarkSize(*start));
}

void BodyText::Append(std::string_view bytes, bool isEnd, ArrivingText* text) {
  SecretBytes joined;
  if (!openTail_.empty()) {
    joined.Append(openTail_);
    joined.Append(bytes);
    bytes = joined.view();
  }
  const std::size_t tail = isEnd ? 0 : charset_->OpenTail(bytes);
  openTail_.assign(bytes.substr(bytes.size() - tail));
  bytes.remove_suffix(tail);
  text->Wrote(charset_->DecodePiece(bytes, text->Room(charset_->MostUnits(bytes.size()))));
}

}  // namespace qv
