// What a host offers to the library. A provider knows the services by name; a model is given them directly,
// and tells them of the sessions that it opens and closes. A program without such services takes the
// ready-made ones of simple_host.h.
//
// Every operation is called on the thread that uses the library object, while a call of the host is under
// way.
#pragma once

#include "qvscriptwells/unknown.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// The name under which the provider knows the services.
constexpr char16_t kClientServicesName[] = u"QvClientServices";

class IQvServiceProvider : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("c121cc6b-648b-4bbe-9b5d-fe8520cc1dae");
  // The object registered under `name` with one reference, or null.
  virtual HRESULT GetService(const WideString& name, IUnknown** service) noexcept = 0;

 protected:
  ~IQvServiceProvider() = default;
};

// What the host knows of its user. Each in/out text arrives as a raw string of 256 zero units, which the
// service may fill, or replace (ReplaceString), or free and set to null for "no value". It is read up to the
// first null unit. The caller frees what it finds afterwards. Results are not looked at.
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

// Hears of sessions; offered by the object that offers IQvClientServices. A failing result makes the call
// fail that opened or closed the session.
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
