// The start of a process, before main: the program runs itself again and again with a variable that refuses
// memory from its first allocation on.
#pragma once

namespace qv::torture {

// What the program is given then.
constexpr char kStartedOption[] = "--started";

// In the started program, which is refused nothing any more: makes one call and prints `passed`, the number
// of allocations before main. Returns the exit code: 0 when the call worked.
int ShowThatItWorks(long passed);

// Prints a line of figures for each mode. Returns how many starts ended by a signal, or let the call fail. A
// start that the loader or a library ends with an exit code and a message is as good as one that works.
int TortureProcessStart(long stride);

}  // namespace qv::torture
