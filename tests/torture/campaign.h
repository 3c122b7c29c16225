// All refusals of all flows, each in a new process, and what came of them.
#pragma once

#include <string>

#include "torture/gate.h"
#include "torture/trial.h"

namespace qv::torture {

struct CampaignOptions {
  std::string flow{};  // this one only
  std::string kind{};  // this one only
  // Every `stride`-th point after the first `dense` ones, which are all tried. Those are what a flow meets in
  // a process that has made the same call before.
  long dense = 0;
  long stride = 1;
  // One trial in this process, for a debugger: the flow and the point, with or without hold.
  long point = 0;
  bool onwards = false;
  bool hold = false;
};

// Prints a line of figures for each flow, and each failure. Returns how many trials failed.
int RunCampaign(const CampaignOptions& options, Gate& gate);

}  // namespace qv::torture
