// A failed result code as a C++ exception, with the words of the error record when there are some.
#pragma once

#include "qvscriptwells/error_info.h"
#include "qvscriptwells/qv_exception.h"
#include "qvscriptwells/unknown.h"

namespace qv {

// what() (qv_exception.h) is the description, or the code.
class _com_error : public QvException {
 public:
  explicit _com_error(HRESULT code) noexcept;
  _com_error(HRESULT code, const ErrorInfo& info) noexcept;

  HRESULT Error() const noexcept { return code_; }
  // Null when there is no record or the record has no words.
  const WideString& Description() const noexcept { return info_.description; }
  bool HasErrorInfo() const noexcept { return hasInfo_; }

 private:
  HRESULT code_;
  ErrorInfo info_;
  bool hasInfo_ = false;
};

// Throws `_com_error(code)` without a record.
[[noreturn]] void _com_raise_error(HRESULT code);

// Throws for a failed operation of `object` on interface `iid`, with the thread's error record when the
// object says (ISupportErrorInfo) that this interface leaves records. A record that stays unused is left
// waiting.
[[noreturn]] void _com_issue_errorex(HRESULT code, IUnknown* object, const Guid& iid);

// Does nothing for success; otherwise throws with the record that waits on this thread, which may be none: a
// refusal of Invoke or VariantChangeType is a code alone. The usual way for a
// C++ host to call an object of this library, whose operations clear the record when they start:
//   ThrowIfFailed(model->CloseUserSession());
void ThrowIfFailed(HRESULT code);
// The same for objects of any origin, by the rule of _com_issue_errorex.
inline void ThrowIfFailed(HRESULT code, IUnknown* object, const Guid& iid) {
  if (Failed(code)) _com_issue_errorex(code, object, iid);
}

// Asks `object` for `iid` and returns the interface with one reference, for the constructor of a `...Ptr`:
//   IParametersPtr list(static_cast<IParameters*>(QueryFor(object, IParameters::kIid)), false);
// Null for a null object or for one without the interface; any other failure throws `_com_error`.
void* QueryFor(IUnknown* object, const Guid& iid);

}  // namespace qv
