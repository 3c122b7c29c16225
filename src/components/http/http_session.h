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
  // How much of the first request's total time Open has spent; 0 from the second call on.
  TransferWatch::Clock::duration TakeConnectingTime() noexcept;
  // Lends the connection to `borrower`, a new one if the session has none left. Throws HttpFailure:
  // E_UNEXPECTED if the session is closed or was opened again since `opening`, or if another request has the
  // connection; what connecting throws.
  ConnectionPtr Lend(HttpRequest* borrower, std::uint32_t opening, TransferWatch& watch);
  // Ends the loan. Null if the connection cannot be reused.
  void TakeBack(ConnectionPtr connection) noexcept;

 private:
  ~HttpSession() override;

  void Connect(TransferWatch& watch);
  void CheckedOpen(Endpoint endpoint);
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

// A ClassCreator (class_registry.h): creates a session that is not open and returns its `iid`.
HRESULT CreateHttpComponent(const Guid& iid, void** object);

}  // namespace qv
