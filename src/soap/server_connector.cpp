#include "soap/server_connector.h"

#include <xercesc/dom/DOMException.hpp>

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "support/namespaces.h"
#include "support/numbers.h"
#include "support/string_helpers.h"

namespace qv {

// What has to be closed and released on every way out. The references go with it.
struct CServerConnector::Exchange {
  IHttpSessionPtr session;
  IHttpRequestPtr request;

  IHttpSession* Session() const {
    if (session == nullptr) _com_raise_error(E_POINTER);
    return session.get();
  }
  IHttpRequest* Request() const {
    if (request == nullptr) _com_raise_error(E_POINTER);
    return request.get();
  }
  void Close() const {
    Check(Request()->Close());
    CheckSession(Session()->Close());
  }
  void Check(HRESULT code) const { ThrowIfFailed(code, request.get(), IHttpRequest::kIid); }
  void CheckSession(HRESULT code) const { ThrowIfFailed(code, session.get(), IHttpSession::kIid); }
};

namespace {

constexpr char16_t kNoProxy[] = u"@PROXY@";

IHttpSessionPtr CreateHttpSession() {
  void* raw = nullptr;
  const HRESULT created = CoCreateInstance(CLSID_HttpComponent, nullptr, CLSCTX_ALL, IUnknown::kIid, &raw);
  if (Failed(created)) _com_raise_error(created);
  const IUnknownPtr object(static_cast<IUnknown*>(raw), false);
  const HRESULT started = OleRun(object.get());
  if (Failed(started)) _com_raise_error(started);
  return IHttpSessionPtr(static_cast<IHttpSession*>(QueryFor(object.get(), IHttpSession::kIid)), false);
}

WideString Joined(std::u16string_view first, std::u16string_view second, std::u16string_view third) {
  std::u16string text(first);
  text.append(second).append(third);
  return WideString(text);
}

}  // namespace

CSOAPResponse CServerConnector::Post(const CQvUrl& url, const WideString& action, WideTextStream& stream,
                                     WideString& proxy, std::uint16_t /*proxyPort*/) {
  CSOAPResponse response;
  Exchange exchange;
  WideString text;
  try {
    text = Fetch(exchange, url, action, stream, proxy);
  } catch (const _com_error& error) {
    exchange.Close();
    throw EQvException(error.Description().IsNull() ? WideString(u"") : error.Description());
  } catch (...) {
    exchange.Close();
    throw EQvException(u"Unknown Http problem.");
  }
  try {
    ParseResponse(action, text, response);
  } catch (...) {
    RethrowAsParseFailure();
  }
  return response;
}

WideString CServerConnector::Fetch(Exchange& exchange, const CQvUrl& url, const WideString& action,
                                   WideTextStream& stream, WideString& proxy) {
  exchange.session = CreateHttpSession();
  if (proxy == kNoProxy) proxy = u"";
  exchange.CheckSession(exchange.Session()->Open(url.protocol, url.host, static_cast<std::uint16_t>(url.port),
                                                 url.secondSpareText, url.firstSpareText, proxy));
  IHttpRequest* request = nullptr;
  const HRESULT opened = exchange.session->OpenRequest(u"POST", url.path, u"text/xml", 0, &request);
  const IHttpRequestPtr received(request, false);
  exchange.CheckSession(opened);
  exchange.request = received;
  if (request == nullptr) throw EQvException(u"Cannot create http context.");

  SetHeaders(request, action, url);
  exchange.Check(request->Send(stream.TakeText(), u""));
  WideString unexamined;  // whatever the status is, the body tells
  exchange.Check(request->GetHeader(u"StatusCode", &unexamined));
  WideString length;
  exchange.Check(request->GetHeader(u"Content-Length", &length));
  const std::int32_t bytes = ToLong(length);
  if (bytes < 1) throw EQvException(u"The response length doesn't exist.");

  WideString text;
  std::int32_t uncounted = 0;
  exchange.Check(request->Read(bytes, &text, &uncounted));
  exchange.Close();
  return text;
}

void CServerConnector::SetHeaders(IHttpRequest* request, const WideString& action, const CQvUrl& url) {
  const auto set = [request](const WideString& name, const WideString& value) {
    ThrowIfFailed(request->SetHeader(name, value), request, IHttpRequest::kIid);
  };
  set(u"Host", Joined(url.host.view(), u":", DecimalText(url.port).view()));
  set(u"Content-Type", u"text/xml");
  set(u"SOAPAction", Joined(kServiceNamespace, u"#", action.view()));
  if (!cookie_.IsEmpty()) set(u"Cookie", cookie_);
}

void CServerConnector::ParseResponse(const WideString& action, const WideString& text,
                                     CSOAPResponse& response) {
  response.SetText(action, text, false);
  response.ParseText();
}

void RethrowAsParseFailure() {
  try {
    throw;
  } catch (const xercesc::DOMException&) {
    throw;
  } catch (const EQvException&) {
    throw;
  } catch (...) {
    throw EQvException(u"Unknown response problem");
  }
}

}  // namespace qv
