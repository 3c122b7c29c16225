#include "tools/inspect/server_check.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>

#include "scriptwells/session.h"
#include "tools/inspect/checked_call.h"
#include "tools/inspect/server_probe.h"
#include "tools/service/home_directory.h"
#include "tools/system/interrupt.h"

namespace qv::cli {

namespace {

using scriptwells::Session;
using scriptwells::Value;

// What is sent, and a text that the value that comes back holds. Servers may answer with another type of
// number, and with a date and time in place of either.
struct ValueRow {
  const char* type;
  const char* text;
  const char* back;
};
constexpr ValueRow kValues[] = {
    {"byte", "5", "5"},
    {"short", "-1234", "-1234"},
    {"int", "2147483647", "2147483647"},
    {"long", "5000000000", "5000000000"},
    {"boolean", "true", "true"},
    {"float", "0.5", "0.5"},
    {"double", "-1234.5", "-1234.5"},
    {"string", "a < b & \"c\" \xC3\xA9", "a < b & \"c\" \xC3\xA9"},
    {"date", "2024-03-05", "2024-03-05"},
    {"time", "10:15:30", "10:15:30"},
    {"datetime", "2024-03-05T10:15:30", "2024-03-05T10:15:30"},
    {"duration", "P1DT2H", "P1DT2H"},
};
constexpr char kSmile[] = "\xF0\x9F\x98\x80";  // beyond U+FFFF
constexpr std::chrono::milliseconds kLastWait{2000};
constexpr std::size_t kLongestSentence = 1000;
constexpr char kFileText[] = "scriptwells check";

class TemporaryFolder {
 public:
  TemporaryFolder() : path_((std::filesystem::temp_directory_path() / "scriptwells-check-XXXXXX").string()) {
    if (::mkdtemp(path_.data()) == nullptr)
      throw Failure(ExitStatus::kLocal, "cannot create a temporary directory");
  }
  ~TemporaryFolder() {
    std::error_code unused;
    std::filesystem::remove_all(path_, unused);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  std::string File(const char* name) const { return path_ + "/" + name; }
  const std::string& Path() const { return path_; }

 private:
  std::string path_;
};

std::string Joined(const std::vector<std::string>& texts) {
  std::string all;
  for (const std::string& text : texts) all += (all.empty() ? "" : ", ") + text;
  return all;
}

StepResult ResultOf(const Findings& findings) {
  if (findings.empty()) return StepResult::kOk;
  return StopsClients(findings) ? StepResult::kBroken : StepResult::kLoss;
}

std::string NamesOf(const Findings& findings) {
  std::vector<std::string> names;
  for (const Finding& finding : findings)
    if (const char* id = RowOf(finding.rule).id; std::find(names.begin(), names.end(), id) == names.end())
      names.emplace_back(id);
  return Joined(names);
}

// Rules of the HTTP form come first in the table, then those of the envelope.
Findings Between(const Findings& findings, Rule first, Rule last) {
  Findings some;
  std::copy_if(findings.begin(), findings.end(), std::back_inserter(some),
               [&](const Finding& finding) { return finding.rule >= first && finding.rule <= last; });
  return some;
}

class ServerCheck {
 public:
  ServerCheck(const SessionSettings& settings, const CheckScripts& scripts)
      : settings_(settings), scripts_(scripts), calls_(settings, report_.findings) {
    report_.server = settings.server;
  }

  CheckResult Run() {
    if (!Reached()) return {std::move(report_), status_};
    try {
      Steps();
    } catch (const Failure&) {
      CloseAdopted();
      throw;
    }
    if (status_ == ExitStatus::kOk && !report_.IsUsable()) status_ = ExitStatus::kAnswer;
    return {std::move(report_), status_};
  }

 private:
  void Steps() {
    Open();
    Values();
    Fault();
    Table();
    Upload();
    Download();
    Close();
  }

