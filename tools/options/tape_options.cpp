#include "tools/options/tape_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"

namespace qv::cli {

namespace {

constexpr int kAnyNumber = 1'000'000;

}  // namespace

TapeArguments::TapeArguments(CLI::App& app)
    : CommandArguments(app.add_subcommand("tape", "Read what --record has written")) {
  SetHelp(*command_, kTapeExamples, kTapeNotes);
  command_->require_subcommand(0, 1);
  AddVerb(TapeVerb::kShow, "show", "Print each exchange in a few lines", 1, 1);
  AddVerb(TapeVerb::kDiff, "diff", "Print what differs between two tapes", 2, 2);
  AddVerb(TapeVerb::kVerify, "verify", "Check whether tapes are whole and agree with themselves", 1,
          kAnyNumber);
}

void TapeArguments::AddVerb(TapeVerb verb, const char* name, const char* description, int least, int most) {
  CLI::App* command = command_->add_subcommand(name, description);
  command->add_option("FILE", tape_.files, "A tape")->type_name("")->required()->expected(least, most);
  SetHelp(*command, kTapeExamples, kTapeNotes);
  verbs_.push_back({verb, command});
}

const char* TapeArguments::Check() {
  for (const VerbRow& row : verbs_) {
    if (!row.command->parsed()) continue;
    tape_.verb = row.verb;
    return nullptr;
  }
  return "no tape command given (show, diff or verify)";
}

}  // namespace qv::cli
