// One call to the service: from named arguments to a response. For one call, on the stack.
#pragma once

#include <cstdint>

#include "qvscriptwells/wide_string.h"
#include "soap/qv_command.h"
#include "soap/soap_response.h"
#include "support/qv_url.h"

namespace qv {

class CSOAPCall {
 public:
  CSOAPCall() = default;
  virtual ~CSOAPCall() = default;

  // Writes the envelope, sends it and reads the answer. Any failure becomes an EQvException
  // (RethrowAsCallFailure).
  CSOAPResponse Run(const CQvUrl& url, const WideString& action, const WideString& serviceNamespace,
                    const NamedArguments& map);

  // A new command for the action field, owned by the caller; null for an unknown action.
  CQvCommand* CreateCommand() const;
  static WideString GetProxy(const NamedArguments& map);
  static std::uint16_t GetProxyPort(const NamedArguments& map);
  static WideString GetCookieHandle(const NamedArguments& map);

  void SetAction(const WideString& action) { action_ = action; }

 private:
  CSOAPResponse RunCommand(const CQvUrl& url, const WideString& serviceNamespace, const NamedArguments& map);
  void WriteEnvelope(WideTextStream& stream, const CQvUrl& url, const WideString& serviceNamespace,
                     const NamedArguments& map);

  WideString action_;
};

// For `catch (...)` around a call: converts the failure to an EQvException. Clauses in this order:
// XMLException (its message), DOM exception ("The problem in building xml document => " and its message),
// EQvException (as it is), anything else ("Cannot create a soap call.").
[[noreturn]] void RethrowAsCallFailure();

}  // namespace qv
