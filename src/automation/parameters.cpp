#include "automation/parameters.h"

#include <iterator>

#include "automation/object_support.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {

IParametersPtr CreateParameters() {
  return IParametersPtr(new Parameters);
}

HRESULT Parameters::QueryInterface(const Guid& iid, void** object) noexcept {
  const InterfaceRow rows[] = {
      {IParameters::kIid, static_cast<IParameters*>(this), static_cast<IParameters*>(this)},
      {IDispatch::kIid, static_cast<IParameters*>(this), static_cast<IParameters*>(this)},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), static_cast<IParameters*>(this)},
  };
  return AnswerQuery(rows, std::size(rows), iid, object);
}

std::uint32_t Parameters::Release() noexcept {
  const std::uint32_t left = count_.Drop();
  if (left == 0) delete this;
  return left;
}

HRESULT Parameters::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IParameters::kIid ? S_OK : S_FALSE;
}

HRESULT Parameters::Add(const WideString& key, const Variant& value, IParameter** added) noexcept {
  ClearErrorInfo();
  try {
    const IParametersPtr self(this);
    IParameterPtr parameter = logic_.Add(key, value);
    if (added != nullptr) *added = parameter.detach();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Parameters);
  }
}

HRESULT Parameters::Remove(std::int16_t index) noexcept {
  ClearErrorInfo();
  try {
    const IParametersPtr self(this);
    logic_.Remove(index);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Parameters);
  }
}

HRESULT Parameters::Find(std::int16_t index, IParameter** found) noexcept {
  ClearErrorInfo();
  if (found == nullptr) return E_POINTER;
  try {
    *found = logic_.Find(index).detach();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Parameters);
  }
}

HRESULT Parameters::Size(std::int16_t* size) noexcept {
  ClearErrorInfo();
  if (size == nullptr) return E_POINTER;
  try {
    *size = logic_.Size();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Parameters);
  }
}

HRESULT Parameters::Clear() noexcept {
  ClearErrorInfo();
  try {
    const IParametersPtr self(this);
    logic_.Clear();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_Parameters);
  }
}

}  // namespace qv
