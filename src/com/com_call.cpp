#include "qvscriptwells/com_call.h"

#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

bool LeavesRecords(IUnknown* object, const Guid& iid) {
  void* raw = nullptr;
  if (object == nullptr || Failed(object->QueryInterface(ISupportErrorInfo::kIid, &raw))) return false;
  const ISupportErrorInfoPtr support(static_cast<ISupportErrorInfo*>(raw), false);
  return support->InterfaceSupportsErrorInfo(iid) == S_OK;
}

}  // namespace

void _com_issue_errorex(HRESULT code, IUnknown* object, const Guid& iid) {
  ErrorInfo info;
  if (LeavesRecords(object, iid) && GetErrorInfo(&info)) throw _com_error(code, info);
  throw _com_error(code);
}

void ThrowIfFailed(HRESULT code) {
  if (Succeeded(code)) return;
  ErrorInfo info;
  if (GetErrorInfo(&info)) throw _com_error(code, info);
  throw _com_error(code);
}

void* QueryReference(IUnknown* object, const Guid& iid) {
  if (object == nullptr) return nullptr;
  void* raw = nullptr;
  const HRESULT code = object->QueryInterface(iid, &raw);
  if (code == E_NOINTERFACE) return nullptr;
  if (Failed(code)) _com_raise_error(code);
  return raw;
}

}  // namespace qv
