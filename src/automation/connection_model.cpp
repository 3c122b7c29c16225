#include "automation/connection_model.h"

#include <iterator>

#include "automation/object_support.h"
#include "qvscriptwells/class_ids.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/create_objects.h"
#include "qvscriptwells/error_info.h"

namespace qv {

IConnectionModelPtr CreateConnectionModel() {
  return IConnectionModelPtr(new ConnectionModel);
}

IConnectionModelPtr CreateConnectionModel(const WideString& serverName, const WideString& proxy,
                                          IUnknown* services) {
  auto* const object = new ConnectionModel;
  IConnectionModelPtr model(object);
  ThrowIfFailed(object->SetServer(serverName, proxy));
  ThrowIfFailed(object->SetClientServices(services));
  return model;
}

HRESULT ConnectionModel::QueryInterface(const Guid& iid, void** object) noexcept {
  const InterfaceRow rows[] = {
      {IConnectionModel::kIid, static_cast<IConnectionModel*>(this), static_cast<IConnectionModel*>(this)},
      {IDispatch::kIid, static_cast<IConnectionModel*>(this), static_cast<IConnectionModel*>(this)},
      {IConnectionModelRaw::kIid, static_cast<IConnectionModelRaw*>(this),
       static_cast<IConnectionModel*>(this)},
      {ISupportErrorInfo::kIid, static_cast<ISupportErrorInfo*>(this), static_cast<IConnectionModel*>(this)},
  };
  return AnswerQuery(rows, std::size(rows), iid, object);
}

std::uint32_t ConnectionModel::Release() noexcept {
  const std::uint32_t left = count_.Drop();
  if (left == 0) delete this;
  return left;
}

HRESULT ConnectionModel::InterfaceSupportsErrorInfo(const Guid& iid) noexcept {
  return iid == IConnectionModel::kIid ? S_OK : S_FALSE;
}

HRESULT ConnectionModel::CreateUserSession(const WideString& connectionString) noexcept {
  ClearErrorInfo();
  try {
    const IConnectionModelPtr self(this);
    logic_.CreateUserSession(connectionString);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_ConnectionModel);
  }
}

HRESULT ConnectionModel::CloseUserSession() noexcept {
  ClearErrorInfo();
  try {
    const IConnectionModelPtr self(this);
    logic_.CloseUserSession();
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_ConnectionModel);
  }
}

HRESULT ConnectionModel::Execute(const WideString& scriptLanguage, const WideString& script,
                                 IParameters* parameters, Variant* result) noexcept {
  ClearErrorInfo();
  if (result == nullptr) return E_POINTER;
  try {
    const IConnectionModelPtr self(this);
    *result = logic_.Execute(scriptLanguage, script, parameters);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_ConnectionModel);
  }
}

HRESULT ConnectionModel::ExecuteFile(const WideString& scriptFile, IParameters* parameters,
                                     Variant* result) noexcept {
  ClearErrorInfo();
  if (result == nullptr) return E_POINTER;
  try {
    const IConnectionModelPtr self(this);
    *result = logic_.ExecuteFile(scriptFile, parameters);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_ConnectionModel);
  }
}

HRESULT ConnectionModel::SetUSID(const WideString& usid) noexcept {
  ClearErrorInfo();
  try {
    logic_.SetUSID(usid);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_ConnectionModel);
  }
}

HRESULT ConnectionModel::DownloadFile(const WideString& url, const WideString& target,
                                      WideString* path) noexcept {
  ClearErrorInfo();
  if (path == nullptr) return E_POINTER;
  try {
    const IConnectionModelPtr self(this);
    *path = logic_.DownloadFile(url, target);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_ConnectionModel);
  }
}

HRESULT ConnectionModel::SetServer(const WideString& serverName, const WideString& proxy) noexcept {
  ClearErrorInfo();
  try {
    logic_.SetServer(serverName, proxy);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_ConnectionModel);
  }
}

HRESULT ConnectionModel::SetClientServices(IUnknown* services) noexcept {
  ClearErrorInfo();
  try {
    const IConnectionModelPtr self(this);
    logic_.SetClientServices(services);
    return S_OK;
  } catch (...) {
    return ResultFromCaughtException(CLSID_ConnectionModel);
  }
}

}  // namespace qv
