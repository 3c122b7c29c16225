// What this program's heap refuses: malloc and its kin, on which operator new stands; under AddressSanitizer,
// which brings its own malloc, operator new alone. Not for several threads at once.
#pragma once

namespace qv {

enum class Refusal { kOnce, kFromThenOn };

// Counts allocations from 1 on and refuses the `number`-th, or it and all after it, until StopRefusing. A
// number of 0 refuses nothing.
void RefuseAllocation(long number, Refusal refusal) noexcept;
// Gives how many allocations were asked for meanwhile.
long StopRefusing() noexcept;

}  // namespace qv
