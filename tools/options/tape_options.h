// `tape` on the command line.
#pragma once

#include <vector>

#include "tools/input/parsed_options.h"
#include "tools/options/command_arguments.h"

namespace qv::cli {

class TapeArguments : public CommandArguments {
 public:
  explicit TapeArguments(CLI::App& app);
  // To be called after parsing. Returns an error message, or null.
  const char* Check();
  const TapeOptions& Options() const { return tape_; }

 private:
  struct VerbRow {
    TapeVerb verb;
    CLI::App* command;
  };

  void AddVerb(TapeVerb verb, const char* name, const char* description, int least, int most);

  TapeOptions tape_;
  std::vector<VerbRow> verbs_;
};

}  // namespace qv::cli
