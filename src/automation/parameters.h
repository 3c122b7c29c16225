// The Parameters object that hosts hold. It keeps itself alive while values are copied or released, since
// objects among them may call back and release it.
#pragma once

#include "automation/dispatch_faces.h"
#include "com/module.h"
#include "values/parameters_impl.h"

namespace qv {

class Parameters final : public ParametersDispatch, public ISupportErrorInfo {
 public:
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return count_.Add(); }
  std::uint32_t Release() noexcept override;

  HRESULT Add(const WideString& key, const Variant& value, IParameter** added) noexcept override;
  HRESULT Remove(std::int16_t index) noexcept override;
  HRESULT Find(std::int16_t index, IParameter** found) noexcept override;
  HRESULT Size(std::int16_t* size) noexcept override;
  HRESULT Clear() noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

 private:
  ModuleLock lock_;
  ParametersImpl logic_;
  ReferenceCount count_;
};

}  // namespace qv
