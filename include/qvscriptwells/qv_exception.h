// SPDX-License-Identifier: Apache-2.0
// The base of the exceptions that this library throws: EQvException (e_qv_exception.h) and `_com_error`
// (com_error.h). Catching it, or std::exception, is enough for a program that only reports the failure:
//   catch (const qv::QvException& error) { std::cerr << error.what() << "\n"; }
// Values: copying never fails and copies one pointer. Threads: copies on several threads may share one text.
#pragma once

#include <exception>
#include <memory>
#include <string>

#include "qvscriptwells/result_codes.h"
#include "qvscriptwells/wide_string.h"

namespace qv {

class QvException : public std::exception {
 public:
  // The message in UTF-8 up to its first null unit, or the result code as "0x80004003" when there is no
  // message; a fixed text when no memory was left to make this one. It may come from a server: escape control
  // characters before it reaches a terminal. Borrowed: valid while this object or a copy lives.
  const char* what() const noexcept override;

 protected:
  // `withoutMemory` is the fixed text, with static lifetime.
  QvException(const WideString& message, HRESULT code, const char* withoutMemory) noexcept;

 private:
  std::shared_ptr<const std::string> text_;  // null without memory
  const char* withoutMemory_;
};

}  // namespace qv
