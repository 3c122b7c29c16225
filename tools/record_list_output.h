// A table that a script answered, on its way to standard output.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "qvscriptwells/record_list.h"
#include "tools/options.h"

namespace qv::cli {

struct ListForm {
  OutputFormat output = OutputFormat::kText;
  std::string csvNull{};
  std::size_t width = 0;  // of the terminal; 0: lines may be as long as they get
};

// Text and table: a table for people with the display names as heads (the names, in what servers answer).
// CSV: RFC 4180 in UTF-8 with the names as heads. JSON, in one line:
//   {"type":"recordlist","columns":[{"name":"a","displayName":"A","type":"int"}],"rows":[[1],[null]]}
// CSV and JSON are written row by row. On a terminal CSV has escapes, too (TextFor in terminal_output.h).
// Returns what did not arrive as it was sent, one sentence each. Throws Failure: kAnswer with the component's
// words, kLocal when `out` takes no more, kInterrupted.
std::vector<std::string> WriteRecordList(IRecordListPtr list, const ListForm& form, std::ostream& out);

// Throws Failure (kInterrupted, else kLocal) unless the stream took everything.
void CheckWritten(const std::ostream& out);

}  // namespace qv::cli
