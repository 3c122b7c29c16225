// The request object of the built-in HTTP component.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string_view>

#include "com/counted_object.h"
#include "components/http/body_text.h"
#include "components/http/http_exchange.h"
#include "components/http/http_session.h"
#include "components/http/request_head.h"
#include "qvscriptwells/http_component.h"

namespace qv {

class HttpRequest final : public CountedObject<IHttpRequest, SupportsErrorInfo<IHttpRequest>> {
 public:
  // `opening` is the number of the session's opening to which the request belongs. Throws HttpFailure
  // (E_INVALIDARG) for a path that cannot be sent.
  HttpRequest(HttpSessionPtr session, std::uint32_t opening, const Endpoint& endpoint,
              std::u16string_view verb, std::u16string_view path);

  HRESULT GetStatus(std::uint32_t* status) noexcept override;
  HRESULT SetHeader(const WideString& name, const WideString& value) noexcept override;
  HRESULT Send(const WideString& body, const WideString& extra) noexcept override;
  HRESULT GetHeader(const WideString& name, WideString* value) noexcept override;
  HRESULT Read(std::int32_t length, WideString* text, std::int32_t* count) noexcept override;
  HRESULT ReadToFile(const WideString& path, std::int32_t* count) noexcept override;
  HRESULT SendFile(const WideString& path) noexcept override;
  HRESULT Abort() noexcept override;
  HRESULT Close() noexcept override;

  // For the session: whether an operation of this request is on this thread's call stack.
  bool IsBusy() const noexcept { return busy_; }
  // Returns the connection to the session; every later operation but Close fails.
  void End() noexcept;

 private:
  enum class State { kNew, kAnswered, kFailed, kClosed };

  // Guards an operation that calls the host: keeps the object alive and prevents a nested operation.
  class BusyMark;

  ~HttpRequest() override;

  void ExpectNew() const;
  void ExpectAnswered() const;
  void CheckedSend(std::u16string_view body, std::u16string_view extra);
  void CheckedSendFile(const WideString& path);
  WideString CheckedRead(std::int32_t length);
  std::int64_t CheckedReadToFile(const WideString& path);
  void BeginExchange();
  void CheckLimits(std::int32_t length) const;
  WideString HeaderValue(std::u16string_view name) const;
  void Fail() noexcept;

  HttpSessionPtr session_;
  std::uint32_t opening_;
  RequestHead head_;
  State state_ = State::kNew;
  bool busy_ = false;
  std::atomic<bool> aborted_{false};
  HttpOptions options_;
  IHttpProgressPtr progress_;
  std::optional<TransferWatch> watch_;
  std::optional<HttpExchange> exchange_;
  BodyText bodyText_;
};

}  // namespace qv
