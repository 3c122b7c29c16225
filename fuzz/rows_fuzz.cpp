// Feeds the files of rows of `map`. Every row has as many cells as the head, and what is written from the
// cells reads back to them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "face/text/csv_text.h"
#include "fuzz/memory_file.h"
#include "qvscriptwells/xml_library_hold.h"
#include "tools/batch/rows_file.h"
#include "tools/report/failure.h"

namespace {

using qv::cli::DataRow;
using qv::cli::RowsFile;
using Cells = std::vector<std::string>;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string LineOf(const Cells& cells) {
  std::string line;
  for (const std::string& cell : cells)
    line += (&cell == &cells.front() ? "" : ",") +
            (cells.size() == 1 ? scriptwells::CsvOnlyField(cell, "") : scriptwells::CsvField(cell, ""));
  return line + "\r\n";
}

// All rows with their head; `arguments` reads the cells, too.
std::vector<Cells> Read(const std::string& path, bool arguments) {
  RowsFile file(path);
  std::vector<Cells> rows{file.Head()};
  DataRow row;
  while (file.Next(row)) {
    Require(row.cells.size() == file.Head().size());
    rows.push_back(row.cells);
    // Such a cell is a path: a fuzzer would open whatever it can name.
    if (arguments && !HoldsFiles(file.Columns())) try {
        ArgumentsOf(file.Columns(), row);
      } catch (const qv::cli::Failure& failure) {
        Require(!failure.Message().empty());
      }
  }
  return rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const qv::XmlLibraryHold library;
  static MemoryFile file;
  file.Write({reinterpret_cast<const char*>(data), size});
  try {
    const std::vector<Cells> rows = Read(file.Path(), true);
    std::string text = "\r\n";  // a byte order mark counts at the start of a file only
    for (const Cells& cells : rows) text += LineOf(cells);
    file.Write(text);
    Require(Read(file.Path(), false) == rows);
  } catch (const qv::cli::Failure& failure) {
    Require(failure.Status() == qv::cli::ExitStatus::kLocal && !failure.Message().empty());
  }
  return 0;
}
