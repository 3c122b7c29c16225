#include "com/guarded.h"

#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/e_qv_exception.h"

namespace qv {
namespace {

constexpr HRESULT kUnknownError = MakeResult(0x80040000);

HRESULT PostErrorRecord(const Guid& classId, WideString message, HRESULT code) {
  if (message.IsNull()) {
    message = u"Unknown Error";
    if (code == 0) code = kUnknownError;
  }
  ErrorInfo record;
  static_cast<void>(ProgIDFromCLSID(classId, &record.source));  // null if it fails
  record.description = message;
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

HRESULT ResultFromCaughtException(const Guid& classId) noexcept {
  try {
    return PostCaughtException(classId);
  } catch (...) {
    return E_OUTOFMEMORY;  // no memory for the record
  }
}

}  // namespace qv
