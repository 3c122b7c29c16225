#include "tools/run_command.h"

#include <algorithm>
#include <ostream>
#include <set>

#include "tools/commands.h"
#include "tools/input/document_file.h"
#include "tools/input/input_text.h"
#include "tools/input/parameter_text.h"
#include "tools/output/answer_format.h"
#include "tools/output/table_output.h"
#include "tools/report/failure.h"
#include "tools/report/standard_output.h"
#include "tools/service/home_directory.h"
#include "tools/system/local_files.h"
#include "tools/transfer/saved_file.h"
#include "tools/transfer/session_frame.h"
#include "tools/transfer/session_settings.h"

namespace qv::cli {

namespace {

using scriptwells::Type;
using scriptwells::Value;

// The library counts parameters in 16 bits.
constexpr std::size_t kMostParameters = 32767;

// Their names differ. Prints notes.
scriptwells::Arguments ParseParameters(const RunOptions& options, const Reporter& reporter) {
  const std::vector<std::string>& texts = options.parameters;
  if (texts.size() > kMostParameters) throw Failure(ExitStatus::kLocal, "more than 32767 parameters");
  scriptwells::Arguments arguments;
  std::set<std::string> names;
  for (const std::string& text : texts) {
    ScriptParameter parameter = ParseParameter(text);
    const std::string name = parameter.argument.Name();
    if (!names.insert(name).second)
      throw Failure(ExitStatus::kLocal, "parameter '" + name + "' is given twice");
    const std::string shown = "parameter '" + name + "' ";
    for (const std::string& note : parameter.notes) reporter.Note(shown + note);
    arguments.Add(std::move(parameter.argument));
  }
  return arguments;
}

// The server of --local is known later; the rest of its settings is checked with any.
SessionSettings CheckRunSettings(const RunOptions& options) {
  SessionSettings settings = SettingsOf(options);
  settings.options.language = options.language;
  settings.options.replaceFiles = options.force;
  settings.options.hiddenFiles = options.force;
  if (options.local) settings.server = "http://localhost";
  if (options.local)
    CheckSettings(settings);
  else
    TakePassword(options, settings, options.file == "-");
  return settings;
}

// Nothing for a document, which is read by its name.
std::string TakeScript(const RunOptions& options, const Reporter& reporter) {
  if (options.document) {
    CheckDocument(options.file);
    return {};
  }
  std::string script = options.file.empty() ? CheckScript(options.code) : ReadScript(options.file);
  if (LooksLikeDocument(script))
    reporter.Note("this looks like a script document, which scriptwells run-document runs");
  for (const std::string& odd : scriptwells::LossesOnTheWire(script)) reporter.Note("the script " + odd);
  return script;
}

bool HasFiles(const scriptwells::Arguments& arguments) {
  return std::any_of(arguments.begin(), arguments.end(),
                     [](const scriptwells::Argument& argument) { return argument.GetFile() != nullptr; });
}

void WriteTableAnswer(const RunOptions& options, const scriptwells::Table& table, std::ostream& out,
                      const Reporter& reporter) {
  WriteTable(table, {options.output, options.csvNull, TerminalWidth(out)}, out);
  for (const std::string& loss : LossesOf(table)) reporter.Note(loss);
}

void WriteAnswer(const RunOptions& options, const Value& answer, std::ostream& out,
                 const Reporter& reporter) {
  if (answer.type() == Type::kTable) return WriteTableAnswer(options, answer.AsTable(), out, reporter);
  out << TextFor(out, FormatAnswer(options.output, answer, options.csvNull)) << std::flush;
  CheckWritten(out);
  for (const std::string& loss : LossesOf(answer)) reporter.Note(loss);
}

// The file may be on another server than that of the session.
void WarnOfOtherServer(const std::string& url, const std::string& server, const Reporter& reporter) {
  const std::string other = ServerOfFile(url);
  if (other != ServerOfFile(server + "/file"))
    reporter.Warn("the session's id is sent to " + other + ", which has the file");
}

}  // namespace

RunJob PrepareRun(const RunOptions& options, const Reporter& reporter) {
  RunJob job;
  job.arguments = ParseParameters(options, reporter);
  job.hasFiles = HasFiles(job.arguments);
  if (!options.local && job.hasFiles) CheckUploadScripts();
  if (!options.saveDirectory.empty()) job.saveDirectory = CheckTargetDirectory(options.saveDirectory);
  job.settings = CheckRunSettings(options);
  job.script = TakeScript(options, reporter);
  return job;
}

void Run(const RunJob& job, const RunOptions& options, std::ostream& out, const Reporter& reporter) {
  InSession(job.settings, reporter, [&](ScriptSession& session) {
    const Value answer = options.document ? session.RunDocument(options.file, job.arguments)
                                          : session.Run(job.script, job.arguments);
    if (job.saveDirectory.empty()) return WriteAnswer(options, answer, out, reporter);
    const std::string url = UrlOfAnswer(answer);
    if (options.replayFile.empty()) WarnOfOtherServer(url, job.settings.server, reporter);
    SaveFile(session, url, job.saveDirectory, options.output == OutputFormat::kJson, out);
  });
}

void RunCommand(const RunOptions& options, std::ostream& out, std::ostream& err) {
  const Reporter reporter(err, FormOf(options.json));
  Run(PrepareRun(options, reporter), options, out, reporter);
}

}  // namespace qv::cli
