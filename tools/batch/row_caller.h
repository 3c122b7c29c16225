// One session of a batch, which makes one call after the other.
#pragma once

#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "scriptwells/session.h"
#include "tools/batch/row_outcome.h"
#include "tools/output/output_format.h"
#include "tools/report/failure.h"
#include "tools/transfer/session_settings.h"
#include "tools/transfer/trace_file.h"

namespace qv::cli {

// What is known of a call that ended with this error.
Fate FateAfter(const scriptwells::Error& error);

// What all sessions of a batch have in common.
struct SharedByCallers {
  const SessionSettings& settings;
  OutputFormat format;
  scriptwells::CancelToken cancel{};
  std::optional<TraceFile> trace{};
  std::mutex traceMutex{};
};

struct CalledRow {
  RowOutcome outcome;
  std::vector<std::string> remarks{};  // the answer did not arrive as it was sent, or an upload was refused
  std::optional<Failure> unsent{};     // why no request was sent
};

class RowCaller {
 public:
  // `shared` must outlive this object.
  explicit RowCaller(SharedByCallers& shared) : shared_(shared) {}
  RowCaller(const RowCaller&) = delete;
  RowCaller& operator=(const RowCaller&) = delete;

  // Opens a session, unless one is open. Throws Failure.
  void Open();
  CalledRow Call(const std::string& script, const scriptwells::Arguments& arguments);
  // Returns why the session was not closed; nothing if it was, or if there is none.
  std::optional<Failure> Close();

 private:
  scriptwells::Options Options();
  void Look(const scriptwells::Exchange& exchange);
  CalledRow Failed(const scriptwells::Error& error);

  SharedByCallers& shared_;
  std::vector<std::string> refusedUploads_;  // of the call
  std::optional<scriptwells::Session> session_;
};

}  // namespace qv::cli
