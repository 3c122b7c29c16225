// SPDX-License-Identifier: Apache-2.0
// The interfaces of the library's objects. create_objects.h creates the objects.
//
// Failure: a negative result code, and an error record (error_info.h) with the message: "Unknown Error" for a
// code without a message, such as the E_POINTER of missing services. A null output parameter is E_POINTER and
// an unexpected failure E_UNEXPECTED, both without a record. A failure without a specific code is
// DISP_E_EXCEPTION. Output parameters are written on success only, unless stated otherwise. Ownership:
// unknown.h. Threads: an object is used on one thread at a time, and all models of a process on one thread.
// Text: any WideString may be null. Each interface that derives from IDispatch can also be used by name and
// id (dispatch.h).
#pragma once

#include <cstdint>

#include "qvscriptwells/dispatch.h"
#include "qvscriptwells/unknown.h"
#include "qvscriptwells/value_objects.h"
#include "qvscriptwells/variant.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// One named, typed value.
class IParameter : public IDispatch {
 public:
  static constexpr Guid kIid = ParseGuid("9d152496-5e82-4675-86e6-caaef442f767");
  // Stores both; an object under VT_DISPATCH is stored under VT_UNKNOWN.
  virtual HRESULT SetValues(const WideString& key, const Variant& value) noexcept = 0;
  virtual HRESULT get_ParamKey(WideString* key) noexcept = 0;
  virtual HRESULT get_ParamValue(Variant* value) noexcept = 0;
  // The type name on the wire: "int", "string", ... ; "no type" for no value, null for a value that has no
  // wire format.
  virtual HRESULT get_ParamTypeAsString(WideString* typeName) noexcept = 0;

 protected:
  ~IParameter() = default;
};

// An ordered list of parameters. Keys may repeat; indexes count from 0.
class IParameters : public IDispatch {
 public:
  static constexpr Guid kIid = ParseGuid("316b19ba-5a67-4c03-ac5c-877bc61d0b37");
  // Appends a new parameter; `added` gets it with one reference, and may be null.
  virtual HRESULT Add(const WideString& key, const Variant& value, IParameter** added) noexcept = 0;
  // "The are no parameters.", "The index is out of range." or "Cannot remove parameter."
  virtual HRESULT Remove(std::int16_t index) noexcept = 0;
  // "The are no parameters.", "The index is out of range." or "Cannot find parameter in the current index."
  virtual HRESULT Find(std::int16_t index, IParameter** found) noexcept = 0;
  virtual HRESULT Size(std::int16_t* size) noexcept = 0;
  virtual HRESULT Clear() noexcept = 0;

 protected:
  ~IParameters() = default;
};

// The credentials of a session and their text form, "DbReplicationId=r;Username=u;Password=p;".
class IConnectionString : public IDispatch {
 public:
  static constexpr Guid kIid = ParseGuid("5b46aead-fa79-4d2a-82dc-eae737691183");
  virtual HRESULT put_UserName(const WideString& value) noexcept = 0;
  virtual HRESULT get_UserName(WideString* value) noexcept = 0;
  virtual HRESULT get_UserPassword(WideString* value) noexcept = 0;
  virtual HRESULT put_UserPassword(const WideString& value) noexcept = 0;
  virtual HRESULT get_DatabaseName(WideString* value) noexcept = 0;
  virtual HRESULT put_DatabaseName(const WideString& value) noexcept = 0;
  virtual HRESULT get_ReplicaID(WideString* value) noexcept = 0;
  virtual HRESULT put_ReplicaID(const WideString& value) noexcept = 0;
  virtual HRESULT get_DatabaseID(WideString* value) noexcept = 0;
  virtual HRESULT put_DatabaseID(const WideString& value) noexcept = 0;
  // Appends the text form to the result of earlier calls on this object and returns the whole.
  virtual HRESULT ToString(WideString* text) noexcept = 0;

 protected:
  ~IConnectionString() = default;
};

class IConnectionStringRaw : public IDispatch {
 public:
  static constexpr Guid kIid = ParseGuid("d88f1c3b-5faa-4f00-a748-755b81137618");
  // Sets user name, password and replica id from a text of "Key=value;" pairs. Parsing stops silently at the
  // first piece that is not a pair; a text without ";" changes nothing.
  virtual HRESULT Initialize(const WideString& connectionString) noexcept = 0;

 protected:
  ~IConnectionStringRaw() = default;
};

