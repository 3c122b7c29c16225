// The Parameter object that hosts hold. It keeps itself alive while its value is copied, asked or released,
// since an object there may call back and release it.
#pragma once

#include "automation/dispatch_faces.h"
#include "com/module.h"
#include "values/parameter_impl.h"

namespace qv {

class Parameter final : public ParameterDispatch, public ISupportErrorInfo {
 public:
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return count_.Add(); }
  std::uint32_t Release() noexcept override;

  HRESULT SetValues(const WideString& key, const Variant& value) noexcept override;
  HRESULT get_ParamKey(WideString* key) noexcept override;
  HRESULT get_ParamValue(Variant* value) noexcept override;
  HRESULT get_ParamTypeAsString(WideString* typeName) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

 private:
  ModuleLock lock_;
  ParameterImpl logic_;
  ReferenceCount count_;
};

}  // namespace qv
