// The files that a batch writes.
#pragma once

#include <string>

#include "tools/input/parsed_options.h"

namespace qv::cli {

struct BatchFiles {
  std::string results;  // empty: standard output
  std::string journal;  // empty: none
  std::string failed;   // the rows without a result
  bool goesOn = false;  // with the journal of an earlier start
};

// Their names: the journal is RESULTS.journal, and failed rows are in NAME.failed.csv, after the results or
// else the rows, unless --failed names them. Removes those of an earlier start that the options allow to
// remove. Throws Failure (kLocal) if one is there that may not be replaced, or is one of the files that are
// read.
BatchFiles PrepareFiles(const MapOptions& options);

}  // namespace qv::cli
