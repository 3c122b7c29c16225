// The Url object that hosts hold.
#pragma once

#include "automation/dispatch_faces.h"
#include "com/module.h"
#include "values/url_impl.h"

namespace qv {

class Url final : public UrlDispatch, public ISupportErrorInfo {
 public:
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return count_.Add(); }
  std::uint32_t Release() noexcept override;

  HRESULT get_UrlCaption(WideString* value) noexcept override;
  HRESULT put_UrlCaption(const WideString& value) noexcept override;
  HRESULT get_Url(WideString* value) noexcept override;
  HRESULT put_Url(const WideString& value) noexcept override;
  HRESULT ToString(WideString* text) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

 private:
  HRESULT Get(WideString* value, WideString (UrlImpl::*get)()) noexcept;
  HRESULT Put(const WideString& value, void (UrlImpl::*put)(WideString)) noexcept;

  ModuleLock lock_;
  UrlImpl logic_;
  ReferenceCount count_;
};

}  // namespace qv
