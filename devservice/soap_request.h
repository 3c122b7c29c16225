// From the bytes of a POST to a checked request.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "devservice/namespaces.h"

namespace qv::devservice {

enum class Action { kCreateUserSession, kCloseUserSession, kExecute };

// The name on the wire, a constant text.
const char* ActionName(Action action);

// The type of a parameter that stands for an uploaded file.
inline constexpr std::string_view kFileTicketType = "FileTicket";

// One parameter of a script. `type` is the name of a row of the type table, `text` its normalised text; or
// `type` is kFileTicketType, and `text` the ticket.
struct Parameter {
  std::string name;
  std::string type;
  std::string text;
};

// Fields that the action does not have stay empty.
struct SoapRequest {
  Action action = Action::kExecute;
  std::string connectionString;
  std::string sessionId;
  std::string scriptDocument;
  std::vector<Parameter> parameters;
};

// Parses and checks one envelope and the SOAPAction header that came with it. Throws FaultError: kBadRequest
// when the envelope has not exactly the form that clients write, kActionMismatch when header and body differ,
// kBadParameter or kUnsupportedType for a parameter. Pure; any thread.
SoapRequest ParseSoapRequest(std::string_view body, std::string_view soapAction, const Namespaces& spaces);

}  // namespace qv::devservice
