// The services object of CreateSimpleHost: a fixed user, and the last arguments of the sink.
#pragma once

#include "com/counted_object.h"
#include "qvscriptwells/secret_text.h"
#include "qvscriptwells/simple_host.h"

namespace qv {

class SimpleHost final : public CountedObject<IQvClientServices, IQvClientServicesSink, ISimpleHost> {
 public:
  explicit SimpleHost(const SimpleHostUser& user) : user_(user) { MarkSecret(user_.usid); }

  HRESULT GetUserName(BStr* text) noexcept override;
  HRESULT GetDatabaseId(BStr* text) noexcept override;
  HRESULT GetReplicaId(BStr* text) noexcept override;
  // The session to adopt: the user's at first, later the one of the last SetUsid, none after ClearSession. So
  // a client that asks again during a session gets the current one.
  HRESULT GetUsid(BStr* text) noexcept override;

  HRESULT SetDatabaseName(const WideString& name) noexcept override;
  HRESULT SetUserName(const WideString& userName) noexcept override;
  HRESULT SetUsid(const WideString& usid) noexcept override;
  HRESULT SetDatabaseIds(const WideString& databaseId, const WideString& replicaId) noexcept override;
  HRESULT ClearSession() noexcept override;

  HRESULT GetSession(SimpleHostSession* session) noexcept override;

 private:
  SimpleHostUser user_;
  SimpleHostSession session_;
};

}  // namespace qv
