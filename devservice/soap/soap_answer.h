// Writes answers and faults as real servers send them.
#pragma once

#include <string>

#include "devservice/http/http_message.h"
#include "devservice/http/odd_forms.h"
#include "devservice/soap/soap_request.h"
#include "devservice/values/script_job.h"

namespace qv::devservice {

// The content of a fault. Texts are UTF-8; characters that XML cannot carry are replaced.
struct FaultContent {
  int code = 0;
  std::string description;
  std::string source;
  bool clientsFault = false;  // soap:Client in place of soap:Server
};

// The answer to an action. `result` counts for kExecute (its value) and kCreateUserSession (its text is the
// session id). Use WriteFault for a result of the kind kFault. Throws FaultError when a table is too large.
HttpAnswer WriteAnswer(Action action, const ScriptResult& result, const Namespaces& spaces,
                       const OddForms& forms);

HttpAnswer WriteFault(const FaultContent& fault, const OddForms& forms);

}  // namespace qv::devservice