  // After an interrupt. A session that the client opened closes itself.
  void CloseAdopted() {
    if (!isAdopted_) return;
    try {
      session_->Close(kLastWait);
    } catch (const scriptwells::Error&) {  // the server ends it some day
    }
  }

  void Add(const std::string& name, StepResult result, std::optional<std::chrono::microseconds> time,
           const std::string& sentence) {
    report_.steps.push_back({name, result, time, calls_.Secrets().MaskedPart(sentence, 0, kLongestSentence)});
  }
  void Skip(const std::string& name, const std::string& why) { Add(name, StepResult::kSkipped, {}, why); }

  bool Reached() {
    const ServerProbe probe = ProbeServer(settings_);
    const std::string whose = settings_.options.proxy.empty() ? "the server" : "the proxy";
    if (probe.reach == Reach::kNotResolved) return Unreached("name", probe, "connection");
    Add("name", StepResult::kOk, probe.name, whose + " is at " + Joined(probe.addresses));
    if (probe.reach == Reach::kNotConnected) return Unreached("connection", probe, "");
    Add("connection", StepResult::kOk, probe.connection, whose + " accepts connections");
    return Secured(probe);
  }

  bool Unreached(const std::string& step, const ServerProbe& probe, const std::string& next) {
    status_ = probe.isTimeout ? ExitStatus::kTimeout : ExitStatus::kUnreachable;
    Add(step, StepResult::kFailed, {}, probe.message);
    if (!next.empty()) Skip(next, "the server was not found");
    for (const char* rest : {"TLS", "HTTP form", "answer form", "session", "values", "close"})
      Skip(rest, "the server was not reached");
    return false;
  }

  bool Secured(const ServerProbe& probe) {
    if (!probe.usesTls) {
      Skip("TLS", "the address begins with http");
      return true;
    }
    for (const Certificate& certificate : probe.chain)
      chain_.push_back(certificate.subject + " by " + certificate.issuer + ", until " + certificate.ends +
                       (certificate.names.empty() ? "" : ", for " + certificate.names));
    if (probe.reach == Reach::kReached) {
      Add("TLS", StepResult::kOk, probe.tls, "trusted: " + Joined(chain_));
      return true;
    }
    status_ = ExitStatus::kUnreachable;
    Add("TLS", StepResult::kBroken, {}, probe.message);
    calls_.Add("TLS", {Rule::kCertificate, Part::kNone, 0, 0,
                       probe.message + (chain_.empty() ? "" : "; the server sent: " + Joined(chain_))});
    for (const char* rest : {"HTTP form", "answer form", "session", "values", "close"})
      Skip(rest, "there is no secure connection");
    return false;
  }

  void Open() {
    const CallOutcome outcome = calls_.MakeStep("CreateUserSession", [&] {
      session_.emplace(settings_.server, settings_.credentials, calls_.Options());
    });
    const Findings http = Between(outcome.findings, Rule::kCertificate, Rule::kCompression);
    const Findings form = Between(outcome.findings, Rule::kServicePath, Rule::kFaultText);
    const Findings rest = Between(outcome.findings, Rule::kSessionId, Rule::kUnderstood);
    Add("HTTP form", ResultOf(http), outcome.time, http.empty() ? StatusLine(outcome) : NamesOf(http));
    if (outcome.answer.body.empty())
      Skip("answer form", "no answer came");
    else
      Add("answer form", ResultOf(form), {},
          form.empty() ? "the envelope is one that clients read" : NamesOf(form));
    if (!session_) Adopt(outcome);
    if (outcome.Succeeded()) return Add("session", ResultOf(rest), {}, "the server opened a session");
    if (session_)
      return Add("session", StepResult::kBroken, {}, "opened, but clients do not find its id in the answer");
    Add("session", outcome.findings.empty() ? StepResult::kFailed : StepResult::kBroken, {},
        outcome.error->message());
    if (outcome.findings.empty() || outcome.isFault) status_ = ExitStatus::kRefused;
  }

