#include "tools/options/run_options.h"

#include <CLI/CLI.hpp>

#include "devservice/soap/namespaces.h"
#include "face/text/csv_text.h"
#include "scriptwells/error.h"
#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"
#include "tools/options/setting_options.h"

#ifndef QV_NAMESPACE_HOST
#error "QV_NAMESPACE_HOST comes from the build"
#endif

namespace qv::cli {

namespace {

CLI::App* AddCommand(CLI::App& app, RunArguments::Kind kind) {
  return kind == RunArguments::Kind::kScript
             ? app.add_subcommand("run", "Run a script on a server and print its answer")
             : app.add_subcommand("run-document", "Run a script document, which names its own language");
}

bool IsCsvNull(const std::string& text) {
  try {
    scriptwells::CheckCsvNull(text);
    return true;
  } catch (const scriptwells::ConversionError&) {
    return false;
  }
}

}  // namespace

RunArguments::RunArguments(CLI::App& app, Kind kind) : CommandArguments(AddCommand(app, kind)) {
  if (kind == Kind::kScript)
    DefineScript();
  else
    DefineDocument();
  DefineParameters();
  session_.emplace(*command_, run_);
  DefineOutput();
}

void RunArguments::DefineParameters() {
  AddParameters(*command_, run_);
  command_->add_flag(
      "--local", run_.local,
      "Run in a service inside this program; nothing else is needed. A script has 5 s and 256 MiB "
      "there; for more: serve --script-timeout, --script-memory, and --server. User and password are random, "
      "so that nobody else can use it");
  command_->add_flag("--watch", run_.watch,
                     "Run FILE now and again each time it is saved, until Ctrl-C; failures end nothing");
}

void RunArguments::DefineScript() {
  SetHelp(*command_, kRunExamples, kValuesNotes);
  command_->add_option("FILE", run_.file, "The script; - reads it from standard input")->type_name("");
  code_ =
      command_->add_option("-e,--eval", run_.code, "The script itself, in place of FILE")->type_name("CODE");
  AddLanguageSetting(*command_, run_);
  command_->add_flag(
      "--page", run_.page,
      "With --local: put the script on a page in place of running it, and print the page's address; "
      "ends with Ctrl-C");
}

void RunArguments::DefineDocument() {
  run_.document = true;
  const std::string space = devservice::Namespaces(QV_NAMESPACE_HOST).script;
  SetHelp(*command_, kDocumentExamples, kDocumentStart + space + kDocumentEnd + kValuesNotes);
  command_->add_option("FILE", run_.file, "The script document, an XML file")->type_name("");
}

void RunArguments::DefineOutput() {
  output_.Define(*command_);
  null_ = command_->add_option("--null", run_.csvNull, "What CSV prints for no value; default: nothing")
              ->type_name("TEXT");
  save_ = command_
              ->add_option("--save", run_.saveDirectory,
                           "The answer is the URL of a file: download it into this directory, in the same "
                           "session, and print its path")
              ->type_name("DIR");
  command_->add_flag(
      "--force", run_.force,
      "With --save: replace a file of the same name, and save a file whose name begins with '.'");
}

const char* RunArguments::Check() {
  const char* wrong = output_.Take(run_);
  if (wrong == nullptr) wrong = WrongWithNull();
  if (wrong == nullptr) wrong = WrongWithScript();
  if (wrong == nullptr) wrong = WrongWithServer();
  if (wrong == nullptr) wrong = WrongWithSave();
  if (wrong == nullptr) wrong = WrongWithWatch();
  if (wrong == nullptr) wrong = WrongWithPage();
  if (wrong == nullptr) wrong = session_->Check();
  if (run_.local) run_.usid.clear();  // that of the environment belongs to a server
  return wrong;
}

const char* RunArguments::WrongWithNull() const {
  if (null_->count() == 0) return nullptr;
  if (run_.output != OutputFormat::kCsv) return "--null needs --output csv";
  if (IsCsvNull(run_.csvNull)) return nullptr;
  return "--null must be UTF-8 without commas, quotes, line ends, and blanks at its ends";
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

const char* RunArguments::WrongWithServer() {
  if (run_.passwordFromInput && run_.file == "-")
    return "standard input cannot hold both the script and the password";
  return TakeServerOrLocal(*session_, run_);
}

const char* RunArguments::WrongWithWatch() const {
  const bool hasName = !run_.file.empty() && run_.file != "-";
  return run_.watch && !hasName ? "--watch needs a script with a name (FILE)" : nullptr;
}

const char* RunArguments::WrongWithPage() const {
  if (!run_.page) return nullptr;
  if (!run_.local) return "--page needs --local; for other services there is serve --page";
  const bool tapes = !run_.recordFile.empty() || !run_.replayFile.empty();
  if (run_.watch || save_->count() > 0 || tapes || !run_.traceFile.empty())
    return "--page cannot be combined with --watch, --save, --trace, --record and --replay";
  return nullptr;
}

const char* RunArguments::WrongWithSave() const {
  if (save_->count() == 0) return run_.force ? "--force needs --save" : nullptr;
  if (run_.saveDirectory.empty()) return "--save must name a directory";
  if (!output_.IsChosen()) return nullptr;
  if (run_.output == OutputFormat::kTable) return "--save prints a path, for which there is no table";
  return run_.output == OutputFormat::kCsv ? "--save prints a path, for which there is no CSV" : nullptr;
}

}  // namespace qv::cli
