#include "tools/options/check_options.h"

#include <CLI/CLI.hpp>
#include <tuple>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"

namespace qv::cli {

CheckArguments::CheckArguments(CLI::App& app)
    : CommandArguments(
          app.add_subcommand("check", "Try a server step by step, and name each rule that it breaks")) {
  SetHelp(*command_, kCheckExamples, kCheckNotes);
  command_->add_option("URL", address_, "The server, as --server")->type_name("");
  DefineScripts();
  session_.emplace(*command_, check_, SessionKind::kChecked);
}

void CheckArguments::DefineScripts() {
  command_->add_option("--language", check_.language, "Language of the scripts; default: JavaScript")
      ->type_name("NAME");
  const std::tuple<const char*, std::string&, const char*> scripts[] = {
      {"--script", check_.valueScript, "A script that returns its parameter `value`"},
      {"--fault-script", check_.faultScript, "A script that fails"},
      {"--table-script", check_.tableScript, "A script that returns a table"},
      {"--upload-script", check_.uploadScript,
       "A script that returns the text of the file in its parameter `file`"},
      {"--download-script", check_.downloadScript, "A script that returns the address of a file"}};
  for (const auto& [name, target, description] : scripts)
    command_->add_option(name, target, description)->type_name("CODE");
}

const char* CheckArguments::Check() {
  if (!address_.empty() && session_->HasServer()) return "give URL or --server, not both";
  if (!address_.empty())
    check_.server = address_;
  else if (!session_->TakeServer())
    return "no server given (URL or --server URL)";
  return session_->Check();
}

}  // namespace qv::cli
