// Makes one call for each row of a file, in several sessions at once.
#pragma once

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tools/batch/batch_counts.h"
#include "tools/batch/batch_progress.h"
#include "tools/batch/journal.h"
#include "tools/batch/ordered_rows.h"
#include "tools/batch/row_caller.h"
#include "tools/batch/rows_file.h"
#include "tools/report/reporter.h"

namespace qv::cli {

struct BatchJob {
  const std::string& script;
  unsigned sessions = 1;
  bool retryUnknown = false;
  std::optional<std::chrono::steady_clock::time_point> end{};  // of the time for all calls
};

class Batch {
 public:
  // All are borrowed. `journal` may be null.
  Batch(const BatchJob& job, RowsFile& rows, Journal* journal, OrderedRows& results, SharedByCallers& shared,
        BatchProgress& progress, const Reporter& reporter)
      : job_(job),
        rows_(rows),
        journal_(journal),
        results_(results),
        shared_(shared),
        progress_(progress),
        reporter_(reporter) {}
  Batch(const Batch&) = delete;
  Batch& operator=(const Batch&) = delete;

  // Ends when all rows have ended, or after the first thing that keeps others from running: a server that
  // cannot be reached or opens no session, a full disk, an interrupt, the end of the time. Calls that run
  // then have two seconds to end before they are cancelled.
  void Run();

  const BatchCounts& Counts() const noexcept { return counts_; }
  // Why it ended early.
  const std::optional<Failure>& StopReason() const noexcept { return stopped_; }

 private:
  void Work() noexcept;
  void CallRows(RowCaller& caller);
  bool Take(DataRow& row);
  bool IsEarlier(const DataRow& row);
  RowOutcome Called(RowCaller& caller, const DataRow& row);
  void Give(DataRow row, RowOutcome outcome);
  void Remark(std::int64_t row, const std::vector<std::string>& remarks);
  void Leave(RowCaller& caller);
  void Stop(const Failure& failure);
  void Put(DataRow row, RowOutcome outcome);
  void Watch();

  const BatchJob& job_;
  RowsFile& rows_;
  Journal* journal_;
  OrderedRows& results_;
  SharedByCallers& shared_;
  BatchProgress& progress_;
  const Reporter& reporter_;

  std::mutex mutex_;  // of all below, of the rows, the results, the progress and the reporter
  std::condition_variable changed_;
  unsigned working_ = 0;
  bool resultsFailed_ = false;
  BatchCounts counts_;
  std::set<std::string> remarked_;
  std::optional<Failure> stopped_;
  std::chrono::steady_clock::time_point stopTime_;
};

}  // namespace qv::cli
