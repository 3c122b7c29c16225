#include "components/http/endpoint.h"

#include <string_view>

#include "components/http/http_error.h"
#include "components/http/http_syntax.h"
#include "components/http/source_file.h"

namespace qv {
namespace {

bool IsSecure(std::u16string_view protocol) {
  if (EqualsIgnoringCase(protocol, "https")) return true;
  if (!EqualsIgnoringCase(protocol, "http")) ThrowBadArgument("The protocol is neither http nor https");
  return false;
}

std::string CheckedHost(std::u16string_view host) {
  if (!IsHost(host)) ThrowBadArgument("The host is no plain name or address");
  return HostForUrl(host);
}

// 1 to 65535 in decimal, at most five digits.
bool IsPort(std::u16string_view text) noexcept {
  if (text.empty() || text.size() > 5) return false;
  unsigned value = 0;
  for (const char16_t c : text) {
    if (c < u'0' || c > u'9') return false;
    value = value * 10 + static_cast<unsigned>(c - u'0');
  }
  return value >= 1 && value <= 65535;
}

std::string ProxyAddress(std::u16string_view proxy) {
  if (proxy.empty()) return {};
  const std::size_t bracket = proxy.rfind(u']');
  const std::size_t colon = proxy.find(u':', bracket == std::u16string_view::npos ? 0 : bracket);
  const std::u16string_view name = proxy.substr(0, colon);
  const std::u16string_view port =
      colon == std::u16string_view::npos ? std::u16string_view(u"80") : proxy.substr(colon + 1);
  if (!IsHost(name) || !IsPort(port)) ThrowBadArgument("The proxy is neither a name nor name:port");
  return HostForUrl(name) + ":" + std::string(port.begin(), port.end());
}

std::string FileNameOrNone(const WideString& path) {
  return path.IsEmpty() ? std::string() : NativeFileName(path);
}

}  // namespace

TlsFiles TlsFiles::FromOptions(const HttpOptions& options) {
  if (options.certificateFile.IsEmpty() && !options.keyFile.IsEmpty())
    ThrowBadArgument("A key needs its certificate");
  return {FileNameOrNone(options.caFile), FileNameOrNone(options.certificateFile),
          FileNameOrNone(options.keyFile)};
}

bool TlsFiles::operator==(const TlsFiles& other) const noexcept {
  return authority == other.authority && certificate == other.certificate && key == other.key;
}

Endpoint Endpoint::FromArguments(const WideString& protocol, const WideString& host, std::uint16_t port,
                                 const WideString& proxy) {
  Endpoint endpoint;
  endpoint.secure = IsSecure(protocol.view());
  endpoint.host = CheckedHost(host.view());
  endpoint.port = port;
  endpoint.proxy = ProxyAddress(proxy.view());
  return endpoint;
}

bool Endpoint::operator==(const Endpoint& other) const noexcept {
  return secure == other.secure && port == other.port && host == other.host && proxy == other.proxy &&
         tls == other.tls;
}

std::string Endpoint::Origin() const {
  return (secure ? "https://" : "http://") + host + ":" + std::to_string(port);
}

std::string Endpoint::HostHeader() const {
  const std::uint16_t own = secure ? 443 : 80;
  return port == own ? host : host + ":" + std::to_string(port);
}

}  // namespace qv
