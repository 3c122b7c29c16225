// The Duration object that hosts hold.
#pragma once

#include "automation/dispatch_faces.h"
#include "com/module.h"
#include "values/duration_impl.h"

namespace qv {

class Duration final : public DurationDispatch, public IDurationRaw, public ISupportErrorInfo {
 public:
  HRESULT QueryInterface(const Guid& iid, void** object) noexcept override;
  std::uint32_t AddRef() noexcept override { return count_.Add(); }
  std::uint32_t Release() noexcept override;

  HRESULT get_Day(std::int16_t* value) noexcept override;
  HRESULT put_Day(std::int16_t value) noexcept override;
  HRESULT get_Month(std::int16_t* value) noexcept override;
  HRESULT put_Month(std::int16_t value) noexcept override;
  HRESULT get_Year(std::int16_t* value) noexcept override;
  HRESULT put_Year(std::int16_t value) noexcept override;
  HRESULT get_Hour(std::int16_t* value) noexcept override;
  HRESULT put_Hour(std::int16_t value) noexcept override;
  HRESULT get_Min(std::int16_t* value) noexcept override;
  HRESULT put_Min(std::int16_t value) noexcept override;
  HRESULT get_Sec(double* value) noexcept override;
  HRESULT put_Sec(double value) noexcept override;
  HRESULT get_Negative(VARIANT_BOOL* value) noexcept override;
  HRESULT put_Negative(VARIANT_BOOL value) noexcept override;
  HRESULT SetText(const WideString& text) noexcept override;
  HRESULT GetText(WideString* text) noexcept override;

  HRESULT InterfaceSupportsErrorInfo(const Guid& iid) noexcept override;

 private:
  HRESULT Get(std::int16_t* value, std::int16_t (DurationImpl::*get)()) noexcept;
  HRESULT Put(std::int16_t value, void (DurationImpl::*put)(std::int16_t)) noexcept;
  HRESULT Get(double* value, double (DurationImpl::*get)()) noexcept;
  HRESULT Put(double value, void (DurationImpl::*put)(double)) noexcept;

  ModuleLock lock_;
  DurationImpl logic_;
  ReferenceCount count_;
};

}  // namespace qv
