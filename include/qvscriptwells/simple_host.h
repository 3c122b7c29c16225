// Ready-made host services for programs that have none: a provider that knows one service, the services with
// a fixed user, and a sink that remembers the session. Threads and ownership: unknown.h. Failure: the
// creation throws `_com_error` (E_OUTOFMEMORY).
#pragma once

#include "qvscriptwells/host_services.h"

namespace qv {

// What the services answer. A null text means that there is no value. Once the sink has been told of a
// session, its id takes the place of `usid`, and after its end there is none.
struct SimpleHostUser {
  WideString userName{};
  WideString databaseId{};
  WideString replicaId{};
  WideString usid{};  // a session that is held already, to be adopted
};

// What the sink was told last.
struct SimpleHostSession {
  bool open = false;  // SetUsid came with a text, and ClearSession did not come after it
  WideString usid;
  WideString userName;
  WideString databaseId;
  WideString replicaId;
};

// Reads back what the sink holds; offered by the services object beside the two host interfaces.
class ISimpleHost : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("5d1c8f5e-4f0f-4d1e-8d1b-6a1f3ce0a7b4");
  virtual HRESULT GetSession(SimpleHostSession* session) noexcept = 0;

 protected:
  ~ISimpleHost() = default;
};

using ISimpleHostPtr = boost::intrusive_ptr<ISimpleHost>;

// The services object itself: IQvClientServices, IQvClientServicesSink and ISimpleHost.
IQvClientServicesPtr CreateSimpleHost(const SimpleHostUser& user);
// A provider that answers `services` to the name "QvClientServices" in exactly this spelling, and null to
// others.
IQvServiceProviderPtr CreateSimpleServiceProvider(IQvClientServices* services);

}  // namespace qv
