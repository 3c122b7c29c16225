#include "tools/batch/batch.h"

#include <algorithm>
#include <exception>
#include <system_error>
#include <thread>
#include <utility>

#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr milliseconds kLook{100};
constexpr milliseconds kGrace{2000};
constexpr std::size_t kMostNamed = 20;
constexpr std::size_t kMostRemarks = 20;

}  // namespace

// Under the lock, as all that follow it unless they say otherwise.
void Batch::Stop(const Failure& failure) {
  if (stopped_) return;
  stopped_ = failure;
  stopTime_ = steady_clock::now();
  changed_.notify_all();
}

void Batch::Put(DataRow row, RowOutcome outcome) {
  if (outcome.fate == Fate::kDone) ++counts_.done;
  if (outcome.fate == Fate::kFailed) ++counts_.failed;
  if (outcome.fate == Fate::kUnknown) {
    ++counts_.unknown;
    if (counts_.firstUnknown.size() < kMostNamed) counts_.firstUnknown.push_back(row.number);
  }
  if (resultsFailed_) return;
  try {
    results_.Put(std::move(row), std::move(outcome));
  } catch (...) {
    resultsFailed_ = true;  // a row is missing, so none may follow
    throw;
  }
}

// Whether the journal has an end for the row, which is put among the results.
bool Batch::IsEarlier(const DataRow& row) {
  const Fate fate = journal_ == nullptr ? Fate::kUnsent : journal_->EarlierFate(row.number);
  if (fate == Fate::kUnsent || (fate == Fate::kUnknown && job_.retryUnknown)) return false;
  Put(row, journal_->Earlier(row.number));
  ++counts_.earlier;
  return true;
}

// Takes the lock.
bool Batch::Take(DataRow& row) {
  std::unique_lock lock(mutex_);
  do {
    changed_.wait(lock, [this] { return stopped_ || results_.HasRoom(); });
    if (stopped_ || !rows_.Next(row)) return false;
  } while (IsEarlier(row));
  return true;
}

// Takes the lock.
void Batch::Give(DataRow row, RowOutcome outcome) {
  const std::lock_guard lock(mutex_);
  const bool hadRoom = results_.HasRoom();
  Put(std::move(row), std::move(outcome));
  if (!hadRoom) changed_.notify_all();
}

void Batch::Remark(std::int64_t row, const std::vector<std::string>& remarks) {
  for (const std::string& remark : remarks) {
    if (remarked_.size() >= kMostRemarks || !remarked_.insert(remark).second) continue;
    progress_.Clear();
    reporter_.Note("row " + std::to_string(row) + ", and perhaps others: " + remark);
  }
}

// Without the lock while the call runs.
RowOutcome Batch::Called(RowCaller& caller, const DataRow& row) {
  const scriptwells::Arguments arguments = ArgumentsOf(rows_.Columns(), row);
  caller.Open();
  if (journal_ != nullptr) journal_->Start(row.number);
  CalledRow called = caller.Call(job_.script, arguments);
  if (journal_ != nullptr) journal_->End(row.number, called.outcome);
  if (called.remarks.empty() && !called.unsent) return called.outcome;
  const std::lock_guard lock(mutex_);
  Remark(row.number, called.remarks);
  if (called.unsent) Stop(*called.unsent);
  return called.outcome;
}

void Batch::CallRows(RowCaller& caller) {
  DataRow row;
  while (Take(row)) {
    RowOutcome outcome = Called(caller, row);
    Give(std::move(row), std::move(outcome));
  }
}

// Takes the lock.
void Batch::Leave(RowCaller& caller) {
  const std::optional<Failure> failure = caller.Close();
  const std::lock_guard lock(mutex_);
  if (failure) {
    progress_.Clear();
    reporter_.Warn("a session was not closed: " + failure->Message());
  }
  --working_;
  changed_.notify_all();
}

// A thread. Takes the lock.
void Batch::Work() noexcept {
  RowCaller caller(shared_);
  try {
    CallRows(caller);
  } catch (const Failure& failure) {
    const std::lock_guard lock(mutex_);
    Stop(failure);
  } catch (const std::exception& error) {
    const std::lock_guard lock(mutex_);
    Stop(Failure(ExitStatus::kFault, error.what()));
  }
  Leave(caller);
}

void Batch::Watch() {
  if (Interrupted()) Stop(Failure(ExitStatus::kInterrupted, "interrupted"));
  const auto now = steady_clock::now();
  if (job_.end && now >= *job_.end)
    Stop(Failure(ExitStatus::kTimeout, "the time that --max-time allows is over"));
  if (stopped_ && now >= stopTime_ + kGrace) shared_.cancel.Cancel();
}

void Batch::Run() {
  std::vector<std::thread> threads;
  std::unique_lock lock(mutex_);
  try {
    for (; working_ < job_.sessions; ++working_) threads.emplace_back([this] { Work(); });
  } catch (const std::system_error& error) {
    // Fewer will do.
    if (threads.empty())
      throw Failure(ExitStatus::kLocal, std::string("cannot start a thread: ") + error.what());
  }
  while (working_ > 0) {
    changed_.wait_for(lock, kLook, [this] { return working_ == 0; });
    Watch();
    progress_.Show(counts_);
  }
  lock.unlock();
  for (std::thread& thread : threads) thread.join();
  progress_.Clear();
}

}  // namespace qv::cli
