// The session and the request of one exchange through the HTTP component.
#pragma once

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/http_component.h"
#include "support/qv_url.h"

namespace qv {

// What has to be closed and released on every way out. The references go with the object. A failing operation
// of the component throws `_com_error` with the component's words.
class HttpCall {
 public:
  // Makes a component, started, by its class id.
  void Create();
  void Open(const CQvUrl& url, const WideString& proxy) const;
  // There is no request when the component gives none.
  void OpenRequest(const WideString& verb, const WideString& path, const WideString& contentType);
  void SetHeader(const WideString& name, const WideString& value) const;
  WideString Header(const WideString& name) const;
  // The request, then the session. E_POINTER when one of them was never there: it takes the place of whatever
  // failed before.
  void Close() const;

  bool HasRequest() const noexcept { return request_ != nullptr; }
  // Throws E_POINTER when there is none.
  IHttpRequest* Request() const;
  void Check(HRESULT code) const { ThrowIfFailed(code, request_.get(), IHttpRequest::kIid); }

 private:
  IHttpSession* Session() const;

  IHttpSessionPtr session_;
  IHttpRequestPtr request_;
};

// For `catch (...)` around an exchange: closes both, then raises EQvException, code 0, with the component's
// words for a failed operation of it (empty if it has none) and "Unknown Http problem." for anything else.
[[noreturn]] void CloseAndRethrow(const HttpCall& call);

}  // namespace qv
