#include "tools/options/explain_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"

namespace qv::cli {

ExplainArguments::ExplainArguments(CLI::App& app)
    : CommandArguments(app.add_subcommand(
          "explain", "Show what a saved request or answer contains, and which rules it breaks")) {
  SetHelp(*command_, kExplainExamples, kExplainNotes);
  command_->add_option("FILE", explain_.file, "The message or the tape; - is standard input")->type_name("");
  command_->add_option("--entry", explain_.entry, "Of a tape, this exchange alone, counted from 1")
      ->type_name("NUMBER");
  command_->add_option("--method", explain_.method, "The method that an answer is for")->type_name("NAME");
  command_->add_flag("--show-secrets", explain_.showSecrets, "Show passwords, session ids and tickets, too");
  command_->add_flag("--json", explain_.json, "Each message as one line of JSON");
}

const char* ExplainArguments::Check() const {
  if (command_->count("--entry") > 0 && explain_.entry < 1) return "--entry counts from 1";
  return explain_.file.empty() ? "no message given (FILE, or - for standard input)" : nullptr;
}

}  // namespace qv::cli
