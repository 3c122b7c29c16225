#include "automation/duration.h"

#include "automation/object_support.h"
#include "qvscriptwells/com_error.h"
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
      {IDurationRaw::kIid, static_cast<IDurationRaw*>(this), static_cast<IDuration*>(this)},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), static_cast<IDuration*>(this)},
  };
  return AnswerQuery(rows, 3, iid, object);
}

std::uint32_t Duration::Release() noexcept {
  const std::uint32_t left = --count_;
  if (left == 0) delete this;
  return left;
}

HRESULT Duration::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IDuration::kIid ? S_OK : S_FALSE;
}

HRESULT Duration::get_Day(std::int16_t* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_Day();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::put_Day(std::int16_t value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_Day(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::get_Month(std::int16_t* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_Month();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::put_Month(std::int16_t value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_Month(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::get_Year(std::int16_t* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_Year();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::put_Year(std::int16_t value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_Year(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::get_Hour(std::int16_t* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_Hour();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::put_Hour(std::int16_t value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_Hour(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::get_Min(std::int16_t* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_Min();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::put_Min(std::int16_t value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_Min(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::get_Sec(double* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_Sec();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::put_Sec(double value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_Sec(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::get_Negative(VARIANT_BOOL* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_Negative();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::put_Negative(VARIANT_BOOL value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_Negative(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::SetText(const WideString& text) noexcept {
  ClearErrorInfo();
  try {
    logic_.SetText(text);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Duration::GetText(WideString* text) noexcept {
  ClearErrorInfo();
  if (text == nullptr) return E_POINTER;
  try {
    *text = logic_.GetText();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

}  // namespace qv
