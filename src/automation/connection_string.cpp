#include "automation/connection_string.h"

#include <iterator>

#include "automation/object_support.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {

IConnectionStringPtr CreateConnectionString() {
  return IConnectionStringPtr(new ConnectionString);
}

HRESULT ConnectionString::QueryInterface(const Guid& iid, void** object) noexcept {
  const InterfaceRow rows[] = {
      {IConnectionString::kIid, static_cast<IConnectionString*>(this), static_cast<IConnectionString*>(this)},
      {IDispatch::kIid, static_cast<IConnectionString*>(this), static_cast<IConnectionString*>(this)},
      {IConnectionStringRaw::kIid, static_cast<IConnectionStringRaw*>(this),
       static_cast<IConnectionString*>(this)},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), static_cast<IConnectionString*>(this)},
  };
  return AnswerQuery(rows, std::size(rows), iid, object);
}

std::uint32_t ConnectionString::Release() noexcept {
  const std::uint32_t left = count_.Drop();
  if (left == 0) delete this;
  return left;
}

HRESULT ConnectionString::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IConnectionString::kIid ? S_OK : S_FALSE;
}

HRESULT ConnectionString::put_UserName(const WideString& value) noexcept {
  return Put(value, &ConnectionStringImpl::put_UserName);
}
HRESULT ConnectionString::get_UserName(WideString* value) noexcept {
  return Get(value, &ConnectionStringImpl::get_UserName);
}
HRESULT ConnectionString::get_UserPassword(WideString* value) noexcept {
  return Get(value, &ConnectionStringImpl::get_UserPassword);
}
HRESULT ConnectionString::put_UserPassword(const WideString& value) noexcept {
  return Put(value, &ConnectionStringImpl::put_UserPassword);
}
HRESULT ConnectionString::get_DatabaseName(WideString* value) noexcept {
  return Get(value, &ConnectionStringImpl::get_DatabaseName);
}
HRESULT ConnectionString::put_DatabaseName(const WideString& value) noexcept {
  return Put(value, &ConnectionStringImpl::put_DatabaseName);
}
HRESULT ConnectionString::get_ReplicaID(WideString* value) noexcept {
  return Get(value, &ConnectionStringImpl::get_ReplicaID);
}
HRESULT ConnectionString::put_ReplicaID(const WideString& value) noexcept {
  return Put(value, &ConnectionStringImpl::put_ReplicaID);
}
HRESULT ConnectionString::get_DatabaseID(WideString* value) noexcept {
  return Get(value, &ConnectionStringImpl::get_DatabaseID);
}
HRESULT ConnectionString::put_DatabaseID(const WideString& value) noexcept {
  return Put(value, &ConnectionStringImpl::put_DatabaseID);
}
HRESULT ConnectionString::ToString(WideString* text) noexcept {
  return Get(text, &ConnectionStringImpl::ToString);
}
HRESULT ConnectionString::Initialize(const WideString& connectionString) noexcept {
  return Put(connectionString, &ConnectionStringImpl::Initialize);
}

HRESULT ConnectionString::Get(WideString* value, WideString (ConnectionStringImpl::*get)()) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = (logic_.*get)();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_ConnectionString);
  }
}

HRESULT ConnectionString::Put(const WideString& value,
                              void (ConnectionStringImpl::*put)(WideString)) noexcept {
  ClearErrorInfo();
  try {
    (logic_.*put)(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_ConnectionString);
  }
}

}  // namespace qv
