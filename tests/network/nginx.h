// A running nginx on loopback, for one test: it serves files, takes files, and hands requests on to another
// server, over TLS or plainly.
//
//   GET /files/NAME   the file NAME of Folder(), with a Content-Disposition that names it
//   POST /take        puts the body into a file of Taken() and answers "taken"
//   anything else     goes to the other server, if there is one
#pragma once

#include <cstdint>
#include <string>

#include "child_process.h"
#include "fixtures/certificates.h"
#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"

namespace qv::test {

class Nginx {
 public:
  // Plain http when `certificate` is null. `other` is the port of the other server, 0 without one. Throws
  // std::runtime_error.
  explicit Nginx(const CertificateFiles* certificate = nullptr, std::uint16_t other = 0);

  std::uint16_t Port() const { return server_.Port(); }
  // "https://127.0.0.1:4430"
  std::string Url() const;
  void Offer(const std::string& name, const std::string& content) const;
  // The content of the only file that was taken; "(N files)" when it is not one.
  std::string Taken() const;
  // The request lines that have been answered, one per line. Waits for `count`.
  std::string Requests(std::size_t count) const;

 private:
  Words Command(std::uint16_t port, const CertificateFiles* certificate, std::uint16_t other) const;
  std::string Places(std::uint16_t port, bool secure, std::uint16_t other) const;

  TemporaryDirectory files_;
  bool secure_;
  ServerProcess server_;
};

// One over TLS.
class SecureNginx {
 public:
  explicit SecureNginx(CertificateKind kind = CertificateKind::kGood, std::uint16_t other = 0)
      : files_(certificates_.Make(kind)), nginx_(&files_, other) {}

  // From now on this process trusts the authority of its certificate, until the end of this object.
  void Trust() const { store_.Set(certificates_.Authority().c_str()); }
  const Nginx* operator->() const { return &nginx_; }

 private:
  Certificates certificates_;
  CertificateFiles files_;
  EnvironmentVariable store_{"SSL_CERT_FILE", nullptr};
  Nginx nginx_;
};

}  // namespace qv::test
