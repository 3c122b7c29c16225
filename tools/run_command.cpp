#include "tools/run_command.h"

#include <cmath>
#include <ostream>
#include <set>

#include "tools/answer_format.h"
#include "tools/document_file.h"
#include "tools/failure.h"
#include "tools/input_text.h"
#include "tools/interrupt.h"
#include "tools/local_service.h"
#include "tools/parameter_text.h"
#include "tools/password.h"
#include "tools/script_session.h"
#include "tools/server_address.h"

namespace qv::cli {

namespace {

// What the library's list can count.
constexpr std::size_t kMostParameters = 32767;

struct Job {
  std::string script;  // or the document, as CheckDocument gives it
  std::vector<ScriptParameter> parameters;
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

std::int64_t Milliseconds(double seconds) {
  return static_cast<std::int64_t>(std::ceil(seconds * 1000));
}

SessionSettings CheckSettings(const RunOptions& options) {
  SessionSettings settings;
  if (!options.local) settings.server = CheckServer(options.server);
  settings.proxy = CheckProxy(options.proxy);
  settings.user = options.local && options.user.empty() ? "local" : options.user;
  settings.replica = options.replica;
  CheckCredential(settings.user, "user name");
  CheckCredential(settings.replica, "replica id");
  // The service inside this program takes every password.
  if (!options.local) settings.password = FindPassword(options);
  settings.http.connectTimeout = Milliseconds(options.connectTimeoutSeconds);
  settings.http.idleTimeout = Milliseconds(options.timeoutSeconds);
  return settings;
}

std::string TakeScript(const RunOptions& options, std::ostream& err) {
  if (options.document) return CheckDocument(options.file);
  std::string script = options.file.empty() ? CheckScript(options.code) : ReadScript(options.file);
  if (LooksLikeDocument(script))
    ReportNote("note", "this looks like a script document, which scriptwells run-document runs", options.json,
               err);
  return script;
}

// Everything that can be wrong on this side is told before any server is asked.
Job Prepare(const RunOptions& options, std::ostream& err) {
  Job job;
  job.parameters = ParseParameters(options, err);
  job.settings = CheckSettings(options);
  job.script = TakeScript(options, err);
  return job;
}

void CloseSession(ScriptSession& session, bool asJson, std::ostream& err) {
  try {
    session.Close();
  } catch (const Failure& failure) {
    ReportNote("warning", "the session was not closed: " + failure.Message(), asJson, err);
  }
}

// What the library reads of some answers, whatever was sent.
void TellWhatWasLost(const Variant& answer, bool asJson, std::ostream& err) {
  if (answer.Tag() == VT_EMPTY)
    ReportNote("note", "the answer arrived as an empty value, as every answer of the type long does", asJson,
               err);
  if (answer.Tag() == VT_I1)
    ReportNote("note", "the answer arrived as 0, as every answer of the type byte does", asJson, err);
  if (TypeName(answer) == "url")
    ReportNote("note", "the link of a URL answer does not arrive; let the script answer with a string",
               asJson, err);
}

void WriteAnswer(const RunOptions& options, const Variant& answer, std::ostream& out, std::ostream& err) {
  out << FormatAnswer(options.output, answer) << std::flush;
  if (!out) throw Failure(ExitStatus::kLocal, "cannot write the answer to standard output");
  TellWhatWasLost(answer, options.json, err);
}

Variant Execute(ScriptSession& session, const Job& job, const RunOptions& options) {
  if (options.document) return session.ExecuteDocument(job.script, job.parameters);
  return session.Execute(options.language, job.script, job.parameters);
}

void RunJob(const Job& job, const RunOptions& options, std::ostream& out, std::ostream& err) {
  ScriptSession session(job.settings);
  try {
    session.Open();
    ThrowIfInterrupted();
    WriteAnswer(options, Execute(session, job, options), out, err);
  } catch (const Failure&) {
    CloseSession(session, options.json, err);
    throw;
  }
  CloseSession(session, options.json, err);
  ThrowIfInterrupted();
}

}  // namespace

void RunCommand(const RunOptions& options, std::ostream& out, std::ostream& err) {
  Job job = Prepare(options, err);
  if (!options.local) return RunJob(job, options, out, err);
  devservice::Service service(CommonServiceOptions());
  StartService(service);
  job.settings.server = service.Url();
  RunJob(job, options, out, err);
}

}  // namespace qv::cli
