#include "components/http/request_head.h"

#include "components/http/http_error.h"
#include "components/http/http_syntax.h"
#include "text/utf8_codec.h"

namespace qv {
namespace {

constexpr std::string_view kLengthName = "Content-Length: ";
constexpr std::string_view kEnd = "\r\n\r\n";
constexpr std::size_t kMostDigits = 19;

bool IsFramingName(std::u16string_view name) noexcept {
  return EqualsIgnoringCase(name, "content-length") || EqualsIgnoringCase(name, "transfer-encoding");
}

}  // namespace

RequestHead::RequestHead(const Endpoint& endpoint, std::u16string_view verb, std::u16string_view path)
    : ownHost_("Host: " + endpoint.HostHeader() + "\r\n"), verbIsHead_(verb == u"HEAD") {
  const std::string target = RequestTarget(path);
  requestLine_.assign(verb.begin(), verb.end());
  requestLine_ += ' ';
  if (endpoint.UsesPlainProxy()) requestLine_ += endpoint.Origin();
  requestLine_ += target;
  requestLine_ += " HTTP/1.1\r\n";
}

void RequestHead::Add(std::u16string_view name, std::u16string_view value) {
  if (!IsToken(name)) ThrowBadArgument("The name of a header is no word of HTTP");
  if (!IsFieldValue(value)) ThrowBadArgument("The value of a header holds CR, LF or NUL");
  if (IsFramingName(name)) ThrowBadArgument("The length of the body is not the caller's to set");
  NarrowAscii(name, fields_.Extend(name.size()));
  fields_.Append(": ");
  PutUtf8(value, fields_.Extend(Utf8Size(value)));
  fields_.Append("\r\n");
  hasHost_ = hasHost_ || EqualsIgnoringCase(name, "host");
}

std::size_t RequestHead::MostBytes() const noexcept {
  return requestLine_.size() + ownHost_.size() + fields_.size() + kLengthName.size() + kMostDigits +
         kEnd.size();
}

SecretBytes RequestHead::Text(std::int64_t contentLength) const {
  SecretBytes text;
  text.Reserve(MostBytes());
  text.Append(requestLine_);
  if (!hasHost_) text.Append(ownHost_);
  text.Append(fields_.view());
  text.Append(kLengthName);
  text.Append(std::to_string(contentLength));
  text.Append(kEnd);
  return text;
}

}  // namespace qv
