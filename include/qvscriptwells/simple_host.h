// SPDX-License-Identifier: Apache-2.0
// Ready-made host services for programs that have none: a provider with one service, the services with a
// fixed user, and a sink that stores the session. Threads and ownership: unknown.h. Failure: the creation
// throws `_com_error` (E_OUTOFMEMORY).
#pragma once

#include "qvscriptwells/host_services.h"

namespace qv {

// What the services return. A null text means no value. When the sink is notified of a session, that
// session's id replaces `usid`; after the end of the session there is none.
struct SimpleHostUser {
  WideString userName{};
  WideString databaseId{};
  WideString replicaId{};
  WideString usid{};  // a session that is held already, to be adopted
};

// The last notification of the sink.
struct SimpleHostSession {
  bool open = false;  // SetUsid came with a text, and ClearSession did not come after it
  WideString usid;
  WideString userName;
  WideString databaseId;
  WideString replicaId;
};

// Returns what the sink stores; the services object has it in addition to the two host interfaces.
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
// A provider that returns `services` for the exact name "QvClientServices", and null with S_OK for any other.
// It keeps a reference to `services`, which may be null: then there are none.
IQvServiceProviderPtr CreateSimpleServiceProvider(IQvClientServices* services);

}  // namespace qv
