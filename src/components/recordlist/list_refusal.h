// The failures of a record list: one exception inside, one function that turns exceptions into a result code
// and an error record.
#pragma once

#include <cstddef>
#include <cstdint>

#include "qvscriptwells/result_codes.h"
#include "qvscriptwells/variant.h"

namespace qv {

// Thrown inside the component; no interface operation lets it out. Creating one allocates no memory.
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

// For `catch (...)`: returns the result code of the current exception and posts its message as this thread's
// error record. Anything that is not a ListRefusal is lack of memory.
HRESULT ReportListFailure() noexcept;

}  // namespace qv
