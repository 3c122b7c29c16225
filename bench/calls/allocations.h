// Counts the allocations of a program, whichever library makes them. The C library's allocator does the work.
#pragma once

namespace qv::bench {

// How often this thread has asked for memory so far; growing a block counts, freeing one does not.
long long Allocations() noexcept;

}  // namespace qv::bench
