// The steps of `scriptwells run` and `run-document`, on a server or in a service of this program.
#pragma once

#include <iosfwd>
#include <string>

#include "scriptwells/session.h"
#include "tools/input/parsed_options.h"
#include "tools/report/reporter.h"
#include "tools/transfer/session_settings.h"

namespace qv::cli {

struct RunJob {
  std::string script;  // empty for a document, and for --watch
  scriptwells::Arguments arguments;
  bool hasFiles = false;      // among the arguments
  std::string saveDirectory;  // empty: the answer is not a file
  SessionSettings settings;
};

// Checks all that can be wrong on this side before any request is sent. Throws Failure; prints notes.
RunJob PrepareRun(const RunOptions& options, const Reporter& reporter);

// Runs it in its own session on the server of its settings, and prints the answer on `out`. With --watch:
// again after each save of the file, which is then read again, until an interrupt, which is no failure; any
// other failure is reported and ends nothing, unless `out` fails.
void Run(RunJob& job, const RunOptions& options, std::ostream& out, const Reporter& reporter);

}  // namespace qv::cli
