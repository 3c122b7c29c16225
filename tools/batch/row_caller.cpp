#include "tools/batch/row_caller.h"

#include <chrono>
#include <new>
#include <utility>

#include "tools/batch/results_writer.h"
#include "tools/output/answer_format.h"
#include "tools/output/table_output.h"
#include "tools/report/reporter.h"
#include "tools/transfer/failed_call.h"
#include "tools/transfer/refused_upload.h"

namespace qv::cli {

namespace {

using scriptwells::Phase;
using scriptwells::Type;
using scriptwells::Value;

struct FateRow {
  Phase phase;
  Fate fate;
};

// All other phases are unknown.
constexpr FateRow kFates[] = {
    {Phase::kAddress, Fate::kUnsent},    {Phase::kConnect, Fate::kUnsent}, {Phase::kTls, Fate::kUnsent},
    {Phase::kLocalFile, Fate::kFailed},  {Phase::kAnswer, Fate::kFailed},  {Phase::kSession, Fate::kFailed},
    {Phase::kConversion, Fate::kFailed}, {Phase::kScript, Fate::kFailed},
};

// A gateway says so when it has lost the server, which may still run the script.
bool IsOfGateway(int status) {
  return status == 502 || status == 504;
}

std::vector<std::string> LossesOfAny(const Value& answer) {
  return answer.type() == Type::kTable ? LossesOf(answer.AsTable()) : LossesOf(answer);
}

constexpr std::chrono::milliseconds kLastWait{2000};

}  // namespace

Fate FateAfter(const scriptwells::Error& error) {
  if (IsOfGateway(error.status())) return Fate::kUnknown;
  for (const FateRow& row : kFates)
    if (row.phase == error.phase()) return row.fate;
  return Fate::kUnknown;
}

scriptwells::Options RowCaller::Options() {
  scriptwells::Options options = shared_.settings.options;
  options.totalTimeout = {};  // that of the settings is for the whole batch
  options.closeTimeout = kLastWait;
  options.cancel = shared_.cancel;
  options.listener = [this](const scriptwells::Exchange& exchange) { Look(exchange); };
  options.listenerBodies = shared_.trace.has_value();
  // Nothing is shown without a trace, but a file's name may look like a password.
  options.showSecrets = shared_.settings.options.showSecrets || !shared_.trace;
  return options;
}

void RowCaller::Look(const scriptwells::Exchange& exchange) {
  const std::string refused = RefusedUpload(exchange);
  if (!refused.empty()) refusedUploads_.push_back(refused);
  if (!shared_.trace) return;
  const std::lock_guard lock(shared_.traceMutex);
  shared_.trace->Write(exchange);
}

void RowCaller::Open() {
  if (session_) return;
  Translated([this] { session_.emplace(shared_.settings.server, shared_.settings.credentials, Options()); });
}

CalledRow RowCaller::Failed(const scriptwells::Error& error) {
  const Failure failure = FailureOf(error);
  // A server that has ended the session says so with a fault like any other, so the next row gets a new one.
  static_cast<void>(Close());
  session_.reset();
  const Fate fate = FateAfter(error);
  CalledRow called{{fate, DescriptionOf(failure)}, refusedUploads_};
  if (fate == Fate::kUnsent) called.unsent = failure;
  return called;
}

CalledRow RowCaller::Call(const std::string& script, const scriptwells::Arguments& arguments) {
  refusedUploads_.clear();
  try {
    const Value answer = session_->Run(script, arguments);
    CalledRow called;
    called.outcome = {Fate::kDone, AnswerText(shared_.format, answer)};
    called.remarks = LossesOfAny(answer);
    called.remarks.insert(called.remarks.end(), refusedUploads_.begin(), refusedUploads_.end());
    return called;
  } catch (const scriptwells::Error& error) {
    return Failed(error);
  } catch (const std::bad_alloc&) {
    return {{Fate::kUnknown, "out of memory"}};
  }
}

std::optional<Failure> RowCaller::Close() {
  if (!session_) return std::nullopt;
  try {
    Translated([this] { session_->Close(kLastWait); });
    return std::nullopt;
  } catch (const Failure& failure) {
    session_->Release();
    return failure;
  }
}

}  // namespace qv::cli
