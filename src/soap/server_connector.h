// One HTTP exchange through the HTTP component.
#pragma once

#include <cstdint>

#include "qvscriptwells/wide_string.h"
#include "soap/http_call.h"
#include "soap/soap_response.h"
#include "support/qv_url.h"
#include "support/wide_text_stream.h"

namespace qv {

class CServerConnector {
 public:
  explicit CServerConnector(const WideString& cookie) : cookie_(cookie) {}
  virtual ~CServerConnector() = default;

  // Posts the stream's text, up to its first null unit, and parses the answer. `proxy` "@PROXY@" means none
  // and is replaced by the empty text. `proxyPort` is not used: the component gets the bare name. Throws
  // EQvException, a DOM exception of the XML library, or `_com_error` E_POINTER if there was no request or
  // session to close after a failure.
  CSOAPResponse Post(const CQvUrl& url, const WideString& action, WideTextStream& stream, WideString& proxy,
                     std::uint16_t proxyPort);

 private:
  WideString Fetch(HttpCall& call, const CQvUrl& url, const WideString& action, WideTextStream& stream,
                   WideString& proxy);
  void SetHeaders(const HttpCall& call, const WideString& action, const CQvUrl& url);
  static void ParseResponse(const WideString& action, WideString text, CSOAPResponse& response);

  WideString cookie_;
};

// For `catch (...)` when parsing an answer fails: DOM exceptions and EQvException pass through, anything else
// becomes EQvException "Unknown response problem".
[[noreturn]] void RethrowAsParseFailure();

}  // namespace qv
