#include "certificates.h"

#include <stdexcept>

#include "child_process.h"

namespace qv::test {
namespace {

constexpr int kSeconds = 20;
constexpr char kLoopback[] = "IP:127.0.0.1,DNS:localhost";

void Openssl(Words words, const TemporaryDirectory& files) {
  words.insert(words.begin(), "openssl");
  ChildProcess program(words, files.Path("said"));
  if (program.Finish(kSeconds) != 0) throw std::runtime_error("openssl: " + files.Read("said"));
}

// A new key and something signed with it.
Words Request(const CertificateFiles& made, const std::string& out, const std::string& alternativeNames) {
  Words words{"req",
              "-newkey",
              "ec",
              "-pkeyopt",
              "ec_paramgen_curve:prime256v1",
              "-nodes",
              "-subj",
              "/CN=Scriptwells test",
              "-keyout",
              made.key,
              "-out",
              out};
  if (!alternativeNames.empty()) words.insert(words.end(), {"-addext", "subjectAltName=" + alternativeNames});
  return words;
}

}  // namespace

Certificates::Certificates() : authority_(MakeRoot("authority", "")) {}

CertificateFiles Certificates::Files(const std::string& name) const {
  return {files_.Path(name + ".pem"), files_.Path(name + ".key")};
}

CertificateFiles Certificates::MakeRoot(const std::string& name, const std::string& alternativeNames) const {
  const CertificateFiles made = Files(name);
  Words words = Request(made, made.certificate, alternativeNames);
  words.insert(words.end(), {"-x509", "-days", "2"});
  Openssl(words, files_);
  return made;
}

CertificateFiles Certificates::MakeSigned(const std::string& name, const std::string& alternativeNames,
                                          const std::string& days) const {
  const CertificateFiles made = Files(name);
  const std::string request = files_.Path(name + ".csr");
  Openssl(Request(made, request, alternativeNames), files_);
  Openssl({"x509", "-req", "-in", request, "-out", made.certificate, "-days", days, "-CA",
           authority_.certificate, "-CAkey", authority_.key, "-CAcreateserial", "-copy_extensions", "copy"},
          files_);
  return made;
}

CertificateFiles Certificates::Make(CertificateKind kind) const {
  switch (kind) {
    case CertificateKind::kGood:
      return MakeSigned("good", kLoopback, "2");
    case CertificateKind::kWrongName:
      return MakeSigned("other", "DNS:other.example", "2");
    case CertificateKind::kExpired:
      return MakeSigned("expired", kLoopback, "-1");
    case CertificateKind::kSelfSigned:
      return MakeRoot("selfsigned", kLoopback);
  }
  throw std::runtime_error("no such kind of certificate");
}

}  // namespace qv::test
