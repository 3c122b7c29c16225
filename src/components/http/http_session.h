// The session object of the built-in HTTP component.
#pragma once

#include <cstdint>

#include "com/counted_object.h"
#include "components/http/connection.h"
#include "components/http/endpoint.h"
#include "qvscriptwells/http_component.h"

namespace qv {

class HttpRequest;

class HttpSession final
    : public CountedObject<IHttpSession, IHttpOptions, SupportsErrorInfo<IHttpSession, IHttpOptions>> {
 public:
  // Throws for lack of memory only.
  HttpSession();

  HRESULT Open(const WideString& protocol, const WideString& host, std::uint16_t port,
               const WideString& secondSpare, const WideString& firstSpare,
               const WideString& proxy) noexcept override;
  HRESULT Close() noexcept override;
  HRESULT OpenRequest(const WideString& verb, const WideString& path, const WideString& contentType,
                      std::uint32_t flags, IHttpRequest** request) noexcept override;

  HRESULT GetOptions(HttpOptions* options) noexcept override;
  HRESULT SetOptions(const HttpOptions& options) noexcept override;
  HRESULT SetProgress(IHttpProgress* progress) noexcept override;

  // For the session's requests.
  const HttpOptions& Options() const noexcept { return options_; }
  const IHttpProgressPtr& Progress() const noexcept { return progress_; }
  // What Open has spent of the first request's total time; nothing from the second call on.
  TransferWatch::Clock::duration TakeConnectingTime() noexcept;
  // Lends the connection to `borrower`, a fresh one when the session's was used up or has died since. Throws
  // HttpFailure: E_UNEXPECTED when the session is closed or was opened anew since `opening`, or when another
  // request has the connection; what connecting throws.
  ConnectionPtr Lend(HttpRequest* borrower, std::uint32_t opening, TransferWatch& watch);
  // Ends the loan. Null when the connection cannot be used any more.
  void TakeBack(ConnectionPtr connection) noexcept;

 private:
  ~HttpSession() override;

  void Connect(TransferWatch& watch);
  void CheckedOpen(const Endpoint& endpoint);
  void CheckedClose();
  static void Keep(ConnectionPtr connection) noexcept;

  HttpOptions options_;
  IHttpProgressPtr progress_;
  bool open_ = false;
  bool connecting_ = false;
  std::uint32_t opening_ = 0;  // counts the openings
  TransferWatch::Clock::duration connectingTook_{};
  Endpoint endpoint_;
  ConnectionPtr connection_;         // idle
  HttpRequest* borrower_ = nullptr;  // who has the connection; it holds a reference to this session
};

using HttpSessionPtr = boost::intrusive_ptr<HttpSession>;

// A ClassCreator (class_registry.h): makes a session that is not open and hands out `iid` of it.
HRESULT CreateHttpComponent(const Guid& iid, void** object);

}  // namespace qv
