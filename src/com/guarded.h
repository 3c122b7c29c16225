// Runs the operations of objects: turns exceptions into result codes and error records.
#pragma once

#include "qvscriptwells/error_info.h"

namespace qv {

// For `catch (...)`: returns the result code of the current exception and posts an error record.
//   EQvException: its message; its code, or DISP_E_EXCEPTION for 0.
//   _com_error: the message of its record; its code.
//   Anything else: E_UNEXPECTED, no record.
// A null message becomes "Unknown Error", with 0x80040000 in place of a code of 0. The source of the record
// is the ProgID of the class that failed, if the registry has one.
HRESULT ResultFromCaughtException(const Guid& classId) noexcept;

// Clears the thread's error record and runs `operation`. After an exception, `report` returns the result code
// and posts the record. By then all local references of the operation are released, since released objects
// may call operations that clear the record.
template <class Report, class Operation>
HRESULT GuardedBy(const Report& report, const Operation& operation) noexcept {
  ClearErrorInfo();
  try {
    operation();
    return S_OK;
  } catch (...) {
    return report();
  }
}

// The same for an operation with an output parameter: a null one is E_POINTER, after the record is cleared.
template <class Report, class Operation>
HRESULT GuardedBy(const Report& report, const void* result, const Operation& operation) noexcept {
  if (result != nullptr) return GuardedBy(report, operation);
  ClearErrorInfo();
  return E_POINTER;
}

// The logic of an object of class `kClassId`, which is called under the guard only.
template <class Logic, const Guid& kClassId>
class GuardedLogic {
 public:
  template <class Operation>
  HRESULT Run(const Operation& operation) noexcept {
    return GuardedBy(Report, [&] { operation(logic_); });
  }
  template <class Operation>
  HRESULT Run(const void* result, const Operation& operation) noexcept {
    return GuardedBy(Report, result, [&] { operation(logic_); });
  }

  // Reads and writes a property.
  template <class Value>
  HRESULT Get(Value* value, Value (Logic::*get)()) noexcept {
    return Run(value, [&](Logic& logic) { *value = (logic.*get)(); });
  }
  template <class Given, class Value>
  HRESULT Put(const Given& value, void (Logic::*put)(Value)) noexcept {
    return Run([&](Logic& logic) { (logic.*put)(value); });
  }

 private:
  static HRESULT Report() noexcept { return ResultFromCaughtException(kClassId); }

  Logic logic_;
};

}  // namespace qv
