// The server and proxy of a session.
#pragma once

#include <cstdint>
#include <string>

#include "qvscriptwells/http_component.h"

namespace qv {

// Paths of PEM files in the system's form; empty for none.
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
  std::string host;  // in the form of a URL
  std::uint16_t port = 0;
  std::string proxy;  // empty, or "name:port"
  TlsFiles tls;       // none when not secure

  // Validates the arguments of IHttpSession::Open. Throws HttpFailure (E_INVALIDARG) for another protocol and
  // for a host or proxy that is not a plain name or address.
  static Endpoint FromArguments(const WideString& protocol, const WideString& host, std::uint16_t port,
                                const WideString& proxy);

  // Equal endpoints can share connections: same address, same TLS files.
  bool operator==(const Endpoint& other) const noexcept;
  bool UsesPlainProxy() const noexcept { return !secure && !proxy.empty(); }
  // "http://host:port".
  std::string Origin() const;
  // The value of a `Host` header: with the port only if it is not the protocol's default.
  std::string HostHeader() const;
};

}  // namespace qv
