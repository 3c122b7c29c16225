// SPDX-License-Identifier: Apache-2.0
// The library's own exception: a message and a result code. Only functions of these headers that say so throw
// it; interface operations turn it into a result code and an error record.
#pragma once

#include "qvscriptwells/qv_exception.h"
#include "qvscriptwells/result_codes.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

// what() (qv_exception.h) is the description, or the code.
class EQvException : public QvException {
 public:
  // A code of 0 stays 0; any other gets the bits of 0x80040000, so a server's error number 5 becomes
  // 0x80040005.
  explicit EQvException(const WideString& description, HRESULT code = 0) noexcept;

  // May be null.
  const WideString& Description() const noexcept { return description_; }
  HRESULT Code() const noexcept { return code_; }

 private:
  WideString description_;
  HRESULT code_;
};

}  // namespace qv
