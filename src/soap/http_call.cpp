#include "soap/http_call.h"

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"

namespace qv {

void HttpCall::Create() {
  session_ = As<IHttpSession>(CreateComponent(CLSID_HttpComponent));
}

void HttpCall::Open(const CQvUrl& url, const WideString& proxy) const {
  IHttpSession* const opened = Session();
  ThrowIfFailed(opened->Open(url.protocol, url.host, static_cast<std::uint16_t>(url.port),
                             url.secondSpareText, url.firstSpareText, proxy),
                opened, IHttpSession::kIid);
}

void HttpCall::OpenRequest(const WideString& verb, const WideString& path, const WideString& contentType) {
  IHttpRequestPtr received;
  const HRESULT opened = Session()->OpenRequest(verb, path, contentType, 0, Put(received));
  ThrowIfFailed(opened, session_.get(), IHttpSession::kIid);
  request_ = received;
}

void HttpCall::SetHeader(const WideString& name, const WideString& value) const {
  Check(Request()->SetHeader(name, value));
}

WideString HttpCall::Header(const WideString& name) const {
  WideString value;
  Check(Request()->GetHeader(name, &value));
  return value;
}

void HttpCall::Close() const {
  Check(Request()->Close());
  ThrowIfFailed(Session()->Close(), session_.get(), IHttpSession::kIid);
}

IHttpSession* HttpCall::Session() const {
  if (session_ == nullptr) _com_raise_error(E_POINTER);
  return session_.get();
}

IHttpRequest* HttpCall::Request() const {
  if (request_ == nullptr) _com_raise_error(E_POINTER);
  return request_.get();
}

void CloseAndRethrow(const HttpCall& call) {
  try {
    throw;
  } catch (const _com_error& error) {
    call.Close();
    throw EQvException(error.Description().IsNull() ? WideString(u"") : error.Description());
  } catch (...) {
    call.Close();
    throw EQvException(messages::kHttpProblem);
  }
}

}  // namespace qv
