#include "automation/connection_string.h"

#include "automation/object_support.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {

IConnectionStringPtr CreateConnectionString() {
  return IConnectionStringPtr(new ConnectionString);
}

HRESULT ConnectionString::QueryInterface(const Guid& iid, void** object) noexcept {
  const InterfaceRow rows[] = {
      {IConnectionString::kIid, static_cast<IConnectionString*>(this), static_cast<IConnectionString*>(this)},
      {IConnectionStringRaw::kIid, static_cast<IConnectionStringRaw*>(this),
       static_cast<IConnectionString*>(this)},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), static_cast<IConnectionString*>(this)},
  };
  return AnswerQuery(rows, 3, iid, object);
}

std::uint32_t ConnectionString::Release() noexcept {
  const std::uint32_t left = --count_;
  if (left == 0) delete this;
  return left;
}

HRESULT ConnectionString::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IConnectionString::kIid ? S_OK : S_FALSE;
}

HRESULT ConnectionString::put_UserName(const WideString& value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_UserName(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::get_UserName(WideString* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_UserName();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::get_UserPassword(WideString* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_UserPassword();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::put_UserPassword(const WideString& value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_UserPassword(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::get_DatabaseName(WideString* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_DatabaseName();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::put_DatabaseName(const WideString& value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_DatabaseName(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::get_ReplicaID(WideString* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_ReplicaID();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::put_ReplicaID(const WideString& value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_ReplicaID(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::get_DatabaseID(WideString* value) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = logic_.get_DatabaseID();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::put_DatabaseID(const WideString& value) noexcept {
  ClearErrorInfo();
  try {
    logic_.put_DatabaseID(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::ToString(WideString* text) noexcept {
  ClearErrorInfo();
  if (text == nullptr) return E_POINTER;
  try {
    *text = logic_.ToString();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

HRESULT ConnectionString::Initialize(const WideString& connectionString) noexcept {
  ClearErrorInfo();
  try {
    logic_.Initialize(connectionString);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException();
  }
}

}  // namespace qv
