#include "tools/run_command.h"

#include <optional>
#include <ostream>
#include <set>

#include "tools/answer_format.h"
#include "tools/document_file.h"
#include "tools/failure.h"
#include "tools/file_parameter.h"
#include "tools/home_directory.h"
#include "tools/input_text.h"
#include "tools/local_files.h"
#include "tools/local_service.h"
#include "tools/object_text.h"
#include "tools/parameter_text.h"
#include "tools/password.h"
#include "tools/private_home.h"
#include "tools/record_list_output.h"
#include "tools/saved_file.h"
#include "tools/script_console.h"
#include "tools/server_address.h"
#include "tools/session_frame.h"
#include "tools/terminal_output.h"
#include "tools/wire_characters.h"

namespace qv::cli {

namespace {

// What the library's list can count.
constexpr std::size_t kMostParameters = 32767;

struct Job {
  std::string script;  // or the document, as CheckDocument gives it
  std::vector<ScriptParameter> parameters;
  bool hasFiles = false;      // among the parameters
  std::string saveDirectory;  // empty: the answer is no file
  SessionSettings settings;
};

std::vector<ScriptParameter> ParseParameters(const RunOptions& options, std::ostream& err) {
  const std::vector<std::string>& texts = options.parameters;
  if (texts.size() > kMostParameters) throw Failure(ExitStatus::kLocal, "more than 32767 parameters");
  std::vector<ScriptParameter> parameters;
  std::set<std::string> names;
  for (const std::string& text : texts) {
    parameters.push_back(ParseParameter(text));
    const ScriptParameter& last = parameters.back();
    if (!names.insert(last.name).second)
      throw Failure(ExitStatus::kLocal, "parameter '" + last.name + "' is given twice");
    for (const std::string& note : last.notes)
      ReportNote("note", "parameter '" + last.name + "' " + note, options.json, err);
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

std::string TakeScript(const RunOptions& options, std::ostream& err) {
  if (options.document) return CheckDocument(options.file);
  std::string script = options.file.empty() ? CheckScript(options.code) : ReadScript(options.file);
  if (LooksLikeDocument(script))
    ReportNote("note", "this looks like a script document, which scriptwells run-document runs", options.json,
               err);
  const std::string odd = RefusedCharacterNote(script);
  if (!odd.empty()) ReportNote("note", "the script " + odd, options.json, err);
  return script;
}

bool HasFiles(const std::vector<ScriptParameter>& parameters) {
  for (const ScriptParameter& parameter : parameters)
    if (IsFileParameter(parameter.value)) return true;
  return false;
}

// Everything that can be wrong on this side is told before any server is asked.
Job Prepare(const RunOptions& options, std::ostream& err) {
  Job job;
  job.parameters = ParseParameters(options, err);
  job.hasFiles = HasFiles(job.parameters);
  if (!options.local && job.hasFiles) CheckUploadScripts();
  if (!options.saveDirectory.empty()) job.saveDirectory = CheckTargetDirectory(options.saveDirectory);
  job.settings = CheckRunSettings(options);
  job.settings.http.replaceFiles = options.force;
  job.script = TakeScript(options, err);
  return job;
}

// What the library reads of some answers, whatever was sent.
void TellWhatWasLost(const Variant& answer, bool asJson, std::ostream& err) {
  if (answer.Tag() == VT_EMPTY)
    ReportNote(
        "note",
        "the answer arrived as an empty value: a long, a type that the library does not read, or a URL "
        "without text",
        asJson, err);
  if (HasWrappedCount(answer))
    ReportNote("note", "a count of the duration does not fit 16 bits and arrived changed", asJson, err);
  if (answer.Tag() == VT_I1)
    ReportNote("note", "the answer arrived as 0, as every answer of the type byte does", asJson, err);
  if (TypeName(answer) == "url")
    ReportNote("note", "the link of a URL answer does not arrive; let the script answer with a string",
               asJson, err);
}

void WriteTable(const RunOptions& options, IRecordListPtr list, std::ostream& out, std::ostream& err) {
  const ListForm form{options.output, options.csvNull, TerminalWidth(out)};
  for (const std::string& loss : WriteRecordList(std::move(list), form, out))
    ReportNote("note", loss, options.json, err);
}

void WriteAnswer(const RunOptions& options, const Variant& answer, std::ostream& out, std::ostream& err) {
  if (IRecordListPtr list = AsRecordList(answer)) return WriteTable(options, std::move(list), out, err);
  out << TextFor(out, FormatAnswer(options.output, answer, options.csvNull)) << std::flush;
  CheckWritten(out);
  TellWhatWasLost(answer, options.json, err);
}

Variant Execute(ScriptSession& session, const Job& job, const RunOptions& options) {
  if (options.document) return session.ExecuteDocument(job.script, options.file, job.parameters);
  return session.Execute(options.language, job.script, job.parameters);
}

void RunJob(const Job& job, const RunOptions& options, std::ostream& out, std::ostream& err) {
  InSession(job.settings, options.json, err, [&](ScriptSession& session) {
    const Variant answer = Execute(session, job, options);
    if (job.saveDirectory.empty()) return WriteAnswer(options, answer, out, err);
    const std::string url = UrlOfAnswer(answer);
    if (OriginOf(url) != OriginOf(job.settings.server))
      ReportNote("warning", "the session's id goes to " + OriginOf(url) + ", where the file lies",
                 options.json, err);
    SaveFile(session, url, job.saveDirectory, options.output == OutputFormat::kJson, out);
  });
}

}  // namespace

void RunCommand(const RunOptions& options, std::ostream& out, std::ostream& err) {
  Job job = Prepare(options, err);
  if (!options.local) return RunJob(job, options, out, err);
  std::optional<PrivateHome> home;
  if (job.hasFiles) home.emplace();
  // Everybody on this machine can connect to the service, so that only this program may know its user.
  const devservice::ServiceUser user = RandomUser();
  devservice::ServiceOptions serviceOptions = CommonServiceOptions();
  serviceOptions.users = {user};
  serviceOptions.console = WriteConsole(options.json, err);
  devservice::Service service(serviceOptions);
  StartService(service);
  job.settings.server = service.Url();
  job.settings.user = user.name;
  job.settings.password = user.password;
  RunJob(job, options, out, err);
}

}  // namespace qv::cli
