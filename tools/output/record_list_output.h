// Prints a table that a script returned.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "qvscriptwells/record_list.h"
#include "tools/output/answer_format.h"

namespace qv::cli {

struct ListForm {
  OutputFormat output = OutputFormat::kText;
  std::string csvNull{};
  std::size_t width = 0;  // of the terminal; 0: no limit
};

// Text and table: a table for people, with the display names as heads. CSV: RFC 4180 in UTF-8, with the names
// as heads; escaped on a terminal (TextFor in standard_output.h). JSON, in one line:
//   {"type":"recordlist","columns":[{"name":"a","displayName":"A","type":"int"}],"rows":[[1],[null]]}
// CSV and JSON are written row by row. Returns one sentence for each part of the table that did not arrive as
// it was sent. Throws Failure: kAnswer with the component's message, kLocal if `out` cannot be written,
// kInterrupted.
std::vector<std::string> WriteRecordList(IRecordListPtr list, const ListForm& form, std::ostream& out);

// Throws Failure (kInterrupted, else kLocal) if a write to the stream has failed.
void CheckWritten(const std::ostream& out);

}  // namespace qv::cli
