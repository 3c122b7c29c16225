#include "torture/torture_options.h"

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>

#include "torture/campaign.h"

namespace qv::torture {
namespace {

constexpr long kQuickDense = 160;
constexpr long kQuickStride = 101;

bool TakeSwitch(const std::string& name, CampaignOptions* options) {
  if (name == "--quick") {
    options->dense = kQuickDense;
    options->stride = kQuickStride;
  } else if (name == "--held") {
    options->hold = true;
  } else if (name == "--onwards") {
    options->onwards = true;
  } else {
    return false;
  }
  return true;
}

bool TakeValue(const std::string& name, const char* value, CampaignOptions* options) {
  if (name == "--flow") {
    options->flow = value;
  } else if (name == "--kind") {
    options->kind = value;
  } else if (name == "--point") {
    options->point = std::strtol(value, nullptr, 10);
  } else {
    return false;
  }
  return true;
}

// False for an argument that nobody knows.
bool Take(char**& argument, CampaignOptions* options) {
  if (TakeSwitch(*argument, options)) return true;
  const char* value = argument[1];
  if (value == nullptr || !TakeValue(*argument, value, options)) return false;
  ++argument;
  return true;
}

}  // namespace

int TortureMain(int argc, char** argv, Gate& gate) {
  CampaignOptions options;
  for (char** argument = argv + 1; argument < argv + argc; ++argument) {
    if (Take(argument, &options)) continue;
    (void)std::fprintf(stderr, "%s: not understood\n", *argument);
    return 2;
  }
  try {
    return RunCampaign(options, gate) == 0 ? 0 : 1;
  } catch (const std::exception& failure) {
    (void)std::fprintf(stderr, "%s\n", failure.what());
    return 2;
  }
}

}  // namespace qv::torture
