// Reads a SOAP request and checks its form.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "devservice/soap/namespaces.h"
#include "devservice/values/script_job.h"

namespace qv::devservice {

enum class Action { kCreateUserSession, kCloseUserSession, kExecute };

// The name on the wire, a constant text.
const char* ActionName(Action action);

// Fields that the action does not have stay empty.
struct SoapRequest {
  Action action = Action::kExecute;
  std::string connectionString;
  std::string sessionId;
  std::string scriptDocument;
  std::vector<Parameter> parameters;
};

// Parses and checks one envelope and its SOAPAction header (with or without quotes). Accepts the form that
// Scriptwells clients write, and that of clients made from the WSDL: types that the WSDL declares may be
// missing, but must not be wrong. Throws FaultError: kBadRequest when the envelope has another form,
// kActionMismatch when header and body differ, kBadParameter or kUnsupportedType for a parameter. Pure; any
// thread.
SoapRequest ParseSoapRequest(std::string_view body, std::string_view soapAction, const Namespaces& spaces);

}  // namespace qv::devservice
