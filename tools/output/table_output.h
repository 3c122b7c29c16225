// Prints a table that a script returned.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <string>
#include <vector>

#include "scriptwells/value.h"
#include "tools/output/output_format.h"

namespace qv::cli {

struct TableForm {
  OutputFormat output = OutputFormat::kText;
  std::string csvNull{};
  std::size_t width = 0;  // of the terminal; 0: no limit
};

// Text and table: a table for people. CSV: RFC 4180 in UTF-8; escaped on a terminal (TextFor in
// standard_output.h). JSON, in one line:
//   {"type":"recordlist","columns":[{"name":"a","displayName":"a","type":"int"}],"rows":[[1],[null]]}
// CSV and JSON are written row by row. Throws Failure: kLocal if `out` cannot be written, kInterrupted.
void WriteTable(const scriptwells::Table& table, const TableForm& form, std::ostream& out);

// One sentence for each part of the table that did not arrive as it was sent.
std::vector<std::string> LossesOf(const scriptwells::Table& table);

// Throws Failure (kInterrupted, else kLocal) if a write to the stream has failed.
void CheckWritten(const std::ostream& out);

}  // namespace qv::cli
