#include "tls_server.h"

#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <sys/socket.h>

#include <atomic>
#include <csignal>
#include <deque>
#include <functional>
#include <mutex>
#include <stdexcept>

#include "fixtures/loopback_server.h"
#include "fixtures/temporary_directory.h"

namespace qv::test {
namespace {

template <auto Close>
struct Closer {
  template <class T>
  void operator()(T* object) const {
    Close(object);
  }
};
using Key = std::unique_ptr<EVP_PKEY, Closer<EVP_PKEY_free>>;
using Certificate = std::unique_ptr<X509, Closer<X509_free>>;
using Extension = std::unique_ptr<X509_EXTENSION, Closer<X509_EXTENSION_free>>;
using Context = std::unique_ptr<SSL_CTX, Closer<SSL_CTX_free>>;
using Ssl = std::unique_ptr<SSL, Closer<SSL_free>>;

Key NewKey() {
  return Key(EVP_EC_gen("P-256"));
}

Certificate MakeCertificate(EVP_PKEY* key, const std::string& name) {
  Certificate certificate(X509_new());
  X509* x = certificate.get();
  X509_set_version(x, 2);
  ASN1_INTEGER_set(X509_get_serialNumber(x), 1);
  X509_gmtime_adj(X509_getm_notBefore(x), -60);
  X509_gmtime_adj(X509_getm_notAfter(x), 3600);
  X509_set_pubkey(x, key);
  X509_NAME* subject = X509_get_subject_name(x);
  const auto* text = reinterpret_cast<const unsigned char*>("raw test server");
  X509_NAME_add_entry_by_txt(subject, "CN", MBSTRING_ASC, text, -1, -1, 0);
  X509_set_issuer_name(x, subject);
  const bool isAddress = name.find_first_not_of("0123456789.") == std::string::npos;
  const std::string alternative = (isAddress ? "IP:" : "DNS:") + name;
  const Extension extension(X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, alternative.c_str()));
  X509_add_ext(x, extension.get(), -1);
  if (X509_sign(x, key, EVP_sha256()) == 0) throw std::runtime_error("TlsServer cannot sign");
  return certificate;
}

// What `write` writes.
std::string Pem(const std::function<int(BIO*)>& write) {
  const std::unique_ptr<BIO, Closer<BIO_free>> memory(BIO_new(BIO_s_mem()));
  if (write(memory.get()) == 0) throw std::runtime_error("TlsServer cannot write");
  char* bytes = nullptr;
  const long size = BIO_get_mem_data(memory.get(), &bytes);
  return {bytes, static_cast<std::size_t>(size)};
}

std::string KeyText(EVP_PKEY* key) {
  return Pem(
      [key](BIO* bio) { return PEM_write_bio_PrivateKey(bio, key, nullptr, nullptr, 0, nullptr, nullptr); });
}

// Writing to a connection that the client has closed is an error, not the end of the process.
void IgnorePipeSignal() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGPIPE);
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
}

}  // namespace

std::string LockedKey() {
  const Key key = NewKey();
  const unsigned char password[] = "secret";
  return Pem([&](BIO* bio) {
    return PEM_write_bio_PrivateKey(bio, key.get(), EVP_aes_128_cbc(), password, 6, nullptr, nullptr);
  });
}

class TlsServer::Impl {
 public:
  explicit Impl(const std::string& name)
      : key_(NewKey()),
        certificate_(MakeCertificate(key_.get(), name)),
        context_(SSL_CTX_new(TLS_server_method())),
        file_(files_.Write("certificate.pem",
                           Pem([&](BIO* bio) { return PEM_write_bio_X509(bio, certificate_.get()); }))),
        keyFile_(files_.Write("key.pem", KeyText(key_.get()))),
        server_([this] { return [this](LoopbackConnection& connection) { Serve(connection); }; }) {
    SSL_CTX_use_certificate(context_.get(), certificate_.get());
    SSL_CTX_use_PrivateKey(context_.get(), key_.get());
  }

  Key key_;
  Certificate certificate_;
  Context context_;
  TemporaryDirectory files_;
  std::string file_;
  std::string keyFile_;
  std::atomic<bool> politely_{true};
  std::atomic<bool> wantsCertificate_{false};
  std::atomic<int> connections_{0};
  mutable std::mutex mutex_;
  std::deque<std::string> answers_;
  std::string received_;

 private:
  void Serve(LoopbackConnection& connection) {
    const std::lock_guard<std::mutex> turn(turn_);
    IgnorePipeSignal();
    const Ssl ssl(SSL_new(context_.get()));
    SSL_set_fd(ssl.get(), connection.Socket());
    if (wantsCertificate_) {
      SSL_set_verify(ssl.get(), SSL_VERIFY_PEER | SSL_VERIFY_FAIL_IF_NO_PEER_CERT, nullptr);
      SSL_set0_verify_cert_store(ssl.get(), OwnStore());
    }
    if (!connection.WaitReadable()) return;
    if (SSL_accept(ssl.get()) != 1) return Drain(connection);
    ++connections_;
    while (ReadRequest(ssl.get(), connection) && WriteAnswer(ssl.get())) {
    }
    if (politely_) SSL_shutdown(ssl.get());
  }

  // Unread bytes would make the close a reset, and the client would not learn why it was refused.
  static void Drain(const LoopbackConnection& connection) {
    shutdown(connection.Socket(), SHUT_WR);
    for (std::string unread; connection.Read(&unread);) {
    }
  }

  X509_STORE* OwnStore() const {
    X509_STORE* store = X509_STORE_new();
    X509_STORE_add_cert(store, certificate_.get());
    return store;
  }

  bool ReadRequest(SSL* ssl, const LoopbackConnection& connection) {
    std::string request;
    while (request.find("\r\n\r\nquestion") == std::string::npos) {
      char buffer[4096];
      if (SSL_pending(ssl) == 0 && !connection.WaitReadable()) return false;
      const int got = SSL_read(ssl, buffer, sizeof buffer);
      if (got <= 0) return false;
      request.append(buffer, static_cast<std::size_t>(got));
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    received_ += request;
    return true;
  }

  bool WriteAnswer(SSL* ssl) {
    std::string answer;
    bool more = false;
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      if (answers_.empty()) return false;
      answer = answers_.front();
      answers_.pop_front();
      more = !answers_.empty();
    }
    return SSL_write(ssl, answer.data(), static_cast<int>(answer.size())) > 0 && (more || politely_);
  }

  std::mutex turn_;        // of the connection that is served
  LoopbackServer server_;  // last, since its threads use all the others

 public:
  std::uint16_t Port() const { return server_.Port(); }
};

TlsServer::TlsServer(const std::string& name) : impl_(std::make_unique<Impl>(name)) {}
TlsServer::~TlsServer() = default;

std::uint16_t TlsServer::Port() const {
  return impl_->Port();
}
const std::string& TlsServer::CertificateFile() const {
  return impl_->file_;
}
const std::string& TlsServer::KeyFile() const {
  return impl_->keyFile_;
}
void TlsServer::WantCertificate() {
  impl_->wantsCertificate_ = true;
}
void TlsServer::SayNoFarewell() {
  impl_->politely_ = false;
}
int TlsServer::Connections() const {
  return impl_->connections_;
}

void TlsServer::Answer(const std::string& bytes) {
  const std::lock_guard<std::mutex> lock(impl_->mutex_);
  impl_->answers_.push_back(bytes);
}

std::string TlsServer::Received() const {
  const std::lock_guard<std::mutex> lock(impl_->mutex_);
  return impl_->received_;
}

}  // namespace qv::test
