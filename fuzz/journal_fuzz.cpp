// Feeds journals of `map`. A row that has ended stays so when the journal goes on and is read again, also
// after an end of the program in the middle of a line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/memory_file.h"
#include "tools/batch/journal.h"
#include "tools/report/failure.h"

namespace {

using qv::cli::Fate;
using qv::cli::Journal;
using qv::cli::RowOutcome;

constexpr char kKey[] = "0123456789abcdef";
constexpr std::int64_t kRows = 4;

void Require(bool holds) {
  if (!holds) std::abort();
}

std::vector<RowOutcome> Read(const std::string& path) {
  Journal journal(path, kKey, kRows);
  std::vector<RowOutcome> rows;
  for (std::int64_t row = 1; row <= kRows; ++row) {
    rows.push_back(journal.Earlier(row));
    Require(rows.back().fate == journal.EarlierFate(row));
  }
  return rows;
}

// Runs what is left, and again rows whose fate is unknown.
void GoOn(const std::string& path, const std::vector<RowOutcome>& rows) {
  Journal journal(path, kKey, kRows);
  for (std::int64_t row = 1; row <= kRows; ++row) {
    const Fate fate = rows[static_cast<std::size_t>(row - 1)].fate;
    if (fate == Fate::kDone || fate == Fate::kFailed) continue;
    journal.Start(row);
    if (row % 2 == 0) journal.End(row, {Fate::kDone, "\"answer\"\n\xff"});
  }
}

void Compare(const std::vector<RowOutcome>& before, const std::vector<RowOutcome>& after) {
  for (std::size_t i = 0; i < before.size(); ++i) {
    const bool hadEnded = before[i].fate == Fate::kDone || before[i].fate == Fate::kFailed;
    if (hadEnded)
      Require(after[i].fate == before[i].fate && after[i].text == before[i].text);
    else
      Require(after[i].fate == (i % 2 == 1 ? Fate::kDone : Fate::kUnknown));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static MemoryFile file;
  file.Write({reinterpret_cast<const char*>(data), size});
  try {
    const std::vector<RowOutcome> rows = Read(file.Path());
    GoOn(file.Path(), rows);
    Compare(rows, Read(file.Path()));
  } catch (const qv::cli::Failure& failure) {
    Require(failure.Status() == qv::cli::ExitStatus::kLocal && !failure.Message().empty());
  }
  return 0;
}
