// The session object of the built-in HTTP component.
#pragma once

#include <cstdint>

#include "components/http/connection.h"
#include "components/http/endpoint.h"
#include "qvscriptwells/http_component.h"

namespace qv {

class HttpRequest;

class HttpSession final : public IHttpSession, public IHttpOptions, public ISupportErrorInfo {
 public:
  // Throws for lack of memory only.
  HttpSession();

  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override;
  std::uint32_t Release() noexcept override;

  HRESULT Open(const WideString& protocol, const WideString& host, std::uint16_t port,
               const WideString& secondSpare, const WideString& firstSpare,
               const WideString& proxy) noexcept override;
  HRESULT Close() noexcept override;
  HRESULT OpenRequest(const WideString& verb, const WideString& path, const WideString& contentType,
                      std::uint32_t flags, IHttpRequest** request) noexcept override;

  HRESULT GetOptions(HttpOptions* options) noexcept override;
  HRESULT SetOptions(const HttpOptions& options) noexcept override;
  HRESULT SetProgress(IHttpProgress* progress) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

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
  ~HttpSession();

  void* Find(const Guid& iid) noexcept;
  void Connect(TransferWatch& watch);
  void CheckedOpen(const Endpoint& endpoint);
  void CheckedClose();
  static void Keep(ConnectionPtr connection) noexcept;

  std::uint32_t references_ = 1;
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

// The count is reached through one of the bases; they all lead to the same.
inline void intrusive_ptr_add_ref(HttpSession* session) noexcept {
  session->AddRef();
}
inline void intrusive_ptr_release(HttpSession* session) noexcept {
  session->Release();
}

}  // namespace qv
