// The logic behind a ConnectionModel: one connection to one server, and the session that the server opened.
// Failure: EQvException, or `_com_error` for a missing reference and for a failing host service.
#pragma once

#include <cstdint>

#include "qvscriptwells/host_services.h"
#include "qvscriptwells/objects.h"
#include "soap/qv_command.h"
#include "support/qv_url.h"

namespace qv {

// Written after each operation and read by nobody in the library: whether there is a session is told by its
// id.
enum class SessionState : std::int32_t { kNew = 0, kOpen = 1, kScriptRan = 2, kClosed = 3 };

class ConnectionModelImpl {
 public:
  ConnectionModelImpl() = default;
  ConnectionModelImpl(const ConnectionModelImpl&) = delete;
  ConnectionModelImpl& operator=(const ConnectionModelImpl&) = delete;
  // Sends nothing. Empties and destroys the formater factory of the process.
  virtual ~ConnectionModelImpl();

  virtual void CreateUserSession(WideString connectionString);
  virtual void CloseUserSession();
  virtual Variant Execute(WideString scriptLanguage, WideString script, IParameters* parameters);
  virtual Variant ExecuteFile(WideString scriptFile, IParameters* parameters);
  virtual void SetUSID(WideString usid);
  // No session is asked for: without one the id that goes along is empty.
  virtual WideString DownloadFile(WideString url, WideString target);
  virtual void SetServer(WideString serverName, WideString proxy);
  virtual void SetClientServices(IUnknown* services);

  // What tests and the rooms above look at.
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
