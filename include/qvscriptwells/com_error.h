// SPDX-License-Identifier: Apache-2.0
// What a failed operation reports: the content of an error record, and a failed result code as an exception.
#pragma once

#include <cstdint>
#include <string>

#include "qvscriptwells/guid.h"
#include "qvscriptwells/qv_exception.h"

namespace qv {

// The error message that a failed operation leaves in addition to its result code (error_info.h).
struct ErrorInfo {
  Guid interfaceId{};      // which interface failed; all zero if unknown
  WideString source;       // ProgID of the class that failed, or null
  WideString description;  // the message for a person, or null
  WideString helpFile;     // null in records of this library
  std::uint32_t helpContext = 0;
};

// what() (qv_exception.h) is the description, or the code.
class _com_error : public QvException {
 public:
  explicit _com_error(HRESULT code) noexcept;
  _com_error(HRESULT code, const ErrorInfo& info) noexcept;

  HRESULT Error() const noexcept { return code_; }
  // Null if there is no record or the record has no message.
  const WideString& Description() const noexcept { return info_.description; }
  bool HasErrorInfo() const noexcept { return hasInfo_; }

 private:
  HRESULT code_;
  ErrorInfo info_;
  bool hasInfo_ = false;
};

// Throws `_com_error(code)` without a record.
[[noreturn]] void _com_raise_error(HRESULT code);
// Throws `_com_error` with this message, in UTF-8, as its description.
[[noreturn]] void RaiseWithWords(HRESULT code, const std::string& words);

}  // namespace qv
