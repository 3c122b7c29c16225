// The most memory that reading a table takes.
#pragma once

namespace qv::bench {

// Prints what reading an answer of 100,000 rows takes beyond its UTF-8 bytes, and what the XML library's bare
// parse of it takes, each measured in a child process. To be called before the library is started and before
// there are threads.
void PrintTableMemory();

}  // namespace qv::bench
