// The failures of a record list: one exception inside, one function that leaves a result code and an error
// record at the edge.
#pragma once

#include <cstddef>
#include <cstdint>

#include "qvscriptwells/result_codes.h"
#include "qvscriptwells/variant.h"

namespace qv {

// Carried from where it happens to the edge. Making one takes no memory.
struct ListRefusal {
  HRESULT code;
  char message[80];  // ASCII
};

// E_ACCESSDENIED; `message` says what is locked.
[[noreturn]] void ThrowLocked(const char* message);
[[noreturn]] void ThrowNoColumn(std::int32_t index, std::size_t count);  // DISP_E_BADINDEX
[[noreturn]] void ThrowNoMoreRecords();                                  // DISP_E_BADINDEX
[[noreturn]] void ThrowBadTag(VARTYPE tag);                              // DISP_E_BADVARTYPE
// E_POINTER for a null output parameter.
void CheckPlace(const void* place);

// For `catch (...)`: the result code of the exception that is being handled, with its message posted as this
// thread's error record. Anything that is not a ListRefusal is lack of memory.
HRESULT ReportListFailure() noexcept;

}  // namespace qv
