// The head of a request as sent: request line, the caller's headers in their order, the length.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "components/http/endpoint.h"
#include "components/http/secret_bytes.h"

namespace qv {

class RequestHead {
 public:
  // Through a plain proxy the target begins with the origin. Throws HttpFailure (E_INVALIDARG) for a path
  // that cannot be sent. `verb` is a token.
  RequestHead(const Endpoint& endpoint, std::u16string_view verb, std::u16string_view path);

  // Throws HttpFailure (E_INVALIDARG) for a name that is not a token, for a value with CR, LF or NUL, and for
  // the two headers that say where the body ends, which only the component sets.
  void Add(std::u16string_view name, std::u16string_view value);

  bool VerbIsHead() const noexcept { return verbIsHead_; }
  // Upper bound of the head's length, including the empty line.
  std::size_t MostBytes() const noexcept;
  // Adds a `Host` header as the first one if the caller has set none.
  SecretBytes Text(std::int64_t contentLength) const;

 private:
  std::string requestLine_;
  std::string ownHost_;
  SecretBytes fields_;
  bool hasHost_ = false;
  bool verbIsHead_;
};

}  // namespace qv
