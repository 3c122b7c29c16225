// Writes answers and faults in the form that servers of this kind send.
#pragma once

#include <string>

#include "devservice/http/http_message.h"
#include "devservice/http/odd_forms.h"
#include "devservice/values/script_job.h"
#include "devservice/soap/soap_request.h"

namespace qv::devservice {

// What stands in a fault. Texts are UTF-8 and may hold anything; what XML cannot carry is replaced.
struct FaultContent {
  int code = 0;
  std::string description;
  std::string source;
  bool clientsFault = false;  // soap:Client in place of soap:Server
};

// The answer element of an action. `result` is looked at for kExecute (its value) and kCreateUserSession (its
// text is the session id); a result of the kind kFault is no answer and has to go to WriteFault. Throws
// FaultError when a table is too large.
HttpAnswer WriteAnswer(Action action, const ScriptResult& result, const Namespaces& spaces,
                       const OddForms& forms);

HttpAnswer WriteFault(const FaultContent& fault, const OddForms& forms);

}  // namespace qv::devservice
