#include "automation/parameter.h"

#include <iterator>

#include "automation/object_support.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {

IParameterPtr CreateParameter() {
  return IParameterPtr(new Parameter);
}

HRESULT Parameter::QueryInterface(const Guid& iid, void** object) noexcept {
  const InterfaceRow rows[] = {
      {IParameter::kIid, static_cast<IParameter*>(this), static_cast<IParameter*>(this)},
      {IDispatch::kIid, static_cast<IParameter*>(this), static_cast<IParameter*>(this)},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), static_cast<IParameter*>(this)},
  };
  return AnswerQuery(rows, std::size(rows), iid, object);
}

std::uint32_t Parameter::Release() noexcept {
  const std::uint32_t left = count_.Drop();
  if (left == 0) delete this;
  return left;
}

HRESULT Parameter::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IParameter::kIid ? S_OK : S_FALSE;
}

HRESULT Parameter::SetValues(const WideString& key, const Variant& value) noexcept {
  ClearErrorInfo();
  try {
    const IParameterPtr self(this);
    logic_.SetValues(key, value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Parameter);
  }
}

HRESULT Parameter::get_ParamKey(WideString* key) noexcept {
  ClearErrorInfo();
  if (key == nullptr) return E_POINTER;
  try {
    *key = logic_.get_ParamKey();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Parameter);
  }
}

HRESULT Parameter::get_ParamValue(Variant* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    const IParameterPtr self(this);
    *value = logic_.get_ParamValue();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Parameter);
  }
}

HRESULT Parameter::get_ParamTypeAsString(WideString* typeName) noexcept {
  ClearErrorInfo();
  if (typeName == nullptr) return E_POINTER;
  try {
    const IParameterPtr self(this);
    *typeName = logic_.get_ParamTypeAsString();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Parameter);
  }
}

}  // namespace qv
