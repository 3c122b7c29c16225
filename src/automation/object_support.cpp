#include "automation/object_support.h"

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/e_qv_exception.h"
#include "qvscriptwells/error_info.h"

namespace qv {
namespace {

constexpr HRESULT kUnknownError = MakeResult(0x80040000);

HRESULT PostErrorRecord(const Guid& classId, WideString text, HRESULT code) {
  if (text.IsNull()) {
    text = u"Unknown Error";
    if (code == 0) code = kUnknownError;
  }
  ErrorInfo record;
  static_cast<void>(ProgIDFromCLSID(classId, &record.source));  // null when it fails
  record.description = text;
  SetErrorInfo(record);
  return code == 0 ? DISP_E_EXCEPTION : code;
}

HRESULT PostCaughtException(const Guid& classId) {
  try {
    throw;
  } catch (const EQvException& error) {
    return PostErrorRecord(classId, error.Description(), error.Code());
  } catch (const _com_error& error) {
    return PostErrorRecord(classId, error.Description(), error.Error());
  } catch (...) {
    return E_UNEXPECTED;
  }
}

}  // namespace

HRESULT AnswerQuery(const InterfaceRow* rows, std::size_t count, const Guid& iid, void** object) noexcept {
  if (object == nullptr) return E_POINTER;
  *object = nullptr;
  for (std::size_t i = 0; i < count; ++i) {
    if (rows[i].iid != iid && !(i == 0 && iid == IUnknown::kIid)) continue;
    *object = rows[i].pointer;
    rows[i].counted->AddRef();
    return S_OK;
  }
  return E_NOINTERFACE;
}

HRESULT ResultFromCaughtException(const Guid& classId) noexcept {
  try {
    return PostCaughtException(classId);
  } catch (...) {
    return E_OUTOFMEMORY;  // not even the record could be made
  }
}

}  // namespace qv
