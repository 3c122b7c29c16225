// What the objects that hosts hold have in common: the answer to QueryInterface, and the one place where
// exceptions become result codes and an error record.
#pragma once

#include <cstddef>

#include "qvscriptwells/unknown.h"

namespace qv {

// One interface of an object; `pointer` is the object as that interface. The first row stands for IUnknown
// too.
struct InterfaceRow {
  Guid iid;
  void* pointer;
  IUnknown* counted;
};

HRESULT AnswerQuery(const InterfaceRow* rows, std::size_t count, const Guid& iid, void** object) noexcept;

// For `catch (...)` around the logic: the result code for the host, with the error record posted.
//   EQvException: its words; its code, or DISP_E_EXCEPTION for 0.
//   _com_error: the words of its record; its code.
//   Anything else: E_UNEXPECTED, no record.
// Words that are null read "Unknown Error", with 0x80040000 in place of a code of 0. The source of the record
// is the ProgID of the class that failed, where the registry knows one.
HRESULT ResultFromCaughtException(const Guid& classId) noexcept;

}  // namespace qv
