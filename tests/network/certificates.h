// Certificates made on the spot by the openssl program, and their authority, which nobody trusts by default.
#pragma once

#include <string>

#include "fixtures/temporary_directory.h"

namespace qv::test {

enum class CertificateKind {
  kGood,       // for 127.0.0.1 and localhost
  kWrongName,  // for other.example
  kExpired,    // for 127.0.0.1, since yesterday
  kSelfSigned  // for 127.0.0.1, signed by itself
};

struct CertificateFiles {
  std::string certificate;
  std::string key;
};

class Certificates {
 public:
  // Throws std::runtime_error with openssl's message.
  Certificates();

  // The authority's own, for SSL_CERT_FILE.
  const std::string& Authority() const { return authority_.certificate; }
  CertificateFiles Make(CertificateKind kind) const;

 private:
  CertificateFiles Files(const std::string& name) const;
  CertificateFiles MakeRoot(const std::string& name, const std::string& alternativeNames) const;
  CertificateFiles MakeSigned(const std::string& name, const std::string& alternativeNames,
                              const std::string& days) const;

  TemporaryDirectory files_;
  CertificateFiles authority_;
};

}  // namespace qv::test
