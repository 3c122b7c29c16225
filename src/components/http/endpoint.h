// Whom a session talks to.
#pragma once

#include <cstdint>
#include <string>

#include "qvscriptwells/http_component.h"

namespace qv {

// PEM files as the system names them; empty for none.
struct TlsFiles {
  std::string authority;
  std::string certificate;
  std::string key;

  // Throws HttpFailure (E_INVALIDARG) for a path with a NUL and for a key without a certificate.
  static TlsFiles FromOptions(const HttpOptions& options);
  bool operator==(const TlsFiles& other) const noexcept;
};

struct Endpoint {
  bool secure = false;
  std::string host;  // as a URL holds it
  std::uint16_t port = 0;
  std::string proxy;  // empty, or "name:port"
  TlsFiles tls;       // none when not secure

  // Checks and takes the arguments of IHttpSession::Open. Throws HttpFailure (E_INVALIDARG) for another
  // protocol and for a host or proxy that is no plain name or address.
  static Endpoint FromArguments(const WideString& protocol, const WideString& host, std::uint16_t port,
                                const WideString& proxy);

  // A connection to one serves requests to the other: the same place, trusted for the same reason.
  bool operator==(const Endpoint& other) const noexcept;
  bool UsesPlainProxy() const noexcept { return !secure && !proxy.empty(); }
  // "http://host:port".
  std::string Origin() const;
  // What stands in a `Host` header: the port only when it is not the protocol's own.
  std::string HostHeader() const;
};

}  // namespace qv
