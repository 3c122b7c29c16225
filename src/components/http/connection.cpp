#include "components/http/connection.h"

#include <fcntl.h>
#include <langinfo.h>
#include <locale.h>  // NOLINT(modernize-deprecated-headers): uselocale is POSIX
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <new>
#include <string>
#include <utility>

#include "components/http/http_error.h"
#include "components/http/sigpipe_guard.h"

namespace qv {
namespace {

constexpr std::size_t kBufferBytes = std::size_t{64} * 1024;
constexpr int kTickMilliseconds = 250;  // how long a wait goes on before the listener and Abort are looked at

// Tried again after a failure, such as a lack of memory.
void StartCurlOnce() {
  static std::mutex mutex;
  static bool started = false;
  const std::lock_guard<std::mutex> lock(mutex);
  if (started) return;
  const CURLcode result = curl_global_init(CURL_GLOBAL_DEFAULT);
  if (result != CURLE_OK) ThrowCurl(result);
  started = true;
}

CurlEasy NewHandle() {
  StartCurlOnce();
  CurlEasy handle(curl_easy_init());
  if (handle == nullptr) throw std::bad_alloc();
  return handle;
}

curl_socket_t OpenSocket(void*, curlsocktype, curl_sockaddr* address) {
  return socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

int OnConnecting(void* watch, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return watch == nullptr || static_cast<TransferWatch*>(watch)->MayGoOn() ? 0 : 1;
}

long LastError(CURL* handle) noexcept {
  long error = 0;
  curl_easy_getinfo(handle, CURLINFO_OS_ERRNO, &error);
  return error;
}

bool HasReachedServer(CURL* handle) noexcept {
  long port = 0;
  return curl_easy_getinfo(handle, CURLINFO_LOCAL_PORT, &port) == CURLE_OK && port > 0;
}

void SetText(CURL* handle, CURLoption option, const char* text) {
  if (curl_easy_setopt(handle, option, text) != CURLE_OK) throw std::bad_alloc();
}

const char* Variable(const char* name) noexcept {
  const char* text = std::getenv(name);
  return text != nullptr && *text != '\0' ? text : nullptr;
}

// The variables that curl's own program reads; libcurl by itself does not.
void SetUsualAuthorities(CURL* handle) {
  const char* bundle = Variable("CURL_CA_BUNDLE");
  const char* file = bundle != nullptr ? bundle : Variable("SSL_CERT_FILE");
  const char* directory = Variable("SSL_CERT_DIR");
  if (file != nullptr) SetText(handle, CURLOPT_CAINFO, file);
  if (directory != nullptr) SetText(handle, CURLOPT_CAPATH, directory);
}

void SetOnlyAuthority(CURL* handle, const char* file) {
  SetText(handle, CURLOPT_CAINFO, file);
  SetText(handle, CURLOPT_CAPATH, nullptr);  // else the system's would be trusted beside it
}

// An empty password, since the TLS library would ask for one on the terminal.
void SetIdentity(CURL* handle, const TlsFiles& files) {
  SetText(handle, CURLOPT_SSLCERT, files.certificate.c_str());
  if (!files.key.empty()) SetText(handle, CURLOPT_SSLKEY, files.key.c_str());
  SetText(handle, CURLOPT_KEYPASSWD, "");
}

struct LocaleCloser {
  using pointer = locale_t;
  void operator()(locale_t locale) const noexcept { freelocale(locale); }
};

// libcurl reads a name beyond ASCII in the thread's character set, whatever the host has chosen; ours is
// UTF-8.
class Utf8Names {
 public:
  explicit Utf8Names(bool needed) noexcept
      : locale_(needed ? newlocale(LC_CTYPE_MASK, "C.UTF-8", locale_t()) : locale_t()),
        before_(locale_ ? uselocale(locale_.get()) : locale_t()) {}
  ~Utf8Names() {
    if (locale_) uselocale(before_);
  }
  Utf8Names(const Utf8Names&) = delete;
  Utf8Names& operator=(const Utf8Names&) = delete;

 private:
  std::unique_ptr<locale_t, LocaleCloser> locale_;
  locale_t before_;
};

bool IsAscii(const std::string& text) noexcept {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

Connection::Connection(const Endpoint& endpoint, TransferWatch& watch)
    : endpoint_(endpoint), handle_(NewHandle()), owner_(getpid()), buffer_(new char[kBufferBytes]) {
  SetOptions(watch);
  Perform(watch);
  curl_easy_setopt(handle_.get(), CURLOPT_XFERINFODATA, nullptr);
  const CURLcode code = curl_easy_getinfo(handle_.get(), CURLINFO_ACTIVESOCKET, &socket_);
  if (code != CURLE_OK || socket_ < 0) ThrowCurl(CURLE_COULDNT_CONNECT, words_);
}

Connection::Connection(const Endpoint& endpoint, std::unique_ptr<WireLine> line)
    : endpoint_(endpoint), line_(std::move(line)), owner_(getpid()), buffer_(new char[kBufferBytes]) {}

Connection::~Connection() {
  ClearBuffer();
  if (owner_ != getpid()) DetachFromParent();
  const SigpipeGuard guard(endpoint_.secure);
  handle_.reset();
}

// A plain request to a proxy is a connection to the proxy; only a tunnel is libcurl's matter.
void Connection::SetOptions(TransferWatch& watch) {
  CURL* handle = handle_.get();
  const std::string url = endpoint_.UsesPlainProxy() ? "http://" + endpoint_.proxy : endpoint_.Origin();
  const std::string tunnel = endpoint_.UsesPlainProxy() ? std::string() : endpoint_.proxy;
  SetText(handle, CURLOPT_URL, url.c_str());
  SetText(handle, CURLOPT_PROXY, tunnel.c_str());
  curl_easy_setopt(handle, CURLOPT_PROXYTYPE, static_cast<long>(CURLPROXY_HTTP));
  curl_easy_setopt(handle, CURLOPT_NOPROXY, "");
  curl_easy_setopt(handle, CURLOPT_HTTPPROXYTUNNEL, 1L);
  curl_easy_setopt(handle, CURLOPT_CONNECT_ONLY, 1L);
  curl_easy_setopt(handle, CURLOPT_PROTOCOLS_STR, "http,https");
  curl_easy_setopt(handle, CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  curl_easy_setopt(handle, CURLOPT_ERRORBUFFER, words_);
  curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
  curl_easy_setopt(handle, CURLOPT_TCP_NODELAY, 1L);
  curl_easy_setopt(handle, CURLOPT_BUFFERSIZE, static_cast<long>(kBufferBytes));
  curl_easy_setopt(handle, CURLOPT_OPENSOCKETFUNCTION, &OpenSocket);
  curl_easy_setopt(handle, CURLOPT_NOPROGRESS, 0L);
  curl_easy_setopt(handle, CURLOPT_XFERINFOFUNCTION, &OnConnecting);
  curl_easy_setopt(handle, CURLOPT_XFERINFODATA, &watch);
  if (endpoint_.secure) SetTrust();
}

void Connection::SetTrust() {
  CURL* handle = handle_.get();
  curl_easy_setopt(handle, CURLOPT_SSL_VERIFYPEER, 1L);
  curl_easy_setopt(handle, CURLOPT_SSL_VERIFYHOST, 2L);
  curl_easy_setopt(handle, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  if (endpoint_.tls.authority.empty())
    SetUsualAuthorities(handle);
  else
    SetOnlyAuthority(handle, endpoint_.tls.authority.c_str());
  if (!endpoint_.tls.certificate.empty()) SetIdentity(handle, endpoint_.tls);
}

void Connection::Perform(const TransferWatch& watch) {
  const SigpipeGuard guard(endpoint_.secure);
  const Utf8Names names(!IsAscii(endpoint_.host) || !IsAscii(endpoint_.proxy));
  const TransferWatch::Clock::time_point start = TransferWatch::Clock::now();
  CURLcode code = CURLE_OK;
  do {  // libcurl takes a signal for a refusal
    const std::int64_t time =
        std::min<std::int64_t>(watch.ConnectTime(start), INT_MAX);  // its 0 is five minutes
    curl_easy_setopt(handle_.get(), CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(time));
    code = curl_easy_perform(handle_.get());
  } while (code == CURLE_COULDNT_CONNECT && LastError(handle_.get()) == EINTR);
  if (code == CURLE_OK) return;
  WireTap* const tap = ThreadWireTap();
  if (tap != nullptr && endpoint_.secure && endpoint_.proxy.empty() && HasReachedServer(handle_.get()))
    tap->OnHandshakeFailed();
  ThrowCurl(code, words_);
}

// In a forked child the socket is the parent's too: what libcurl says in farewell must not reach the server.
void Connection::DetachFromParent() noexcept {
  const int nowhere = open("/dev/null", O_RDWR | O_CLOEXEC);
  const bool replaced = nowhere >= 0 && socket_ >= 0 && dup3(nowhere, socket_, O_CLOEXEC) >= 0;
  if (nowhere >= 0) close(nowhere);
  if (!replaced) static_cast<void>(handle_.release());
}

bool Connection::IsAlive() noexcept {
  if (owner_ != getpid() || begin_ != end_) return false;
  const SigpipeGuard guard(endpoint_.secure);
  char byte = 0;
  std::size_t received = 0;
  return curl_easy_recv(handle_.get(), &byte, 1, &received) == CURLE_AGAIN;
}

std::size_t Connection::Send(std::string_view bytes) {
  if (line_ != nullptr) {
    line_->Send(bytes);
    return bytes.size();
  }
  const SigpipeGuard guard(endpoint_.secure);
  std::size_t sent = 0;
  const CURLcode code = curl_easy_send(handle_.get(), bytes.data(), bytes.size(), &sent);
  if (code == CURLE_AGAIN) return 0;
  if (code != CURLE_OK) ThrowCurl(code, words_);
  return sent;
}

CURLcode Connection::ReceiveInto(char* bytes, std::size_t room, std::size_t* received) {
  if (line_ != nullptr) {
    *received = line_->Receive(bytes, room);
    return CURLE_OK;
  }
  const SigpipeGuard guard(endpoint_.secure);
  return curl_easy_recv(handle_.get(), bytes, room, received);
}

Connection::Arrival Connection::Receive() {
  if (begin_ == end_) begin_ = end_ = 0;
  const std::size_t room = kBufferBytes - end_;
  std::size_t received = 0;
  const CURLcode code = ReceiveInto(buffer_.get() + end_, room, &received);
  filledUp_ = code == CURLE_OK && received == room;
  if (code == CURLE_AGAIN) return Arrival::kNothingYet;
  if (code != CURLE_OK) ThrowCurl(code, words_);
  end_ += received;
  filled_ = std::max(filled_, end_);
  return received == 0 ? Arrival::kClosed : Arrival::kBytes;
}

short Connection::Wait(short events, TransferWatch& watch) {
  if (line_ != nullptr) return events;
  using Clock = TransferWatch::Clock;
  const Clock::time_point start = Clock::now();
  for (Clock::time_point before = start;; before = Clock::now()) {
    pollfd entry{socket_, events, 0};
    const int ready = poll(&entry, 1, static_cast<int>(watch.NextWait(start, kTickMilliseconds)));
    const int error = errno;
    watch.Rate().Wait(Clock::now() - before);
    if (ready > 0) return entry.revents;
    if (ready < 0 && error != EINTR) ThrowCurl(CURLE_RECV_ERROR);
    watch.Tick();
  }
}

std::string_view Connection::Buffered() const noexcept {
  return {buffer_.get() + begin_, end_ - begin_};
}

void Connection::Take(std::size_t bytes) noexcept {
  begin_ += std::min(bytes, end_ - begin_);
}

void Connection::ClearBuffer() noexcept {
  explicit_bzero(buffer_.get(), filled_);
  begin_ = end_ = filled_ = 0;
}

}  // namespace qv
