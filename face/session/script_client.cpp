#include "face/session/script_client.h"

#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/secret_text.h"
#include "qvscriptwells/simple_host.h"

namespace scriptwells {

namespace {

qv::WideString Secret(const std::string& text) {
  qv::WideString secret = qv::FromUtf8(text);
  qv::MarkSecret(secret);
  return secret;
}

qv::IQvClientServicesPtr ServicesFor(const Credentials& credentials, const std::string& id) {
  qv::SimpleHostUser user;
  user.userName = qv::FromUtf8(credentials.user);
  user.replicaId = qv::FromUtf8(credentials.replica);
  if (!id.empty()) user.usid = Secret(id);
  return qv::CreateSimpleHost(user);
}

}  // namespace

ScriptClient::ScriptClient(const std::string& server, const std::string& proxy,
                           const Credentials& credentials, const std::string& id)
    : services_(ServicesFor(credentials, id)),
      client_(qv::CreateQvScriptwells(qv::FromUtf8(server), qv::FromUtf8(proxy),
                                      qv::CreateSimpleServiceProvider(services_.get()).get())),
      model_(qv::ModelOf(client_.get())) {}

qv::WideString ScriptClient::ConnectionText(const Credentials& credentials) const {
  qv::IConnectionStringPtr connection;
  qv::ThrowIfFailed(client_->ConnectionString(qv::Put(connection)));
  qv::ThrowIfFailed(connection->put_UserName(qv::FromUtf8(credentials.user)));
  qv::ThrowIfFailed(connection->put_UserPassword(Secret(credentials.password)));
  qv::ThrowIfFailed(connection->put_ReplicaID(qv::FromUtf8(credentials.replica)));
  qv::WideString text;
  qv::ThrowIfFailed(connection->ToString(&text));
  return text;
}

void ScriptClient::Open(const Credentials& credentials) {
  qv::ThrowIfFailed(model_->CreateUserSession(ConnectionText(credentials)));
}

std::string ScriptClient::Id() const {
  qv::SimpleHostSession session;
  qv::As<qv::ISimpleHost>(services_)->GetSession(&session);
  return qv::ToUtf8(session.usid);
}

}  // namespace scriptwells