  // So that the steps that follow can be tried.
  void Adopt(const CallOutcome& outcome) {
    const std::string id = SessionIdIn(outcome.answer);
    if (id.empty() || !IsHeaderValue(id)) return;
    session_ = Session::Adopt(settings_.server, id, calls_.Options());
    isAdopted_ = true;
  }

  static std::string StatusLine(const CallOutcome& outcome) {
    return outcome.answer.head.substr(0, outcome.answer.head.find('\r'));
  }

  // Whether the step can be tried; else it is reported.
  bool CanTry(const std::string& step, const std::string& script) {
    if (!session_) Skip(step, "there is no session");
    if (session_ && script.empty()) Skip(step, "no script for it");
    return session_ && !script.empty();
  }

  CallOutcome RunScript(const std::string& step, const std::string& script,
                        const scriptwells::Arguments& arguments, Value& answer) {
    return calls_.MakeStep(step, [&] { answer = session_->Run(script, arguments); });
  }

  // False if it is reported as failed.
  bool Worked(const std::string& step, const CallOutcome& outcome) {
    if (outcome.Succeeded() && !StopsClients(outcome.findings)) return true;
    const bool isBroken = StopsClients(outcome.findings);
    const std::string message = outcome.error ? outcome.error->message() : std::string();
    Add(step, isBroken ? StepResult::kBroken : StepResult::kFailed, outcome.time,
        isBroken ? NamesOf(outcome.findings) : message);
    return false;
  }

  void Values() {
    if (!CanTry("values", scripts_.value)) return;
    for (const ValueRow& row : kValues) OneValue(row);
    Smile();
  }

  void OneValue(const ValueRow& row) {
    const std::string step = std::string("value ") + row.type;
    Value answer;
    const CallOutcome outcome =
        RunScript(step, scripts_.value, {{"value", scriptwells::Parse(row.type, row.text)}}, answer);
    if (!Worked(step, outcome)) return;
    const std::string back = answer.ToString();
    if (!outcome.findings.empty())
      return Add(step, StepResult::kLoss, outcome.time, NamesOf(outcome.findings));
    const bool isSame = IsSame(row, answer, back);
    textsWork_ = textsWork_ || (isSame && answer.type() == scriptwells::Type::kString);
    if (isSame) return Add(step, StepResult::kOk, outcome.time, std::string(row.text) + " came back");
    const std::string came = std::string(row.text) + " was sent, and '" + back + "' came back";
    Add(step, StepResult::kBroken, outcome.time, came);
    calls_.Add(step, {Rule::kSameValue, Part::kNone, 0, 0, came});
  }

  static bool IsSame(const ValueRow& row, const Value& answer, const std::string& back) {
    if (back.find(row.back) != std::string::npos) return true;
    const bool isOne = std::string(row.type) == "boolean" && back == "1";
    return isOne ||
           (answer.type() == scriptwells::Type::kDouble &&
            std::strtod(back.c_str(), nullptr) == std::strtod(row.back, nullptr) && row.back[0] != 'a');
  }

  // Servers that refuse it work with all other texts.
  void Smile() {
    const std::string step = "value emoji";
    if (!textsWork_) return Skip(step, "texts do not work");
    Value answer;
    const CallOutcome outcome = calls_.Make([&] {
      answer = session_->Run(scripts_.value, {{"value", kSmile}});
    });
    if (outcome.Succeeded() && answer.ToString() == kSmile)
      return Add(step, StepResult::kOk, outcome.time, "a character beyond U+FFFF came back");
    const std::string came =
        outcome.error ? outcome.error->message() : "'" + answer.ToString() + "' came back";
    Add(step, StepResult::kLoss, outcome.time, came);
    calls_.Add(step, {Rule::kReferences, Part::kNone, 0, 0, came});
  }

  void Fault() {
    if (!CanTry("fault", scripts_.fault)) return;
    Value answer;
    const CallOutcome outcome = RunScript("fault", scripts_.fault, {}, answer);
    if (outcome.isFault && !StopsClients(outcome.findings))
      return Add("fault", StepResult::kOk, outcome.time, "the client reads: " + outcome.error->message());
    if (!Worked("fault", outcome)) return;
    Add("fault", StepResult::kFailed, outcome.time, "the script did not fail");
  }

