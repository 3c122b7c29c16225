// A TLS server on 127.0.0.1 that makes its own certificate and serves one connection after the other.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace qv::test {

// A private key in PEM that needs a password.
std::string LockedKey();

class TlsServer {
 public:
  // `name` is what the certificate is for: an address such as "127.0.0.1" or a DNS name. Throws
  // std::runtime_error.
  explicit TlsServer(const std::string& name = "127.0.0.1");
  ~TlsServer();
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;

  std::uint16_t Port() const;
  // A file with the certificate, for SSL_CERT_FILE, and one with its key; removed at the end.
  const std::string& CertificateFile() const;
  const std::string& KeyFile() const;
  // From now on only clients that show the server's own certificate are served.
  void WantCertificate();
  // What each further request is answered with, in order. A request without an answer closes the connection.
  void Answer(const std::string& bytes);
  // The connection closes after the last answer, without TLS's close notification.
  void SayNoFarewell();
  std::string Received() const;
  // Connections whose handshake succeeded.
  int Connections() const;

 private:
  class Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace qv::test
