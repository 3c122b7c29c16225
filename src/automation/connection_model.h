// The ConnectionModel object that hosts hold. It keeps itself alive while a call of its own is out, since a
// host service that is called back may release it.
#pragma once

#include "automation/dispatch_faces.h"
#include "com/module.h"
#include "session/connection_model_impl.h"

namespace qv {

class ConnectionModel final : public ConnectionModelDispatch,
                              public IConnectionModelRaw,
                              public ISupportErrorInfo {
 public:
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return count_.Add(); }
  std::uint32_t Release() noexcept override;

  HRESULT CreateUserSession(const WideString& connectionString) noexcept override;
  HRESULT CloseUserSession() noexcept override;
  HRESULT Execute(const WideString& scriptLanguage, const WideString& script, IParameters* parameters,
                  Variant* result) noexcept override;
  HRESULT ExecuteFile(const WideString& scriptFile, IParameters* parameters,
                      Variant* result) noexcept override;
  HRESULT SetUSID(const WideString& usid) noexcept override;
  HRESULT DownloadFile(const WideString& url, const WideString& target, WideString* path) noexcept override;
  HRESULT SetServer(const WideString& serverName, const WideString& proxy) noexcept override;
  HRESULT SetClientServices(IUnknown* services) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

 private:
  ModuleLock lock_;
  ConnectionModelImpl logic_;
  ReferenceCount count_;
};

}  // namespace qv
