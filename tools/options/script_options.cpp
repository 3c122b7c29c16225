#include "tools/options/script_options.h"

#include <CLI/CLI.hpp>
#include <cstdlib>

#include "tools/options/setting_options.h"

namespace qv::cli {

void AddParameters(CLI::App& command, ScriptOptions& options) {
  command.add_option("-p,--parameter", options.parameters, "A parameter of the script; may be repeated")
      ->type_name("NAME=TYPE:VALUE")
      ->take_all()
      ->expected(1)
      ->allow_extra_args(false);
}

// The variable is only a default, so --local overrides it.
const char* TakeServerOrLocal(SessionArguments& session, ScriptOptions& options) {
  if (options.local && session.HasServer()) return "give --local or --server, not both";
  if (options.local && session.HasUsid())
    return "a session of --local ends with it; use --usid with --server";
  if (options.local) options.proxy.clear();
  if (options.local || session.TakeServer()) return nullptr;
  return "no server given (--local or --server URL)";
}

void OutputArgument::Define(CLI::App& command) {
  command_ = &command;
  AddOutputSetting(command, text_);
}

bool OutputArgument::IsChosen() const {
  return IsTyped(*command_, "--output");
}

// The variable and a profile are only defaults, so --json overrides them.
const char* OutputArgument::Take(ScriptOptions& options) {
  const char* usual = std::getenv("SCRIPTWELLS_OUTPUT");
  if (!IsChosen() && !options.json && usual != nullptr && *usual != '\0') text_ = usual;
  const OutputFormat* found = FindOutput(text_);
  if (found == nullptr) return "SCRIPTWELLS_OUTPUT must be text, json, table or csv";
  options.output = options.json ? OutputFormat::kJson : *found;
  if (IsChosen() && *found != options.output) return "give --json or another --output, not both";
  return nullptr;
}

}  // namespace qv::cli
