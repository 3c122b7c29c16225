#include "automation/url.h"

#include "automation/object_support.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {

IUrlPtr CreateUrl() {
  return IUrlPtr(new Url);
}

HRESULT Url::QueryInterface(const Guid& iid, void** object) noexcept {
  const InterfaceRow rows[] = {
      {IUrl::kIid, static_cast<IUrl*>(this), static_cast<IUrl*>(this)},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), static_cast<IUrl*>(this)},
  };
  return AnswerQuery(rows, 2, iid, object);
}

std::uint32_t Url::Release() noexcept {
  const std::uint32_t left = --count_;
  if (left == 0) delete this;
  return left;
}

HRESULT Url::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IUrl::kIid ? S_OK : S_FALSE;
}

HRESULT Url::get_UrlCaption(WideString* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_UrlCaption();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Url::put_UrlCaption(const WideString& value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_UrlCaption(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Url::get_Url(WideString* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_Url();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Url::put_Url(const WideString& value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_Url(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT Url::ToString(WideString* text) noexcept {
  ClearErrorInfo();
  if (text == nullptr) return E_POINTER;
  try {
    *text = logic_.ToString();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

}  // namespace qv
