// The logic of a ConnectionModel: one connection to one server, and its session. Failure: EQvException, or
// `_com_error` for a missing reference and for a failing host service.
#pragma once

#include <cstdint>

#include "qvscriptwells/host_services.h"
#include "qvscriptwells/objects.h"
#include "soap/qv_command.h"
#include "support/qv_url.h"

namespace qv {

// Written after each operation, but never read by the library: a session exists if it has an id.
enum class SessionState : std::int32_t { kNew = 0, kOpen = 1, kScriptRan = 2, kClosed = 3 };

class ConnectionModelImpl {
 public:
  ConnectionModelImpl() = default;
  ConnectionModelImpl(const ConnectionModelImpl&) = delete;
  ConnectionModelImpl& operator=(const ConnectionModelImpl&) = delete;
  // Sends nothing. Destroys the process's formater factory.
  virtual ~ConnectionModelImpl();

  virtual void CreateUserSession(WideString connectionString);
  virtual void CloseUserSession();
  virtual Variant Execute(WideString scriptLanguage, WideString script, IParameters* parameters);
  virtual Variant ExecuteFile(WideString scriptFile, IParameters* parameters);
  virtual void SetUSID(WideString usid);
  // Does not require a session; without one the sent id is empty.
  virtual WideString DownloadFile(WideString url, WideString target);
  virtual void SetServer(WideString serverName, WideString proxy);
  virtual void SetClientServices(IUnknown* services);

  // For tests and the calling layers.
  const CQvUrl& ServiceUrl() const { return serviceUrl_; }
  const WideString& HostUrl() const { return hostUrl_; }
  const WideString& UploadUrl() const { return uploadUrl_; }
  const WideString& ContextHandle() const { return contextHandle_; }
  const WideString& CookieHandle() const { return cookieHandle_; }
  const WideString& Proxy() const { return proxy_; }
  std::int32_t ProxyPort() const { return proxyPort_; }
  SessionState State() const { return state_; }

  // EQvException "No available host adress", code 0, for an empty text.
  void SetHostUrl(const WideString& text);
  void AddProxyArguments(NamedArguments& map) const;

 private:
  Variant RunCommand(const WideString& action, const NamedArguments& map);
  Variant RunScript(NamedArguments& map, IParameters* parameters);
  void RequireSession() const;
  void SetNamespace();
  void SetProxyText(const WideString& proxy);
  void PublishSessionInfo(const WideString& connectionString);
  void ResetSession(NamedArguments& map);
  IQvClientServicesSinkPtr Sink() const;

  CQvUrl serviceUrl_;
  WideString namespace_;
  WideString hostUrl_;
  WideString contextHandle_;
  WideString cookieHandle_{u""};
  WideString uploadUrl_;
  WideString proxy_;
  std::int32_t proxyPort_ = 0;
  SessionState state_ = SessionState::kNew;
  IQvClientServicesPtr clientServices_;
};

}  // namespace qv
