// The session and the request of one exchange through the HTTP component.
#pragma once

#include "qvscriptwells/com_call.h"
#include "qvscriptwells/http_component.h"
#include "support/qv_url.h"

namespace qv {

// Must be closed on every path; the destructor releases the references. A failing operation of the component
// throws `_com_error` with the component's message.
class HttpCall {
 public:
  // Creates and starts a component by its class id.
  void Create();
  void Open(const CQvUrl& url, const WideString& proxy) const;
  // The request is null if the component returns none.
  void OpenRequest(const WideString& verb, const WideString& path, const WideString& contentType);
  void SetHeader(const WideString& name, const WideString& value) const;
  WideString Header(const WideString& name) const;
  // Closes the request, then the session. E_POINTER if one of them never existed; this replaces an earlier
  // failure.
  void Close() const;

  bool HasRequest() const noexcept { return request_ != nullptr; }
  // Throws E_POINTER if there is none.
  IHttpRequest* Request() const;
  void Check(HRESULT code) const { ThrowIfFailed(code, request_.get(), IHttpRequest::kIid); }

 private:
  IHttpSession* Session() const;

  IHttpSessionPtr session_;
  IHttpRequestPtr request_;
};

// For `catch (...)` around an exchange: closes both, then throws EQvException, code 0: with the component's
// message (or an empty one) if its operation failed, and "Unknown Http problem." for anything else.
[[noreturn]] void CloseAndRethrow(const HttpCall& call);

}  // namespace qv
