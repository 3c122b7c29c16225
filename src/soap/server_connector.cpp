#include "soap/server_connector.h"

#include <utility>

#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/secret_text.h"
#include "soap/http_call.h"
#include "support/namespaces.h"
#include "support/numbers.h"
#include "support/string_helpers.h"
#include "text/join_text.h"
#include "xml/xml_parts.h"

namespace qv {

namespace {

constexpr char16_t kNoProxy[] = u"@PROXY@";

}  // namespace

CSOAPResponse CServerConnector::Post(const CQvUrl& url, const WideString& action, WideTextStream& stream,
                                     WideString& proxy, std::uint16_t /*proxyPort*/) {
  CSOAPResponse response;
  HttpCall call;
  WideString text;
  try {
    text = Fetch(call, url, action, stream, proxy);
  } catch (...) {
    CloseAndRethrow(call);
  }
  try {
    ParseResponse(action, std::move(text), response);
  } catch (...) {
    RethrowAsParseFailure();
  }
  return response;
}

WideString CServerConnector::Fetch(HttpCall& call, const CQvUrl& url, const WideString& action,
                                   WideTextStream& stream, WideString& proxy) {
  call.Create();
  if (proxy == kNoProxy) proxy = u"";
  call.Open(url, proxy);
  call.OpenRequest(u"POST", url.path, u"text/xml");
  if (!call.HasRequest()) throw EQvException(u"Cannot create http context.");

  SetHeaders(call, action, url);
  call.Check(call.Request()->Send(stream.TakeText(), u""));
  call.Header(u"StatusCode");  // the value is ignored; the body decides
  const std::int32_t bytes = ToLong(call.Header(u"Content-Length"));
  if (bytes < 1) throw EQvException(u"The response length doesn't exist.");

  WideString text;
  std::int32_t uncounted = 0;
  call.Check(call.Request()->Read(bytes, &text, &uncounted));
  if (action.view() == u"CreateUserSession") MarkSecret(text);
  call.Close();
  return text;
}

void CServerConnector::SetHeaders(const HttpCall& call, const WideString& action, const CQvUrl& url) {
  call.SetHeader(u"Host", JoinText({url.host.view(), u":", DecimalText(url.port).view()}));
  call.SetHeader(u"Content-Type", u"text/xml");
  call.SetHeader(u"SOAPAction", JoinText({kServiceNamespace, u"#", action.view()}));
  if (!cookie_.IsEmpty()) call.SetHeader(u"Cookie", cookie_);
}

void CServerConnector::ParseResponse(const WideString& action, WideString text, CSOAPResponse& response) {
  response.SetText(action, std::move(text), false);
  response.ParseText();
}

void RethrowAsParseFailure() {
  try {
    throw;
  } catch (const EQvException&) {
    throw;
  } catch (...) {
    if (CurrentXmlFailure().kind == XmlFailure::kTree) throw;
    throw EQvException(u"Unknown response problem");
  }
}

}  // namespace qv
