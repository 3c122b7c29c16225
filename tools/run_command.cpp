#include "tools/run_command.h"

#include <algorithm>
#include <ctime>
#include <ostream>
#include <set>

#include "tools/commands.h"
#include "tools/input/document_file.h"
#include "tools/input/input_text.h"
#include "tools/input/parameter_text.h"
#include "tools/output/answer_output.h"
#include "tools/report/failure.h"
#include "tools/service/home_directory.h"
#include "tools/system/interrupt.h"
#include "tools/system/local_files.h"
#include "tools/system/watched_file.h"
#include "tools/transfer/saved_file.h"
#include "tools/transfer/session_frame.h"
#include "tools/transfer/session_settings.h"

namespace qv::cli {

namespace {

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

// The file may be on another server than that of the session.
void WarnOfOtherServer(const std::string& url, const std::string& server, const Reporter& reporter) {
  const std::string other = ServerOfFile(url);
  if (other != ServerOfFile(server + "/file"))
    reporter.Warn("the session's id is sent to " + other + ", which has the file");
}

void RunOnce(const RunJob& job, const RunOptions& options, std::ostream& out, const Reporter& reporter) {
  InSession(job.settings, reporter, [&](ScriptSession& session) {
    const Value answer = options.document ? session.RunDocument(options.file, job.arguments)
                                          : session.Run(job.script, job.arguments);
    if (job.saveDirectory.empty())
      return WriteAnswer({options.output, options.csvNull}, answer, out, reporter);
    const std::string url = UrlOfAnswer(answer);
    if (options.replayFile.empty()) WarnOfOtherServer(url, job.settings.server, reporter);
    SaveFile(session, url, job.saveDirectory, options.output == OutputFormat::kJson, out);
  });
}

std::string TimeOfDay() {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  char text[16] = {};
  if (::localtime_r(&now, &local) != nullptr)
    static_cast<void>(std::strftime(text, sizeof text, "%H:%M:%S", &local));
  return text;
}

void RunOnceMore(RunJob& job, const RunOptions& options, std::ostream& out, const Reporter& reporter) {
  reporter.Separate(options.file, TimeOfDay());
  try {
    job.script = TakeScript(options, reporter);
    RunOnce(job, options, out, reporter);
  } catch (const Failure& failure) {
    if (!out) throw;
    if (!Interrupted()) reporter.Report(failure);
  }
}

}  // namespace

RunJob PrepareRun(const RunOptions& options, const Reporter& reporter) {
  RunJob job;
  job.arguments = ParseParameters(options, reporter);
  job.hasFiles = HasFiles(job.arguments);
  if (!options.local && job.hasFiles) CheckUploadScripts();
  if (!options.saveDirectory.empty()) job.saveDirectory = CheckTargetDirectory(options.saveDirectory);
  job.settings = CheckRunSettings(options);
  if (options.watch)
    CheckReadable(options.file, "script");
  else
    job.script = TakeScript(options, reporter);
  return job;
}

void Run(RunJob& job, const RunOptions& options, std::ostream& out, const Reporter& reporter) {
  if (!options.watch) return RunOnce(job, options, out, reporter);
  WatchedFile file(options.file);
  do RunOnceMore(job, options, out, reporter);
  while (!Interrupted() && file.WaitForSave());
}

void RunCommand(const RunOptions& options, std::ostream& out, std::ostream& err) {
  const Reporter reporter(err, FormOf(options.json));
  RunJob job = PrepareRun(options, reporter);
  Run(job, options, out, reporter);
}

}  // namespace qv::cli