// One connection to one server, with at most one session. Destroying any model unregisters all value types of
// the process: later calls with parameters fail with "Cannot create the xml document.", and typed answers
// read as empty. A program that makes several models keeps a ValueTypesHold (value_types_hold.h).
class IConnectionModel : public IDispatch {
 public:
  static constexpr Guid kIid = ParseGuid("fc62e4ca-81ab-4879-bf0a-2450a54f80f3");
  // Opens a session. Call SetServer and SetClientServices (IConnectionModelRaw) before. Without services the
  // session is opened and usable, but the call returns E_POINTER because there is nobody to notify. Closing
  // it then also returns E_POINTER, after the server has closed it.
  virtual HRESULT CreateUserSession(const WideString& connectionString) noexcept = 0;
  // Closes it. Without a session it sends nothing and succeeds. After a failure it may be called again.
  virtual HRESULT CloseUserSession() noexcept = 0;
  // Runs a script. `parameters` may be null here; a late-bound call needs an empty list instead. `result`
  // gets the typed answer. "Session does not exist." without a session. A server fault fails with the
  // server's message and the code 0x80040000 | its error number.
  virtual HRESULT Execute(const WideString& scriptLanguage, const WideString& script, IParameters* parameters,
                          Variant* result) noexcept = 0;
  // As Execute, with a script document in place of language and text. `scriptFile` is a local path, where "\"
  // and "/" are equivalent and nothing else is special, or a file URL: "file:///tmp/a%20b.xml", "file:/..."
  // and "file://localhost/..." name an absolute path, percent-encoded. Query and fragment are ignored; any
  // other host or scheme fails. The file is a regular one with an XML document that states the script's
  // language and code. It is read again for each call, with its local entities and document type; its content
  // is not checked. A file that cannot be opened or is not well-formed fails with "Cannot create the xml
  // document.", an empty name with "IsFileNameURL - File Name is missing."; nothing is sent then.
  virtual HRESULT ExecuteFile(const WideString& scriptFile, IParameters* parameters,
                              Variant* result) noexcept = 0;
  // Adopts a session that was opened elsewhere. Nothing is sent or checked.
  virtual HRESULT SetUSID(const WideString& usid) noexcept = 0;
  // Downloads the file at `url` ("http://host:port/path?query") into the directory `target`, under the name
  // that the server sends. `path` gets the full path (native_path.h converts it for the system). A null or
  // empty target means a new directory in the temporary one (TEMP, else TMP). The session id is sent; whether
  // there is a session is not checked. The file appears whole or not at all, and replaces one of its name.
  // E_POINTER if the server cannot be reached or `url` is not a URL; "Unknown Http problem." if the answer
  // names no file or one outside the directory; else the transport's message.
  virtual HRESULT DownloadFile(const WideString& url, const WideString& target,
                               WideString* path) noexcept = 0;

 protected:
  ~IConnectionModel() = default;
};

class IConnectionModelRaw : public IUnknown {
 public:
  static constexpr Guid kIid = ParseGuid("9b8682a5-6ac5-4e13-b24c-682e73da1320");
  // `serverName` is a URL without the service's path, such as "http://127.0.0.1:8080"; `proxy` is empty,
  // "host" or "host:port".
  virtual HRESULT SetServer(const WideString& serverName, const WideString& proxy) noexcept = 0;
  // Keeps a reference to the IQvClientServices of `services`; null, or an object without it, means no
  // services.
  virtual HRESULT SetClientServices(IUnknown* services) noexcept = 0;

 protected:
  ~IConnectionModelRaw() = default;
};

// The client: creates the objects that a host needs, and returns its one model. Calling order: Init
// (IQvClientServiceRaw), put_ServerName, put_Proxy if there is one, then ConnectionModel.
class IQvScriptwells : public IDispatch {
 public:
  static constexpr Guid kIid = ParseGuid("8a8a22af-307b-4295-bed8-6981b0f0d6fb");
  // The same model on every call. Each call passes it server name, proxy and services and makes it adopt the
  // session id that the services return, if any; call it again after a change. "Cannot parse url, expecting
  // 'http://' after protocol name." for a server name that is not a URL; then E_POINTER before a successful
  // Init.
  virtual HRESULT ConnectionModel(IConnectionModel** model) noexcept = 0;
  // A new object on every call; so do the next four.
  virtual HRESULT Url(IUrl** url) noexcept = 0;
  virtual HRESULT Duration(IDuration** duration) noexcept = 0;
  // With the replica id and the user name that the services return. E_POINTER before a successful Init.
  virtual HRESULT ConnectionString(IConnectionString** connectionString) noexcept = 0;
  virtual HRESULT AttachedFile(IAttachedFile** file) noexcept = 0;
  virtual HRESULT Parameters(IParameters** parameters) noexcept = 0;
  // A URL without the service's path, such as "http://127.0.0.1:8080". Checked by ConnectionModel.
  virtual HRESULT get_ServerName(WideString* serverName) noexcept = 0;
  virtual HRESULT put_ServerName(const WideString& serverName) noexcept = 0;
  // "host", "host:port", or empty for none; "@PROXY@" is stored as empty.
  virtual HRESULT get_Proxy(WideString* proxy) noexcept = 0;
  virtual HRESULT put_Proxy(const WideString& proxy) noexcept = 0;

 protected:
  ~IQvScriptwells() = default;
};

class IQvClientServiceRaw : public IDispatch {
 public:
  static constexpr Guid kIid = ParseGuid("1dceed1f-5c5c-4df1-9055-ddf102dbab4c");
  // Sets the host's services: `pVal` has IQvServiceProvider, which finds them as "QvClientServices"
  // (host_services.h; simple_host.h has ready-made ones). The model adopts the session id that they return,
  // or drops its session if they return none. E_POINTER when there are no such services.
  virtual HRESULT Init(IUnknown* pVal) noexcept = 0;

 protected:
  ~IQvClientServiceRaw() = default;
};

using IQvScriptwellsPtr = boost::intrusive_ptr<IQvScriptwells>;
using IQvClientServiceRawPtr = boost::intrusive_ptr<IQvClientServiceRaw>;
using IParameterPtr = boost::intrusive_ptr<IParameter>;
using IParametersPtr = boost::intrusive_ptr<IParameters>;
using IConnectionStringPtr = boost::intrusive_ptr<IConnectionString>;
using IConnectionStringRawPtr = boost::intrusive_ptr<IConnectionStringRaw>;
using IConnectionModelPtr = boost::intrusive_ptr<IConnectionModel>;
using IConnectionModelRawPtr = boost::intrusive_ptr<IConnectionModelRaw>;

}  // namespace qv
