#include "components/http/http_session.h"

#include <atomic>
#include <memory>
#include <utility>

#include "com/guarded.h"
#include "components/http/connection_pool.h"
#include "components/http/http_error.h"
#include "components/http/http_request.h"
#include "components/http/http_syntax.h"
#include "components/http/thread_options.h"
#include "components/http/wire_tap.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

void Check(const HttpOptions& options) {
  if (options.connectTimeout < 0 || options.idleTimeout < 0 || options.maxBodyBytes < 0 ||
      options.maxHeadBytes < 0 || options.totalTimeout < 0 || options.minBytesPerSecond < 0 ||
      options.rateWindow < 0)
    ThrowBadArgument("A limit is negative");
}

void CheckVerb(std::u16string_view verb) {
  if (!IsToken(verb)) ThrowBadArgument("The verb is no word of HTTP");
  if (verb == u"CONNECT") ThrowBadArgument("The verb CONNECT makes no request");
}

HRESULT ReportFailure() noexcept {
  return TappedFailure(ReportCurrentException(IHttpSession::kIid));
}
HRESULT ReportOptionsFailure() noexcept {
  return ReportCurrentException(IHttpOptions::kIid);
}

// The proxy to use.
WideString AnnounceOpening(const WideString& protocol, const WideString& host, std::uint16_t port,
                           WideString proxy) {
  WireTap* const tap = ThreadWireTap();
  if (tap != nullptr && !tap->OnOpen(protocol, host, port, &proxy)) ThrowCurl(CURLE_ABORTED_BY_CALLBACK);
  return proxy;
}

std::unique_ptr<WireLine> LineOfTap() {
  WireTap* const tap = ThreadWireTap();
  return tap == nullptr ? nullptr : tap->NewLine();
}

void AnnounceConnection(bool isKept) {
  if (WireTap* const tap = ThreadWireTap()) tap->OnConnected(isKept);
}

}  // namespace

HttpSession::HttpSession() {
  if (WireTap* const tap = ThreadWireTap()) {
    tap->SetUp(&options_, &progress_);
    return;
  }
  ThreadHttpOptions given = CurrentThreadHttpOptions();
  options_ = given.options;
  progress_ = std::move(given.progress);
}

HttpSession::~HttpSession() {
  Keep(std::move(connection_));
}

HRESULT HttpSession::Open(const WideString& protocol, const WideString& host, std::uint16_t port,
                          const WideString&, const WideString&, const WideString& proxy) noexcept {
  return GuardedBy(ReportFailure, [&] {
    const HttpSessionPtr keepAlive(this);
    const WideString used = AnnounceOpening(protocol, host, port, proxy);
    CheckedOpen(Endpoint::FromArguments(protocol, host, port, used));
  });
}

void HttpSession::CheckedOpen(Endpoint endpoint) {
  if (open_ || connecting_) ThrowWrongState("The session is open already");
  const HttpOptions options = options_;
  const IHttpProgressPtr progress = progress_;
  const std::atomic<bool> notAborted{false};
  TransferWatch watch(options, progress.get(), notAborted);
  endpoint_ = std::move(endpoint);
  if (endpoint_.secure) endpoint_.tls = TlsFiles::FromOptions(options);
  Connect(watch);
  connectingTook_ = watch.Passed();
  open_ = true;
  ++opening_;
}

// The listener is called in here, and may call anything.
void HttpSession::Connect(TransferWatch& watch) {
  if (std::unique_ptr<WireLine> line = LineOfTap()) {
    connection_ = std::make_unique<Connection>(endpoint_, std::move(line));
    return AnnounceConnection(false);
  }
  ConnectionPool* pool = ConnectionPool::OfThisThread();
  if (pool != nullptr) connection_ = pool->Take(endpoint_);
  if (connection_ != nullptr) return AnnounceConnection(true);
  connecting_ = true;
  try {
    connection_ = std::make_unique<Connection>(endpoint_, watch);
    connecting_ = false;
  } catch (...) {
    connecting_ = false;
    throw;
  }
  AnnounceConnection(false);
}

HRESULT HttpSession::Close() noexcept {
  return GuardedBy(ReportFailure, [&] {
    const HttpSessionPtr keepAlive(this);
    CheckedClose();
  });
}

void HttpSession::CheckedClose() {
  if (connecting_ || (borrower_ != nullptr && borrower_->IsBusy()))
    ThrowWrongState("The session is in the middle of an operation");
  open_ = false;
  if (borrower_ != nullptr) borrower_->End();
  Keep(std::move(connection_));
  if (WireTap* const tap = ThreadWireTap()) tap->OnClose();
}

HRESULT HttpSession::OpenRequest(const WideString& verb, const WideString& path, const WideString&,
                                 std::uint32_t flags, IHttpRequest** request) noexcept {
  return GuardedBy(ReportFailure, request, [&] {
    *request = nullptr;
    if (!open_) ThrowWrongState("The session is not open");
    if (flags != 0) ThrowBadArgument("Flags of a request are 0");
    CheckVerb(verb.view());
    IHttpRequestPtr opened(
        // NOLINTNEXTLINE(bugprone-unhandled-exception-at-new): GuardedBy catches
        new HttpRequest(HttpSessionPtr(this), opening_, endpoint_, verb.view(), path.view()));
    *request = opened.detach();
  });
}

TransferWatch::Clock::duration HttpSession::TakeConnectingTime() noexcept {
  return std::exchange(connectingTook_, {});
}

ConnectionPtr HttpSession::Lend(HttpRequest* borrower, std::uint32_t opening, TransferWatch& watch) {
  if (!open_ || opening != opening_) ThrowWrongState("The session of the request is closed");
  if (borrower_ != nullptr || connecting_) ThrowWrongState("Another request of the session is under way");
  borrower_ = borrower;
  try {
    if (connection_ == nullptr) Connect(watch);
  } catch (...) {
    borrower_ = nullptr;
    throw;
  }
  return std::move(connection_);
}

void HttpSession::TakeBack(ConnectionPtr connection) noexcept {
  borrower_ = nullptr;
  if (open_) {
    connection_ = std::move(connection);
  } else {
    Keep(std::move(connection));
  }
}

void HttpSession::Keep(ConnectionPtr connection) noexcept {
  if (connection == nullptr || !connection->MayBeKept()) return;
  ConnectionPool* pool = ConnectionPool::MadeForThisThread();
  if (pool != nullptr) pool->Put(std::move(connection));
}

HRESULT HttpSession::GetOptions(HttpOptions* options) noexcept {
  return GuardedBy(ReportOptionsFailure, options, [&] { *options = options_; });
}

HRESULT HttpSession::SetOptions(const HttpOptions& options) noexcept {
  return GuardedBy(ReportOptionsFailure, [&] {
    Check(options);
    options_ = options;
  });
}

HRESULT HttpSession::SetProgress(IHttpProgress* progress) noexcept {
  ClearErrorInfo();
  progress_ = IHttpProgressPtr(progress);
  return S_OK;
}

HRESULT CreateHttpComponent(const Guid& iid, void** object) try {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  const HttpSessionPtr session(new HttpSession);
  return session->QueryInterface(iid, object);
} catch (...) {  // nothing else fails here
  return E_OUTOFMEMORY;
}

}  // namespace qv
