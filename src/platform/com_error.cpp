#include "qvscriptwells/com_error.h"

namespace qv {
namespace {

constexpr char kWithoutMemory[] = "a component reported a failure";

bool LeavesRecords(IUnknown* object, const Guid& iid) {
  void* raw = nullptr;
  if (object == nullptr || Failed(object->QueryInterface(ISupportErrorInfo::kIid, &raw))) return false;
  const ISupportErrorInfoPtr support(static_cast<ISupportErrorInfo*>(raw), false);
  return support->InterfaceSupportsErrorInfo(iid) == S_OK;
}

}  // namespace

_com_error::_com_error(HRESULT code) noexcept
    : QvException(WideString(), code, kWithoutMemory), code_(code) {}

_com_error::_com_error(HRESULT code, const ErrorInfo& info) noexcept
    : QvException(info.description, code, kWithoutMemory), code_(code), info_(info), hasInfo_(true) {}

void _com_raise_error(HRESULT code) {
  throw _com_error(code);
}

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

void* QueryFor(IUnknown* object, const Guid& iid) {
  if (object == nullptr) return nullptr;
  void* raw = nullptr;
  const HRESULT code = object->QueryInterface(iid, &raw);
  if (code == E_NOINTERFACE) return nullptr;
  if (Failed(code)) _com_raise_error(code);
  return raw;
}

}  // namespace qv
