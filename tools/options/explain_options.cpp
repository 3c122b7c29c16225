#include "tools/options/explain_options.h"

#include <CLI/CLI.hpp>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"

namespace qv::cli {

ExplainArguments::ExplainArguments(CLI::App& app)
    : CommandArguments(app.add_subcommand(
          "explain", "Show what a saved request or answer contains, and which rules it breaks")) {
  SetHelp(*command_, kExplainExamples, kExplainNotes);
  command_->add_option("FILE", explain_.file, "The message; - is standard input")->type_name("");
  command_->add_option("--method", explain_.method, "The method that an answer is for")->type_name("NAME");
  command_->add_flag("--show-secrets", explain_.showSecrets, "Show passwords, session ids and tickets, too");
  command_->add_flag("--json", explain_.json, "As one line of JSON");
}

const char* ExplainArguments::Check() const {
  return explain_.file.empty() ? "no message given (FILE, or - for standard input)" : nullptr;
}

}  // namespace qv::cli
