#include "automation/url.h"

#include <iterator>

#include "automation/object_support.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {

IUrlPtr CreateUrl() {
  return IUrlPtr(new Url);
}

HRESULT Url::QueryInterface(const Guid& iid, void** object) noexcept {
  const InterfaceRow rows[] = {
      {IUrl::kIid, static_cast<IUrl*>(this), static_cast<IUrl*>(this)},
      {IDispatch::kIid, static_cast<IUrl*>(this), static_cast<IUrl*>(this)},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), static_cast<IUrl*>(this)},
  };
  return AnswerQuery(rows, std::size(rows), iid, object);
}

std::uint32_t Url::Release() noexcept {
  const std::uint32_t left = count_.Drop();
  if (left == 0) delete this;
  return left;
}

HRESULT Url::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IUrl::kIid ? S_OK : S_FALSE;
}

HRESULT Url::get_UrlCaption(WideString* value) noexcept {
  return Get(value, &UrlImpl::get_UrlCaption);
}
HRESULT Url::put_UrlCaption(const WideString& value) noexcept {
  return Put(value, &UrlImpl::put_UrlCaption);
}
HRESULT Url::get_Url(WideString* value) noexcept {
  return Get(value, &UrlImpl::get_Url);
}
HRESULT Url::put_Url(const WideString& value) noexcept {
  return Put(value, &UrlImpl::put_Url);
}
HRESULT Url::ToString(WideString* text) noexcept {
  return Get(text, &UrlImpl::ToString);
}

HRESULT Url::Get(WideString* value, WideString (UrlImpl::*get)()) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = (logic_.*get)();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Url);
  }
}

HRESULT Url::Put(const WideString& value, void (UrlImpl::*put)(WideString)) noexcept {
  ClearErrorInfo();
  try {
    (logic_.*put)(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Url);
  }
}

}  // namespace qv
