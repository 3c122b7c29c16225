#include "automation/qv_scriptwells.h"

#include <iterator>
#include <new>

#include "automation/object_support.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {

HRESULT CreateQvScriptwellsObject(IUnknown* outer, const Guid& iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  if (outer != nullptr && iid != IUnknown::kIid) return CLASS_E_NOAGGREGATION;
  try {
    const IUnknownPtr inner((new QvScriptwells(outer))->Inner());
    return inner->QueryInterface(iid, object);
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

IQvScriptwellsPtr CreateQvScriptwells() {
  return IQvScriptwellsPtr(new QvScriptwells(nullptr));
}

IQvScriptwellsPtr CreateQvScriptwells(const WideString& serverName, const WideString& proxy,
                                      IQvServiceProvider* provider) {
  auto* const object = new QvScriptwells(nullptr);
  IQvScriptwellsPtr client(object);
  ThrowIfFailed(object->Init(provider));
  ThrowIfFailed(object->put_ServerName(serverName));
  ThrowIfFailed(object->put_Proxy(proxy));
  return client;
}

IConnectionModelPtr ModelOf(IQvScriptwells* client) {
  if (client == nullptr) _com_raise_error(E_POINTER);
  IConnectionModel* raw = nullptr;
  ThrowIfFailed(client->ConnectionModel(&raw));
  return IConnectionModelPtr(raw, false);
}

QvScriptwells::QvScriptwells(IUnknown* outer)
    : inner_(this), controlling_(outer == nullptr ? &inner_ : outer) {}

HRESULT QvScriptwells::InnerUnknown::QueryInterface(const Guid& iid, void** object) noexcept {
  return owner_->AnswerInnerQuery(iid, object);
}

std::uint32_t QvScriptwells::InnerUnknown::Release() noexcept {
  const std::uint32_t left = count_.Drop();
  if (left == 0) delete owner_;
  return left;
}

HRESULT QvScriptwells::QueryInterface(const Guid& iid, void** object) noexcept {
  return controlling_->QueryInterface(iid, object);
}

HRESULT QvScriptwells::AnswerInnerQuery(const Guid& iid, void** object) noexcept {
  auto* const first = static_cast<IQvScriptwells*>(this);
  const InterfaceRow rows[] = {
      {IUnknown::kIid, &inner_, &inner_},
      {IQvScriptwells::kIid, first, first},
      {IDispatch::kIid, first, first},
      {IQvClientServiceRaw::kIid, static_cast<IQvClientServiceRaw*>(this), first},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), first},
      {IProvideClassInfo::kIid, static_cast<IProvideClassInfo*>(this), first},
  };
  return AnswerQuery(rows, std::size(rows), iid, object);
}

HRESULT QvScriptwells::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IQvScriptwells::kIid ? S_OK : S_FALSE;
}

HRESULT QvScriptwells::GetClassInfo(ITypeInfo** info) noexcept {
  if (info == nullptr) return E_POINTER;
  *info = nullptr;
  return TYPE_E_CANTLOADLIBRARY;
}

// A host's services are called on the way, and may release this object.
HRESULT QvScriptwells::ConnectionModel(IConnectionModel** model) noexcept {
  ClearErrorInfo();
  if (model == nullptr) return E_POINTER;
  try {
    const IQvScriptwellsPtr self(this);
    *model = logic_.get_ConnectionModel().detach();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

HRESULT QvScriptwells::Url(IUrl** url) noexcept {
  ClearErrorInfo();
  if (url == nullptr) return E_POINTER;
  try {
    *url = logic_.get_Url().detach();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

HRESULT QvScriptwells::Duration(IDuration** duration) noexcept {
  ClearErrorInfo();
  if (duration == nullptr) return E_POINTER;
  try {
    *duration = logic_.get_Duration().detach();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

HRESULT QvScriptwells::ConnectionString(IConnectionString** connectionString) noexcept {
  ClearErrorInfo();
  if (connectionString == nullptr) return E_POINTER;
  try {
    const IQvScriptwellsPtr self(this);
    *connectionString = logic_.get_ConnectionString().detach();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

HRESULT QvScriptwells::AttachedFile(IAttachedFile** file) noexcept {
  ClearErrorInfo();
  if (file == nullptr) return E_POINTER;
  try {
    *file = logic_.get_AttachedFile().detach();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

HRESULT QvScriptwells::Parameters(IParameters** parameters) noexcept {
  ClearErrorInfo();
  if (parameters == nullptr) return E_POINTER;
  try {
    *parameters = logic_.get_Parameters().detach();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

HRESULT QvScriptwells::get_ServerName(WideString* serverName) noexcept {
  return Get(serverName, &QvScriptwellsImpl::get_ServerName);
}
HRESULT QvScriptwells::put_ServerName(const WideString& serverName) noexcept {
  return Put(serverName, &QvScriptwellsImpl::put_ServerName);
}
HRESULT QvScriptwells::get_Proxy(WideString* proxy) noexcept {
  return Get(proxy, &QvScriptwellsImpl::get_Proxy);
}
HRESULT QvScriptwells::put_Proxy(const WideString& proxy) noexcept {
  return Put(proxy, &QvScriptwellsImpl::put_Proxy);
}

HRESULT QvScriptwells::Init(IUnknown* pVal) noexcept {
  ClearErrorInfo();
  try {
    const IQvScriptwellsPtr self(this);
    logic_.Init(pVal);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

HRESULT QvScriptwells::Get(WideString* value, WideString (QvScriptwellsImpl::*get)()) noexcept {
  ClearErrorInfo();
  if (value == nullptr) return E_POINTER;
  try {
    *value = (logic_.*get)();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

HRESULT QvScriptwells::Put(const WideString& value, void (QvScriptwellsImpl::*put)(WideString)) noexcept {
  ClearErrorInfo();
  try {
    (logic_.*put)(value);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_QvScriptwells);
  }
}

}  // namespace qv
