#include "tools/shell_run.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <ostream>
#include <system_error>

#include "tools/input/document_file.h"
#include "tools/input/input_text.h"
#include "tools/output/answer_output.h"
#include "tools/output/text_table.h"
#include "tools/report/failure.h"
#include "tools/report/standard_output.h"
#include "tools/service/home_directory.h"
#include "tools/shell/file_names.h"
#include "tools/shell/history_text.h"
#include "tools/system/local_files.h"
#include "tools/transfer/saved_file.h"

namespace qv::cli {

namespace {

namespace fs = std::filesystem;
using std::chrono::steady_clock;

struct FormatRow {
  const char* name;
  OutputFormat format;
};

constexpr FormatRow kFormats[] = {{"text", OutputFormat::kText},
                                  {"table", OutputFormat::kTable},
                                  {"csv", OutputFormat::kCsv},
                                  {"json", OutputFormat::kJson}};

[[noreturn]] void Refuse(const std::string& message) {
  throw Failure(ExitStatus::kUsage, message);
}

const char* NameOf(OutputFormat format) {
  const auto* row = std::find_if(std::begin(kFormats), std::end(kFormats),
                                 [format](const FormatRow& one) { return one.format == format; });
  return row->name;
}

std::string MillisecondsText(steady_clock::duration time) {
  std::array<char, 32> text{};
  static_cast<void>(std::snprintf(text.data(), text.size(), "%.1f ms",
                                  std::chrono::duration<double, std::milli>(time).count()));
  return text.data();
}

// "text:" at the end of a long one is cut in the list.
std::vector<std::string> RowOf(const std::string& parameter) {
  const std::size_t equals = parameter.find('=');
  const std::size_t colon = parameter.find(':', equals);
  return {parameter.substr(0, equals), parameter.substr(equals + 1, colon - equals - 1),
          parameter.substr(colon + 1)};
}

// How an answer is written into a file of this name.
OutputFormat FormatFor(const std::string& file, OutputFormat usual) {
  const std::string extension = fs::path(file).extension();
  if (extension == ".csv") return OutputFormat::kCsv;
  return extension == ".json" ? OutputFormat::kJson : usual;
}

// Never replaces a file. A file that could not be written in full is removed.
void WriteInto(const std::string& path, const AnswerForm& form, const scriptwells::Value& answer,
               const Reporter& reporter) {
  std::error_code ignored;
  if (fs::exists(fs::symlink_status(path, ignored)))
    throw Failure(ExitStatus::kLocal, "the file " + path + " exists").Called("file exists");
  std::ofstream file(path, std::ios::binary);
  if (!file) throw Failure(ExitStatus::kLocal, "cannot write the file " + path);
  try {
    WriteAnswer(form, answer, file, reporter);
    file.close();
    if (!file) throw Failure(ExitStatus::kLocal, "cannot write the file " + path);
  } catch (const Failure&) {
    fs::remove(path, ignored);
    throw;
  }
}

}  // namespace

struct ShellRun::ActionRow {
  ShellVerb verb;
  Action action;
};

const std::vector<ShellRun::ActionRow>& ShellRun::Actions() {
  static const std::vector<ActionRow> kRows = {
      {ShellVerb::kHelp, &ShellRun::Help},
      {ShellVerb::kLanguage, &ShellRun::SetLanguage},
      {ShellVerb::kOpen, &ShellRun::OpenFile},
      {ShellVerb::kOutput, &ShellRun::SetOutput},
      {ShellVerb::kParam, &ShellRun::SetParameter},
      {ShellVerb::kParams, &ShellRun::ListParameters},
      {ShellVerb::kSave, &ShellRun::SaveAnswer},
      {ShellVerb::kSession, &ShellRun::ShowSession},
      {ShellVerb::kTime, &ShellRun::SetTime},
      {ShellVerb::kTrace, &ShellRun::SetTrace},
      {ShellVerb::kUnparam, &ShellRun::RemoveParameter},
      {ShellVerb::kUpload, &ShellRun::SetUpload},
  };
  return kRows;
}

ShellRun::ShellRun(const ShellOptions& options, const SessionSettings& settings, std::ostream& out,
                   const Reporter& reporter)
    : options_(options),
      settings_(settings),
      out_(out),
      reporter_(reporter),
      language_(options.language),
      output_(options.output),
      traceFile_(options.traceFile) {
  for (const std::string& text : options.parameters) SetParameter(text);
}

void ShellRun::Use(ScriptSession& session) {
  session_ = &session;
  begin_ = steady_clock::now();
}

bool ShellRun::RunCommand(const TypedCommand& command) {
  lastScript_.clear();
  for (const ActionRow& row : Actions())
    if (row.verb == command.verb) (this->*row.action)(command.argument);
  return command.verb != ShellVerb::kQuit;
}

void ShellRun::RunScript(const std::string& script) {
  lastScript_ = CheckScript(script);
  if (LooksLikeDocument(lastScript_))
    reporter_.Note("this looks like a script document, which :open FILE runs");
  for (const std::string& odd : scriptwells::LossesOnTheWire(lastScript_))
    reporter_.Note("the script " + odd);
  session_->UseLanguage(language_);
  Answer([this] { return session_->Run(lastScript_, ArgumentsNow()); });
}

// Prints the answer of the call, and what there is to say about it.
template <class Call>
void ShellRun::Answer(const Call& call) {
  const auto begin = steady_clock::now();
  const auto report = [&] {
    const auto time = steady_clock::now() - begin;
    for (const std::string& warning : session_->TakeWarnings()) reporter_.Warn(warning);
    if (showsTime_) reporter_.Note("the call took " + MillisecondsText(time));
  };
  ++calls_;
  try {
    answer_ = call();
  } catch (const Failure&) {
    report();
    throw;
  }
  if (answer_->Is<std::string>())
    for (std::string& ticket : TicketsInAddresses(answer_->As<std::string>()))
      tickets_.push_back(std::move(ticket));
  if (answer_->type() == scriptwells::Type::kTable) {
    columns_.clear();
    for (const scriptwells::Column& column : answer_->AsTable().Columns()) columns_.push_back(column.name);
  }
  WriteAnswer({output_}, *answer_, out_, reporter_);
  report();
}

CompletionNames ShellRun::Names() const {
  CompletionNames names{{}, columns_};
  for (const Parameter& parameter : parameters_) names.parameters.push_back(parameter.parsed.argument.Name());
  return names;
}

scriptwells::Arguments ShellRun::ArgumentsNow() const {
  scriptwells::Arguments arguments;
  for (const Parameter& parameter : parameters_) arguments.Add(parameter.parsed.argument);
  return arguments;
}

// On standard output, where answers go.
void ShellRun::Put(const std::string& text) {
  out_ << TextFor(out_, text) << std::flush;
  if (!out_) throw FailedOutput(out_, "cannot write to standard output");
}

void ShellRun::Help(const std::string& name) {
  Put(ShellHelp(name));
}

void ShellRun::SetLanguage(const std::string& name) {
  if (name.empty()) return Put(language_ + "\n");
  language_ = name;
}

void ShellRun::OpenFile(const std::string& file) {
  const std::string path = WithoutTilde(file);
  if (fs::path(path).extension() != ".xml") {
    const std::string script = ReadScript(path);
    if (!LooksLikeDocument(script)) return RunScript(script);
  }
  CheckDocument(path);
  Answer([&] { return session_->RunDocument(path, ArgumentsNow()); });
}

void ShellRun::SetOutput(const std::string& format) {
  if (format.empty()) return Put(std::string(NameOf(output_)) + "\n");
  for (const FormatRow& row : kFormats)
    if (format == row.name) {
      output_ = row.format;
      return;
    }
  Refuse("it is text, table, csv or json, not '" + format + "'");
}

void ShellRun::SetParameter(const std::string& text) {
  Parameter parameter{text, ParseParameter(text)};
  const std::string name = parameter.parsed.argument.Name();
  if (parameter.parsed.argument.GetFile() != nullptr && !options_.local) CheckUploadScripts();
  const std::string about = "parameter '" + name + "' ";
  for (const std::string& note : parameter.parsed.notes) reporter_.Note(about + note);
  for (Parameter& known : parameters_)
    if (known.parsed.argument.Name() == name) {
      known = std::move(parameter);
      return;
    }
  parameters_.push_back(std::move(parameter));
}

void ShellRun::ListParameters(const std::string&) {
  std::vector<std::vector<std::string>> rows;
  for (const Parameter& parameter : parameters_) rows.push_back(RowOf(parameter.text));
  if (!rows.empty()) Put(FormatColumns({"NAME", "TYPE", "VALUE"}, rows));
}

void ShellRun::RemoveParameter(const std::string& name) {
  const auto found = std::find_if(parameters_.begin(), parameters_.end(), [&](const Parameter& parameter) {
    return parameter.parsed.argument.Name() == name;
  });
  if (found == parameters_.end()) Refuse("no parameter '" + name + "'; :params lists all");
  parameters_.erase(found);
}

void ShellRun::SetUpload(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == 0 || equals == std::string::npos) Refuse("it is :upload NAME=FILE");
  SetParameter(text.substr(0, equals) + "=file:" + WithoutTilde(text.substr(equals + 1)));
}

