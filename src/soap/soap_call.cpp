#include "soap/soap_call.h"

#include <memory>

#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/messages.h"
#include "soap/named_arguments.h"
#include "soap/server_connector.h"
#include "text/join_text.h"
#include "xml/xml_library_guard.h"
#include "xml/xml_parts.h"

namespace qv {
namespace {

struct CommandOfAction {
  const char16_t* action;
  CQvCommand* (*create)();
};

CQvCommand* NewCreateSessionCommand() {
  return new CCreateSessionCommand;
}
CQvCommand* NewReleaseSessionCommand() {
  return new CReleaseSessionCommand;
}

constexpr CommandOfAction kCommands[] = {{u"CreateUserSession", &NewCreateSessionCommand},
                                         {u"CloseUserSession", &NewReleaseSessionCommand},
                                         {u"Execute", &NewExecuteCommand}};

}  // namespace

CQvCommand* CSOAPCall::CreateCommand() const {
  for (const CommandOfAction& row : kCommands)
    if (action_.view() == row.action) return row.create();
  return nullptr;
}

WideString CSOAPCall::GetProxy(const NamedArguments& map) {
  return TextArgument(map, argument::kProxy, u"");
}

std::uint16_t CSOAPCall::GetProxyPort(const NamedArguments& map) {
  const auto found = map.find(argument::kProxyPort);
  return found == map.end() ? std::uint16_t{0} : static_cast<std::uint16_t>(found->second.Data().intVal);
}

WideString CSOAPCall::GetCookieHandle(const NamedArguments& map) {
  return TextArgument(map, argument::kCookieHandle, u"");
}

CSOAPResponse CSOAPCall::Run(const CQvUrl& url, const WideString& action, const WideString& serviceNamespace,
                             const NamedArguments& map) {
  const XmlLibraryGuardScope library;
  try {
    action_ = action;
    return RunCommand(url, serviceNamespace, map);
  } catch (...) {
    RethrowAsCallFailure();
  }
}

CSOAPResponse CSOAPCall::RunCommand(const CQvUrl& url, const WideString& serviceNamespace,
                                    const NamedArguments& map) {
  WideTextStream stream;
  stream.HoldsSecret();  // every envelope contains credentials or a session id
  WriteEnvelope(stream, url, serviceNamespace, map);
  WideString proxy = GetProxy(map);
  const std::uint16_t proxyPort = GetProxyPort(map);
  CServerConnector connector(GetCookieHandle(map));
  CSOAPResponse response = connector.Post(url, action_, stream, proxy, proxyPort);
  if (response.Value().Tag() == VT_NULL) throw EQvException(messages::kInvalidResponse);
  return response;
}

// The command is destroyed before the exchange begins.
void CSOAPCall::WriteEnvelope(WideTextStream& stream, const CQvUrl& url, const WideString& serviceNamespace,
                              const NamedArguments& map) {
  const std::unique_ptr<CQvCommand> command(CreateCommand());
  if (command == nullptr) throw EQvException(messages::kSoapCall);
  command->Serialize(stream, action_, serviceNamespace, url.url, map);
}

void RethrowAsCallFailure() {
  try {
    throw;
  } catch (const EQvException&) {
    throw;
  } catch (...) {
    const XmlFailure failure = CurrentXmlFailure();
    if (failure.kind == XmlFailure::kLibrary) throw EQvException(failure.text);
    if (failure.kind == XmlFailure::kTree)
      throw EQvException(
          JoinText({u"The problem in building xml document => ", WideString(failure.text).view()}));
    throw EQvException(messages::kSoapCall);
  }
}

}  // namespace qv
