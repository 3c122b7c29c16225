// Feeds the decoder of answers with a Content-Type and a body of the server's choice. Nothing may crash; good
// UTF-8 comes back as the same bytes; and a body that is read in two pieces gives the same text.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "components/http/body_charset.h"
#include "components/http/text_codec.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

void LookAtUtf8(std::string_view bytes) {
  const qv::WideString text = qv::DecodeUtf8(bytes);
  const std::string again = qv::ToUtf8(text.view());
  Require(qv::IsUtf8(again) && qv::DecodeUtf8(again) == text);
  if (qv::IsUtf8(bytes)) Require(again == bytes);
  Require(qv::OpenTailUtf8(bytes) <= 3 && qv::OpenTailUtf8(bytes) <= bytes.size());
  const qv::RoomyBytes roomy = qv::EncodeUtf8WithRoom(text.view(), u"", 7);
  Require(roomy.room >= 7 && std::string_view(roomy.Text(), roomy.size) == again);
}

// What comes of `bytes` when they are read up to `cut` first.
std::u16string InTwoPieces(const qv::BodyCharset& charset, std::string_view bytes, std::size_t cut) {
  const std::string_view first = bytes.substr(0, cut);
  const std::size_t tail = charset.OpenTail(first);
  Require(tail <= first.size());
  std::u16string text(charset.Decode(first.substr(0, first.size() - tail)).view());
  return text.append(charset.Decode(bytes.substr(cut - tail)).view());
}

void LookAtPieces(const char* contentType, std::string_view body, std::size_t cut) {
  const qv::BodyCharset charset(contentType, body);
  const std::string_view bytes = body.substr(charset.MarkSize(body));
  if (cut > bytes.size()) return;
  Require(InTwoPieces(charset, bytes, cut) == charset.Decode(bytes).view());
}

}  // namespace

// The first byte is where the body is cut; the first line is the Content-Type.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const std::size_t end = bytes.find('\n');
  const std::string_view contentType = bytes.substr(0, end);
  const std::string_view body = end == std::string_view::npos ? bytes : bytes.substr(end + 1);
  const qv::BodyCharset charset(contentType, body);
  const std::size_t mark = charset.MarkSize(body);
  Require(mark <= body.size() && charset.OpenTail(body) <= body.size());
  charset.Decode(body.substr(mark));
  LookAtUtf8(body);
  for (const char* known : {"text/xml; charset=utf-8", "text/xml; charset=utf-16le",
                            "text/xml; charset=utf-16be", "text/xml; charset=iso-8859-1"})
    LookAtPieces(known, body, data[0]);
  return 0;
}
