#include "automation/duration.h"

#include <iterator>

#include "automation/object_support.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {

IDurationPtr CreateDuration() {
  return IDurationPtr(new Duration);
}

IDurationPtr CreateDuration(const WideString& text) {
  auto* const object = new Duration;
  IDurationPtr duration(object);
  ThrowIfFailed(object->SetText(text));
  return duration;
}

HRESULT Duration::QueryInterface(const Guid& iid, void** object) noexcept {
  const InterfaceRow rows[] = {
      {IDuration::kIid, static_cast<IDuration*>(this), static_cast<IDuration*>(this)},
      {IDispatch::kIid, static_cast<IDuration*>(this), static_cast<IDuration*>(this)},
      {IDurationRaw::kIid, static_cast<IDurationRaw*>(this), static_cast<IDuration*>(this)},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), static_cast<IDuration*>(this)},
  };
  return AnswerQuery(rows, std::size(rows), iid, object);
}

std::uint32_t Duration::Release() noexcept {
  const std::uint32_t left = count_.Drop();
  if (left == 0) delete this;
  return left;
}

HRESULT Duration::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IDuration::kIid ? S_OK : S_FALSE;
}

HRESULT Duration::get_Day(std::int16_t* value) noexcept {
  return Get(value, &DurationImpl::get_Day);
}
HRESULT Duration::put_Day(std::int16_t value) noexcept {
  return Put(value, &DurationImpl::put_Day);
}
HRESULT Duration::get_Month(std::int16_t* value) noexcept {
  return Get(value, &DurationImpl::get_Month);
}
HRESULT Duration::put_Month(std::int16_t value) noexcept {
  return Put(value, &DurationImpl::put_Month);
}
HRESULT Duration::get_Year(std::int16_t* value) noexcept {
  return Get(value, &DurationImpl::get_Year);
}
HRESULT Duration::put_Year(std::int16_t value) noexcept {
  return Put(value, &DurationImpl::put_Year);
}
HRESULT Duration::get_Hour(std::int16_t* value) noexcept {
  return Get(value, &DurationImpl::get_Hour);
}
HRESULT Duration::put_Hour(std::int16_t value) noexcept {
  return Put(value, &DurationImpl::put_Hour);
}
HRESULT Duration::get_Min(std::int16_t* value) noexcept {
  return Get(value, &DurationImpl::get_Min);
}
HRESULT Duration::put_Min(std::int16_t value) noexcept {
  return Put(value, &DurationImpl::put_Min);
}
HRESULT Duration::get_Sec(double* value) noexcept {
  return Get(value, &DurationImpl::get_Sec);
}
HRESULT Duration::put_Sec(double value) noexcept {
  return Put(value, &DurationImpl::put_Sec);
}
HRESULT Duration::get_Negative(VARIANT_BOOL* value) noexcept {
  return Get(value, &DurationImpl::get_Negative);
}
HRESULT Duration::put_Negative(VARIANT_BOOL value) noexcept {
  return Put(value, &DurationImpl::put_Negative);
}
HRESULT Duration::SetText(const WideString& text) noexcept {
  ClearErrorInfo();
  try {
    logic_.SetText(text);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Duration);
  }
}

HRESULT Duration::GetText(WideString* text) noexcept {
  ClearErrorInfo();
  if (text == nullptr) return E_POINTER;
  try {
    *text = logic_.GetText();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Duration);
  }
}

HRESULT Duration::Get(std::int16_t* value, std::int16_t (DurationImpl::*get)()) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = (logic_.*get)();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Duration);
  }
}

HRESULT Duration::Put(std::int16_t value, void (DurationImpl::*put)(std::int16_t)) noexcept {
  ClearErrorInfo();
  try {
    (logic_.*put)(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Duration);
  }
}

HRESULT Duration::Get(double* value, double (DurationImpl::*get)()) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = (logic_.*get)();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Duration);
  }
}

HRESULT Duration::Put(double value, void (DurationImpl::*put)(double)) noexcept {
  ClearErrorInfo();
  try {
    (logic_.*put)(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Duration);
  }
}

}  // namespace qv
