// The body of an answer as text, read some bytes at a time.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "components/http/arriving_text.h"
#include "components/http/body_charset.h"
#include "components/http/http_exchange.h"
#include "components/http/secret_bytes.h"

namespace qv {

class BodyText {
 public:
  // The next `length` bytes, decoded as they arrive. A character that their end splits is returned by the
  // next call. Throws what the exchange throws, and HttpFailure (HTTP_E_CUT_OFF) if the body ends early.
  WideString Read(HttpExchange& exchange, std::size_t length);

 private:
  void LearnCharset(const HttpExchange& exchange, std::string_view* start);
  void Append(std::string_view bytes, bool isEnd, ArrivingText* text);

  std::optional<BodyCharset> charset_;  // known after the first Read
  std::string openTail_;                // bytes of a character that the last piece split
};

}  // namespace qv
