#include "tools/run_options.h"

#include <CLI/CLI.hpp>
#include <cmath>
#include <cstdlib>
#include <map>

#include "tools/help_texts.h"
#include "tools/local_service.h"

namespace qv::cli {

namespace {

constexpr double kLongestWait = 86400;

const std::map<std::string, OutputFormat> kOutputs = {
    {"text", OutputFormat::kText}, {"json", OutputFormat::kJson}, {"table", OutputFormat::kTable}};

bool IsWait(double seconds) {
  return std::isfinite(seconds) && seconds >= 0 && seconds <= kLongestWait;
}

void AddText(CLI::App& command, const char* name, std::string& target, const char* words, const char* value,
             const char* variable = "") {
  command.add_option(name, target, words)->type_name(value)->envname(variable);
}

void AddWait(CLI::App& command, const char* name, double& target, const char* words, const char* variable) {
  command.add_option(name, target, words)->capture_default_str()->type_name("SECONDS")->envname(variable);
}

}  // namespace

RunArguments::RunArguments(CLI::App& app, Kind kind) {
  if (kind == Kind::kScript)
    DefineScript(app);
  else
    DefineDocument(app);
  command_->add_option("-p,--parameter", run_.parameters, "A parameter of the script; may be repeated")
      ->type_name("NAME=TYPE:VALUE")
      ->take_all()
      ->expected(1)
      ->allow_extra_args(false);
  DefineServer();
  DefineCredentials();
  DefineWaits();
  DefineOutput();
}

void RunArguments::DefineScript(CLI::App& app) {
  command_ = app.add_subcommand("run", "Run a script on a server and print its answer");
  command_->footer(std::string(kValuesFooter) + kRunExamples);
  command_->add_option("FILE", run_.file, "The script; - reads it from standard input")->type_name("");
  code_ =
      command_->add_option("-e,--eval", run_.code, "The script itself, in place of FILE")->type_name("CODE");
  command_->add_option("--language", run_.language, "Language of the script")
      ->capture_default_str()
      ->type_name("NAME")
      ->envname("SCRIPTWELLS_LANGUAGE");
}

void RunArguments::DefineDocument(CLI::App& app) {
  run_.document = true;
  command_ = app.add_subcommand("run-document", "Run a script document, which tells its own language");
  command_->footer(kDocumentStart + ScriptNamespace() + kDocumentEnd + kValuesFooter + kDocumentExamples);
  command_->add_option("FILE", run_.file, "The script document, an XML file")->type_name("");
}

void RunArguments::DefineServer() {
  command_->add_flag(
      "--local", run_.local,
      "Run in a service inside this program; nothing else is needed. A script has 5 s and 256 MiB "
      "there; for more: serve --script-timeout, --script-memory, and --server");
  server_ = command_
                ->add_option("--server", run_.server,
                             "The server, such as https://scripts.example:8443 "
                             "(environment: SCRIPTWELLS_SERVER)")
                ->type_name("URL");
  AddText(*command_, "--proxy", run_.proxy, "HTTP proxy", "HOST[:PORT]", "SCRIPTWELLS_PROXY");
}

void RunArguments::DefineCredentials() {
  AddText(*command_, "--user", run_.user, "User name (with --local: \"local\" if not given)", "NAME",
          "SCRIPTWELLS_USER");
  AddText(*command_, "--password-file", run_.passwordFile, "The first line of this file is the password",
          "FILE");
  command_->add_flag("--password-stdin", run_.passwordFromInput,
                     "The first line of standard input is the password");
  AddText(*command_, "--replica", run_.replica, "Replica id of the database", "ID", "SCRIPTWELLS_REPLICA");
}

void RunArguments::DefineWaits() {
  AddWait(*command_, "--timeout", run_.timeoutSeconds,
          "Longest silence of the server; 0: no limit (for connecting: --connect-timeout)",
          "SCRIPTWELLS_TIMEOUT");
  AddWait(*command_, "--connect-timeout", run_.connectTimeoutSeconds,
          "Longest wait for a connection; 0: no limit", "SCRIPTWELLS_CONNECT_TIMEOUT");
}

void RunArguments::DefineOutput() {
  outputOption_ =
      command_
          ->add_option("-o,--output", output_, "How the answer is printed (environment: SCRIPTWELLS_OUTPUT)")
          ->capture_default_str()
          ->type_name("FORMAT")
          ->check(CLI::IsMember(kOutputs));
  command_->add_flag("--json", run_.json,
                     "The answer, or what failed, and every note, as one line of JSON each");
}

bool RunArguments::Parsed() const {
  return command_->parsed();
}

const char* RunArguments::Check() {
  const char* wrong = WrongWithOutput();
  if (wrong == nullptr) wrong = WrongWithScript();
  if (wrong == nullptr) wrong = WrongWithServer();
  if (wrong == nullptr) wrong = WrongWithPassword();
  if (wrong == nullptr) wrong = WrongWithWaits();
  return wrong;
}

// The variable stands for a usual form, so --json wins over it.
const char* RunArguments::WrongWithOutput() {
  const bool chosen = outputOption_->count() > 0;
  const char* usual = std::getenv("SCRIPTWELLS_OUTPUT");
  if (!chosen && !run_.json && usual != nullptr && *usual != '\0') output_ = usual;
  const auto found = kOutputs.find(output_);
  if (found == kOutputs.end()) return "SCRIPTWELLS_OUTPUT has to be text, json or table";
  run_.output = run_.json ? OutputFormat::kJson : found->second;
  if (chosen && found->second != run_.output) return "give --json or another --output, not both";
  return nullptr;
}

const char* RunArguments::WrongWithScript() const {
  const bool hasFile = !run_.file.empty();
  if (run_.document && !hasFile) return "no script document given (FILE)";
  if (run_.document && run_.file == "-")
    return "a script document is read by its name and cannot come from standard input";
  if (run_.document) return nullptr;
  if (hasFile && code_->count() > 0) return "give the script as FILE or with -e, not both";
  if (!hasFile && code_->count() == 0) return "no script given (FILE, - or -e CODE)";
  return nullptr;
}

// The variable stands for a usual server, so --local wins over it.
const char* RunArguments::WrongWithServer() {
  if (run_.local && server_->count() > 0) return "give --local or --server, not both";
  if (run_.local && !run_.proxy.empty()) run_.proxy.clear();
  if (run_.local || server_->count() > 0) return nullptr;
  const char* usual = std::getenv("SCRIPTWELLS_SERVER");
  if (usual == nullptr || *usual == '\0') return "no server given (--local or --server URL)";
  run_.server = usual;
  return nullptr;
}

const char* RunArguments::WrongWithPassword() const {
  if (run_.passwordFromInput && !run_.passwordFile.empty())
    return "give --password-file or --password-stdin, not both";
  if (run_.passwordFromInput && run_.file == "-")
    return "standard input cannot hold both the script and the password";
  return nullptr;
}

const char* RunArguments::WrongWithWaits() const {
  if (!IsWait(run_.timeoutSeconds)) return "--timeout has to lie between 0 and 86400 seconds";
  if (!IsWait(run_.connectTimeoutSeconds)) return "--connect-timeout has to lie between 0 and 86400 seconds";
  return nullptr;
}

}  // namespace qv::cli
