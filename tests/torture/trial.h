// One refusal in one process: what was done, what came of it.
#pragma once

#include "torture/gate.h"
#include "torture/scene.h"

namespace qv::torture {

enum class Verdict {
  kNotRun,  // the process ended inside, in the step that TrialReport names
  kGood,
  kXmlRefused,      // good: a start of the XML library that failed inside is the one failure that stays
  kWrongSuccess,    // S_OK with another result than the call has
  kFailedUnasked,   // a failure though nothing was refused
  kOddException,    // thrown, and not one that the headers name
  kNextCallFails,   // with nothing refused any more
  kTransientFails,  // a failure though the call is to be tried again
  kOpenFiles,       // the same refusal leaves more open files each time
  kLeak,            // the same refusal costs more memory each time
  kLitter,          // half a file, a directory
};
const char* VerdictText(Verdict verdict);

// Lies in memory that the child process shares with its parent.
struct TrialReport {
  Verdict verdict = Verdict::kNotRun;
  const char* step = "start";
  long seen = 0;        // what passed the gate in the first call
  HRESULT code = S_OK;  // of the first call
  char details[200] = {};
};

struct Trial {
  const Flow* flow = nullptr;
  bool hold = false;
  Refusal refusal{};
};

// Fills `report` step by step, so that it is right wherever the process ends.
void RunTrial(const Trial& trial, Gate& gate, TrialReport* report);

}  // namespace qv::torture