// A folder means that the answer is the URL of a file.
void ShellRun::SaveAnswer(const std::string& target) {
  if (!answer_) Refuse("there is no answer to save");
  const std::string path = WithoutTilde(target);
  std::error_code ignored;
  if (!fs::is_directory(path, ignored))
    return WriteInto(path, {FormatFor(path, output_)}, *answer_, reporter_);
  const std::string url = UrlOfAnswer(*answer_);
  SaveFile(*session_, url, CheckTargetDirectory(path), output_ == OutputFormat::kJson, out_);
}

void ShellRun::ShowSession(const std::string&) {
  const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(steady_clock::now() - begin_).count();
  const std::string& user = settings_.credentials.user;
  Put(FormatColumns({"SERVER", "USER", "OPEN FOR", "CALLS"},
                    {{settings_.server, user, std::to_string(seconds) + " s", std::to_string(calls_)}}));
}

void ShellRun::SetTime(const std::string& argument) {
  if (argument.empty()) return Put(showsTime_ ? "on\n" : "off\n");
  showsTime_ = IsOn(argument);
}

void ShellRun::SetTrace(const std::string& argument) {
  if (argument.empty())
    return Put((traceFile_.empty() ? "off" : traceFile_ == "-" ? "on" : traceFile_) + "\n");
  const bool isSwitch = argument == "on" || argument == "off";
  const std::string file = isSwitch ? (IsOn(argument) ? "-" : "") : WithoutTilde(argument);
  traceFile_.clear();
  session_->TraceInto(file);
  traceFile_ = file;
}

}  // namespace qv::cli
