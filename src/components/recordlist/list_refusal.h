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
  char words[80];  // ASCII
};

// E_ACCESSDENIED; `words` say what is locked.
[[noreturn]] void ThrowLocked(const char* words);
[[noreturn]] void ThrowNoColumn(std::int32_t index, std::size_t count);  // DISP_E_BADINDEX
[[noreturn]] void ThrowNoMoreRecords();                                  // DISP_E_BADINDEX
[[noreturn]] void ThrowBadTag(VARTYPE tag);                              // DISP_E_BADVARTYPE
// E_POINTER when there is no place for an answer.
void CheckPlace(const void* place);

// For a catch-all clause: the result code of the exception that is being handled, with its words posted as
// this thread's error record. Whatever is no ListRefusal is lack of memory.
HRESULT ReportListFailure() noexcept;

}  // namespace qv
