#include "tools/run_command.h"

#include <algorithm>
#include <ostream>
#include <set>

#include "tools/commands.h"
#include "tools/input/document_file.h"
#include "tools/input/input_text.h"
#include "tools/input/password.h"
#include "tools/input/server_address.h"
#include "tools/output/answer_format.h"
#include "tools/output/record_list_output.h"
#include "tools/report/failure.h"
#include "tools/report/standard_output.h"
#include "tools/service/home_directory.h"
#include "tools/system/local_files.h"
#include "tools/transfer/saved_file.h"
#include "tools/transfer/session_frame.h"
#include "tools/values/object_text.h"
#include "tools/values/parameter_text.h"
#include "tools/values/wire_characters.h"

namespace qv::cli {

namespace {

// The library counts parameters in 16 bits.
constexpr std::size_t kMostParameters = 32767;

std::vector<ScriptParameter> ParseParameters(const RunOptions& options, const Reporter& reporter) {
  const std::vector<std::string>& texts = options.parameters;
  if (texts.size() > kMostParameters) throw Failure(ExitStatus::kLocal, "more than 32767 parameters");
  std::vector<ScriptParameter> parameters;
  std::set<std::string> names;
  for (const std::string& text : texts) {
    parameters.push_back(ParseParameter(text));
    const ScriptParameter& last = parameters.back();
    if (!names.insert(last.name).second)
      throw Failure(ExitStatus::kLocal, "parameter '" + last.name + "' is given twice");
    for (const std::string& note : last.notes) reporter.Note("parameter '" + last.name + "' " + note);
  }
  return parameters;
}

SessionSettings CheckRunSettings(const RunOptions& options) {
  SessionSettings settings = CheckSettings(options);
  if (options.local) return settings;
  settings.server = CheckServer(options.server);
  if (options.usid.empty()) settings.password = FindPassword(options, options.file == "-");
  return settings;
}

std::string TakeScript(const RunOptions& options, const Reporter& reporter) {
  if (options.document) return CheckDocument(options.file);
  std::string script = options.file.empty() ? CheckScript(options.code) : ReadScript(options.file);
  if (LooksLikeDocument(script))
    reporter.Note("this looks like a script document, which scriptwells run-document runs");
  const std::string odd = RefusedCharacterNote(script);
  if (!odd.empty()) reporter.Note("the script " + odd);
  return script;
}

bool HasFiles(const std::vector<ScriptParameter>& parameters) {
  return std::any_of(parameters.begin(), parameters.end(),
                     [](const ScriptParameter& parameter) { return IsFileParameter(parameter.value); });
}

// The library does not read these answers as they were sent.
void NoteLosses(const Variant& answer, const Reporter& reporter) {
  if (answer.Tag() == VT_EMPTY)
    reporter.Note(
        "the answer arrived as an empty value: a long, a type that the library does not read, or a URL "
        "without text");
  if (HasWrappedCount(answer))
    reporter.Note("a count of the duration does not fit 16 bits and arrived changed");
  if (answer.Tag() == VT_I1) reporter.Note("the answer arrived as 0, as every answer of the type byte does");
  if (TypeName(answer) == "url")
    reporter.Note("the link of a URL answer does not arrive; let the script answer with a string");
}

void WriteTable(const RunOptions& options, IRecordListPtr list, std::ostream& out, const Reporter& reporter) {
  const ListForm form{options.output, options.csvNull, TerminalWidth(out)};
  for (const std::string& loss : WriteRecordList(std::move(list), form, out)) reporter.Note(loss);
}

void WriteAnswer(const RunOptions& options, const Variant& answer, std::ostream& out,
                 const Reporter& reporter) {
  if (IRecordListPtr list = AsRecordList(answer)) return WriteTable(options, std::move(list), out, reporter);
  out << TextFor(out, FormatAnswer(options.output, answer, options.csvNull)) << std::flush;
  CheckWritten(out);
  NoteLosses(answer, reporter);
}

Variant Execute(ScriptSession& session, const RunJob& job, const RunOptions& options) {
  if (options.document) return session.ExecuteDocument(job.script, options.file, job.parameters);
  return session.Execute(options.language, job.script, job.parameters);
}

}  // namespace

RunJob PrepareRun(const RunOptions& options, const Reporter& reporter) {
  RunJob job;
  job.parameters = ParseParameters(options, reporter);
  job.hasFiles = HasFiles(job.parameters);
  if (!options.local && job.hasFiles) CheckUploadScripts();
  if (!options.saveDirectory.empty()) job.saveDirectory = CheckTargetDirectory(options.saveDirectory);
  job.settings = CheckRunSettings(options);
  job.settings.http.replaceFiles = options.force;
  job.script = TakeScript(options, reporter);
  return job;
}

void Run(const RunJob& job, const RunOptions& options, std::ostream& out, const Reporter& reporter) {
  InSession(job.settings, reporter, [&](ScriptSession& session) {
    const Variant answer = Execute(session, job, options);
    if (job.saveDirectory.empty()) return WriteAnswer(options, answer, out, reporter);
    const std::string url = UrlOfAnswer(answer);
    if (OriginOf(url) != OriginOf(job.settings.server))
      reporter.Warn("the session's id is sent to " + OriginOf(url) + ", which has the file");
    SaveFile(session, url, job.saveDirectory, options.output == OutputFormat::kJson, out);
  });
}

void RunCommand(const RunOptions& options, std::ostream& out, std::ostream& err) {
  const Reporter reporter(err, FormOf(options.json));
  Run(PrepareRun(options, reporter), options, out, reporter);
}

}  // namespace qv::cli
