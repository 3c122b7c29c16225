// The steps of `scriptwells run` and `run-document`, on a server or in a service of this program.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "tools/input/parsed_options.h"
#include "tools/report/reporter.h"
#include "tools/transfer/session_frame.h"
#include "tools/values/parameter_text.h"

namespace qv::cli {

struct RunJob {
  std::string script;  // or the document's URL from CheckDocument
  std::vector<ScriptParameter> parameters;
  bool hasFiles = false;      // among the parameters
  std::string saveDirectory;  // empty: the answer is not a file
  SessionSettings settings;
};

// Checks all that can be wrong on this side before any request is sent. Throws Failure; prints notes.
RunJob PrepareRun(const RunOptions& options, const Reporter& reporter);

// Runs it in its own session on the server of its settings, and prints the answer on `out`.
void Run(const RunJob& job, const RunOptions& options, std::ostream& out, const Reporter& reporter);

}  // namespace qv::cli
