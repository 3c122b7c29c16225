// The ConnectionString object that hosts hold.
#pragma once

#include "automation/dispatch_faces.h"
#include "com/module.h"
#include "values/connection_string_impl.h"

namespace qv {

class ConnectionString final : public ConnectionStringDispatch,
                               public ConnectionStringRawDispatch,
                               public ISupportErrorInfo {
 public:
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return count_.Add(); }
  std::uint32_t Release() noexcept override;

  HRESULT put_UserName(const WideString& value) noexcept override;
  HRESULT get_UserName(WideString* value) noexcept override;
  HRESULT get_UserPassword(WideString* value) noexcept override;
  HRESULT put_UserPassword(const WideString& value) noexcept override;
  HRESULT get_DatabaseName(WideString* value) noexcept override;
  HRESULT put_DatabaseName(const WideString& value) noexcept override;
  HRESULT get_ReplicaID(WideString* value) noexcept override;
  HRESULT put_ReplicaID(const WideString& value) noexcept override;
  HRESULT get_DatabaseID(WideString* value) noexcept override;
  HRESULT put_DatabaseID(const WideString& value) noexcept override;
  HRESULT ToString(WideString* text) noexcept override;
  HRESULT Initialize(const WideString& connectionString) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

 private:
  HRESULT Get(WideString* value, WideString (ConnectionStringImpl::*get)()) noexcept;
  HRESULT Put(const WideString& value, void (ConnectionStringImpl::*put)(WideString)) noexcept;

  ModuleLock lock_;
  ConnectionStringImpl logic_;
  ReferenceCount count_;
};

}  // namespace qv
