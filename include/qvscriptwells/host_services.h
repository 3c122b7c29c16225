// SPDX-License-Identifier: Apache-2.0
// Interfaces that a host implements for the library. A provider finds the services by name. A model gets the
// services directly and notifies them when it opens or closes a session. A program without services of this
// kind can use those of simple_host.h.
//
// Every operation is called on the thread that uses the library object, during a call of the host.
#pragma once

#include "qvscriptwells/unknown.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// The name of the services in GetService.
constexpr char16_t kClientServicesName[] = u"QvClientServices";

class IQvServiceProvider : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("c121cc6b-648b-4bbe-9b5d-fe8520cc1dae");
  // The object registered under `name` with one reference; null and S_OK if there is none.
  virtual HRESULT GetService(const WideString& name, IUnknown** service) noexcept = 0;

 protected:
  ~IQvServiceProvider() = default;
};

// What the host knows about its user. Each in/out text arrives as a raw string of 256 zero units. The service
// may fill it, replace it (ReplaceString), or free it and set it to null for "no value". The library reads it
// up to the first null unit and frees it afterwards. Result codes are ignored.
class IQvClientServices : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("a99bfe55-2051-4b8f-82fa-a7d8ea5dfeab");
  // The current user's name.
  virtual HRESULT GetUserName(BStr* text) noexcept = 0;
  // The library does not call it.
  virtual HRESULT GetDatabaseId(BStr* text) noexcept = 0;
  // The replica id of the current database.
  virtual HRESULT GetReplicaId(BStr* text) noexcept = 0;
  // The id of a session that the host already holds.
  virtual HRESULT GetUsid(BStr* text) noexcept = 0;

 protected:
  ~IQvClientServices() = default;
};

// Is notified of sessions; an optional interface of the IQvClientServices object. When a session has been
// opened come SetUsid, SetUserName and SetDatabaseIds, in this order; when it has been closed, ClearSession.
// A failure ends the order, and the call that opened or closed the session fails.
class IQvClientServicesSink : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("651ec872-5780-40cf-afa3-0bb4bd8cf97f");
  // The library does not call it.
  virtual HRESULT SetDatabaseName(const WideString& name) noexcept = 0;
  virtual HRESULT SetUserName(const WideString& userName) noexcept = 0;
  virtual HRESULT SetUsid(const WideString& usid) noexcept = 0;
  virtual HRESULT SetDatabaseIds(const WideString& databaseId, const WideString& replicaId) noexcept = 0;
  virtual HRESULT ClearSession() noexcept = 0;

 protected:
  ~IQvClientServicesSink() = default;
};

using IQvServiceProviderPtr = boost::intrusive_ptr<IQvServiceProvider>;
using IQvClientServicesPtr = boost::intrusive_ptr<IQvClientServices>;
using IQvClientServicesSinkPtr = boost::intrusive_ptr<IQvClientServicesSink>;

}  // namespace qv
