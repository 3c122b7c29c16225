#include "tls_server.h"

#include <netinet/in.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/ssl.h>
#include <openssl/x509v3.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdlib>
#include <deque>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace qv::test {
namespace {

struct KeyCloser {
  void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};
struct CertificateCloser {
  void operator()(X509* certificate) const { X509_free(certificate); }
};
struct ContextCloser {
  void operator()(SSL_CTX* context) const { SSL_CTX_free(context); }
};
struct SslCloser {
  void operator()(SSL* ssl) const { SSL_free(ssl); }
};
using Key = std::unique_ptr<EVP_PKEY, KeyCloser>;
using Certificate = std::unique_ptr<X509, CertificateCloser>;
using Context = std::unique_ptr<SSL_CTX, ContextCloser>;
using Ssl = std::unique_ptr<SSL, SslCloser>;

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
  X509_EXTENSION* extension =
      X509V3_EXT_conf_nid(nullptr, nullptr, NID_subject_alt_name, alternative.c_str());
  X509_add_ext(x, extension, -1);
  X509_EXTENSION_free(extension);
  if (X509_sign(x, key, EVP_sha256()) == 0) throw std::runtime_error("TlsServer cannot sign");
  return certificate;
}

std::string WriteCertificate(X509* certificate) {
  char name[] = "/tmp/tls_server.XXXXXX";
  const int descriptor = mkstemp(name);
  FILE* file = descriptor < 0 ? nullptr : fdopen(descriptor, "w");
  if (file == nullptr) throw std::runtime_error("TlsServer cannot write");
  PEM_write_X509(file, certificate);
  fclose(file);
  return name;
}

std::string WriteKey(EVP_PKEY* key) {
  char name[] = "/tmp/tls_server.XXXXXX";
  const int descriptor = mkstemp(name);
  FILE* file = descriptor < 0 ? nullptr : fdopen(descriptor, "w");
  if (file == nullptr) throw std::runtime_error("TlsServer cannot write");
  PEM_write_PrivateKey(file, key, nullptr, nullptr, 0, nullptr, nullptr);
  fclose(file);
  return name;
}

int Listen(std::uint16_t* port) {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  sockaddr* plain = reinterpret_cast<sockaddr*>(&address);
  if (listener < 0 || bind(listener, plain, size) != 0 || listen(listener, 8) != 0 ||
      getsockname(listener, plain, &size) != 0)
    throw std::runtime_error("TlsServer cannot listen");
  *port = ntohs(address.sin_port);
  return listener;
}

}  // namespace

class TlsServer::Impl {
 public:
  explicit Impl(const std::string& name)
      : key_(EVP_EC_gen("P-256")),
        certificate_(MakeCertificate(key_.get(), name)),
        context_(SSL_CTX_new(TLS_server_method())),
        file_(WriteCertificate(certificate_.get())),
        keyFile_(WriteKey(key_.get())),
        listener_(Listen(&port_)) {
    SSL_CTX_use_certificate(context_.get(), certificate_.get());
    SSL_CTX_use_PrivateKey(context_.get(), key_.get());
    thread_ = std::thread([this] { Run(); });
  }
  ~Impl() {
    ending_ = true;
    thread_.join();
    close(listener_);
    unlink(file_.c_str());
    unlink(keyFile_.c_str());
  }

  std::uint16_t port_ = 0;
  Key key_;
  Certificate certificate_;
  Context context_;
  std::string file_;
  std::string keyFile_;
  int listener_;
  std::atomic<bool> ending_{false};
  std::atomic<bool> politely_{true};
  std::atomic<bool> wantsCertificate_{false};
  std::atomic<int> connections_{0};
  mutable std::mutex mutex_;
  std::deque<std::string> answers_;
  std::string received_;

 private:
  bool WaitReadable(int socket) const {
    while (!ending_) {
      pollfd entry{socket, POLLIN, 0};
      if (poll(&entry, 1, 20) > 0) return true;
    }
    return false;
  }

  void Run() {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, SIGPIPE);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    while (WaitReadable(listener_)) {
      const int socket = accept4(listener_, nullptr, nullptr, SOCK_CLOEXEC);
      if (socket < 0) continue;
      Serve(socket);
      close(socket);
    }
  }

  void Serve(int socket) {
    const Ssl ssl(SSL_new(context_.get()));
    SSL_set_fd(ssl.get(), socket);
    if (wantsCertificate_) {
      SSL_set_verify(ssl.get(), SSL_VERIFY_PEER | SSL_VERIFY_FAIL_IF_NO_PEER_CERT, nullptr);
      SSL_set0_verify_cert_store(ssl.get(), OwnStore());
    }
    if (SSL_accept(ssl.get()) != 1) return Drain(socket);
    ++connections_;
    while (ReadRequest(ssl.get(), socket) && WriteAnswer(ssl.get())) {
    }
    if (politely_) SSL_shutdown(ssl.get());
  }

  // What was not read would make the close a reset, and the client would not hear why it was refused.
  void Drain(int socket) const {
    shutdown(socket, SHUT_WR);
    char buffer[4096];
    while (WaitReadable(socket) && recv(socket, buffer, sizeof(buffer), 0) > 0) {
    }
  }

  X509_STORE* OwnStore() const {
    X509_STORE* store = X509_STORE_new();
    X509_STORE_add_cert(store, certificate_.get());
    return store;
  }

  bool ReadRequest(SSL* ssl, int socket) {
    std::string request;
    while (request.find("\r\n\r\nquestion") == std::string::npos) {
      char buffer[4096];
      if (SSL_pending(ssl) == 0 && !WaitReadable(socket)) return false;
      const int got = SSL_read(ssl, buffer, sizeof(buffer));
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

  std::thread thread_;
};

TlsServer::TlsServer(const std::string& name) : impl_(std::make_unique<Impl>(name)) {}
TlsServer::~TlsServer() = default;

std::uint16_t TlsServer::Port() const {
  return impl_->port_;
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