  void Table() {
    if (!CanTry("table", scripts_.table)) return;
    Value answer;
    const CallOutcome outcome = RunScript("table", scripts_.table, {}, answer);
    if (!Worked("table", outcome)) return;
    if (answer.type() != scriptwells::Type::kTable)
      return Add("table", StepResult::kFailed, outcome.time,
                 "the script answered with another type than a table");
    const scriptwells::Table table = answer.AsTable();
    Add("table", ResultOf(outcome.findings), outcome.time,
        std::to_string(table.size()) + " rows of " + std::to_string(table.Columns().size()) + " columns");
  }

  void Upload() {
    if (!CanTry("upload", scripts_.upload)) return;
    try {
      CheckUploadScripts();
    } catch (const Failure& failure) {
      return Skip("upload", failure.Message());
    }
    const std::string file = folder_.File("check.txt");
    std::ofstream(file) << kFileText;
    Value answer;
    const CallOutcome outcome =
        RunScript("upload", scripts_.upload, {{"file", scriptwells::File{file}}}, answer);
    if (outcome.Succeeded() && answer.ToString() == kFileText)
      return Add("upload", ResultOf(outcome.findings), outcome.time, "a file of 17 bytes arrived");
    if (StopsClients(outcome.findings)) return static_cast<void>(Worked("upload", outcome));
    // The server refuses all scripts, so this one says nothing about the file.
    if (outcome.isFault && !textsWork_) return static_cast<void>(Worked("upload", outcome));
    const std::string came =
        outcome.error ? outcome.error->message() : "the script returned '" + answer.ToString() + "'";
    const bool wasSent =
        outcome.error && outcome.error->details().transport.find("upload") != std::string::npos;
    const Rule rule =
        !outcome.error || wasSent || outcome.isFault ? Rule::kUploadStatus : Rule::kUploadAddress;
    calls_.Add("upload", {rule, Part::kNone, 0, 0, came});
    Add("upload", StepResult::kBroken, outcome.time, came);
  }

  void Download() {
    if (!CanTry("download", scripts_.download)) return;
    Value answer;
    const CallOutcome asked = RunScript("download", scripts_.download, {}, answer);
    if (!Worked("download", asked)) return;
    std::filesystem::path saved;
    const CallOutcome outcome =
        calls_.Make([&] { saved = session_->Download(answer.ToString(), folder_.Path()); });
    if (outcome.Succeeded())
      return Add("download", StepResult::kOk, outcome.time, "saved as " + saved.filename().string());
    const bool isKnown = !outcome.findings.empty() && outcome.findings.front().rule != Rule::kUnderstood;
    const Rule rule = isKnown ? outcome.findings.front().rule : Rule::kDownloadName;
    calls_.Add("download", {rule, Part::kNone, 0, 0, outcome.error->message()});
    Add("download", StepResult::kBroken, outcome.time, outcome.error->message());
  }

  void Close() {
    if (!session_) return Skip("close", "there is no session");
    const CallOutcome outcome =
        calls_.MakeStep("close", [&] { session_->Close(settings_.options.silenceTimeout); });
    if (Worked("close", outcome)) Add("close", StepResult::kOk, outcome.time, "the session is closed");
  }

  const SessionSettings& settings_;
  const CheckScripts& scripts_;
  CheckReport report_;
  ExitStatus status_ = ExitStatus::kOk;
  TemporaryFolder folder_;
  CheckedCalls calls_;
  std::vector<std::string> chain_;
  bool isAdopted_ = false;
  bool textsWork_ = false;
  std::optional<Session> session_;  // last: it uses the members above until its end
};

}  // namespace

CheckResult CheckServer(const SessionSettings& settings, const CheckScripts& scripts) {
  return ServerCheck(settings, scripts).Run();
}

}  // namespace qv::cli
