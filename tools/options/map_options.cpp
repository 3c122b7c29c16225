#include "tools/options/map_options.h"

#include <CLI/CLI.hpp>
#include <cstdlib>
#include <utility>

#include "tools/options/help_format.h"
#include "tools/options/help_texts.h"
#include "tools/options/setting_options.h"

namespace qv::cli {

namespace {

constexpr int kMostJobs = 64;

}  // namespace

MapArguments::MapArguments(CLI::App& app)
    : CommandArguments(app.add_subcommand("map", "Run a script once for each row of a CSV file")) {
  SetHelp(*command_, kMapExamples, kMapNotes);
  DefineInput();
  session_.emplace(*command_, map_, SessionKind::kOpened);
  DefineOutput();
}

void MapArguments::DefineInput() {
  command_->add_option("FILE", map_.file, "The script; - reads it from standard input")->type_name("");
  command_->add_option("ROWS", map_.rows, "The rows, a CSV file with a head")->type_name("");
  code_ =
      command_->add_option("-e,--eval", map_.code, "The script itself, in place of FILE")->type_name("CODE");
  AddSetting(*command_, "language", map_.language)->capture_default_str();
  command_->add_option("-j,--jobs", map_.jobs, "Sessions that run scripts at the same time; at most 64")
      ->capture_default_str()
      ->type_name("NUMBER");
}

void MapArguments::DefineOutput() {
  // A profile may have another one, which is no failure.
  AddOutputSetting(*command_, output_, "{csv,json}");
  command_
      ->add_option("--results", map_.results,
                   "Write the results into this file, and beside it a journal, FILE.journal, for --resume")
      ->type_name("FILE");
  command_
      ->add_option("--failed", map_.failed,
                   "Write the rows without a result into this file; default: NAME.failed.csv, after the "
                   "results or the rows")
      ->type_name("FILE");
  command_->add_flag(
      "--resume", map_.resume,
      "Go on with what was begun: rows that have ended, or whose fate is unknown, are not run");
  command_->add_flag("--retry-unknown", map_.retryUnknown,
                     "With --resume: run rows whose fate is unknown again; their script may run twice");
  command_->add_flag("--force", map_.force, "Begin again, and replace the files of an earlier start");
}

const char* MapArguments::Check() {
  const char* wrong = WrongWithInput();
  if (wrong == nullptr) wrong = WrongWithForm();
  if (wrong == nullptr) wrong = WrongWithFiles();
  if (wrong == nullptr && !session_->TakeServer()) wrong = "no server given (--server URL)";
  return wrong == nullptr ? session_->Check() : wrong;
}

// With -e the first of the two files is that of the rows.
const char* MapArguments::WrongWithInput() {
  const bool hasCode = code_->count() > 0;
  if (hasCode && !map_.rows.empty()) return "give the script as FILE or with -e, not both";
  if (hasCode) map_.rows = std::exchange(map_.file, "");
  if (map_.rows.empty()) return hasCode ? "no rows given (ROWS)" : "give a script and rows (FILE ROWS)";
  if (map_.file == "-" && map_.passwordFromInput)
    return "standard input cannot hold both the script and the password";
  if (map_.jobs < 1 || map_.jobs > kMostJobs) return "--jobs must be between 1 and 64";
  return nullptr;
}

// A variable or a profile may name a form for one answer, for which the usual one is taken.
const char* MapArguments::WrongWithForm() {
  const bool chosen = IsTyped(*command_, "--output");
  const char* usual = std::getenv("SCRIPTWELLS_OUTPUT");
  if (!chosen && usual != nullptr && *usual != '\0') output_ = usual;
  const OutputFormat* found = FindOutput(output_);
  const bool isRows = found != nullptr && (*found == OutputFormat::kCsv || *found == OutputFormat::kJson);
  if (chosen && !isRows) return "--output must be csv or json";
  map_.output = map_.json ? OutputFormat::kJson : isRows ? *found : OutputFormat::kCsv;
  if (chosen && *found != map_.output) return "give --json or another --output, not both";
  return nullptr;
}

const char* MapArguments::WrongWithFiles() const {
  if (map_.resume && map_.results.empty()) return "--resume needs --results, whose journal it reads";
  if (map_.resume && map_.force) return "give --resume or --force, not both";
  if (map_.retryUnknown && !map_.resume) return "--retry-unknown needs --resume";
  return nullptr;
}

}  // namespace qv::cli
