#include "tools/page/page_sessions.h"

#include <strings.h>

#include <chrono>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <nlohmann/json.hpp>
#include <set>
#include <utility>

#include "devservice/values/random_id.h"
#include "devservice/values/text_scanner.h"
#include "tools/input/input_text.h"
#include "tools/input/parameter_text.h"
#include "tools/page/page_error.h"
#include "tools/report/failure.h"
#include "tools/report/json_text.h"
#include "tools/transfer/refused_upload.h"

namespace qv::cli {

namespace {

using scriptwells::CancelToken;
using std::chrono::steady_clock;

// Bounds the memory of one call: the answer is there as bytes, as text and as JSON.
constexpr std::int64_t kMostAnswerBytes = std::int64_t{128} << 20;
constexpr std::chrono::milliseconds kSilence{60'000};

std::string TimeText() {
  const std::time_t now = std::time(nullptr);
  std::tm utc = {};
  ::gmtime_r(&now, &utc);
  char text[32] = {};
  static_cast<void>(std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc));
  return text;
}

double MillisecondsSince(steady_clock::time_point begin) {
  const auto spent = steady_clock::now() - begin;
  return static_cast<double>(std::chrono::duration_cast<std::chrono::microseconds>(spent).count()) / 1000;
}

[[noreturn]] void RefuseStopped() {
  throw PageError(503, "The service is stopping.");
}

[[noreturn]] void RefuseMoreSessions() {
  throw PageError(400, "20 sessions are open already; close one.");
}

scriptwells::Error ErrorOf(const Failure& failure) {
  return {scriptwells::Phase::kConversion, failure.Message()};
}

}  // namespace

struct PageSessions::Opened {
  int id = 0;
  std::string user;
  std::string time;
  std::atomic<int> runs{0};
  std::mutex running;                           // held by a run: one after the other
  std::vector<std::string> refused;             // uploads of the current run
  std::string secretId;                         // of the session
  std::optional<scriptwells::Session> session;  // last: it uses the members above until its end

  std::string Json() const {
    return JsonText({{"id", id}, {"user", user}, {"opened", time}, {"runs", runs.load()}});
  }
};

// One of the calls that may run at one time.
class PageSessions::Slot {
 public:
  explicit Slot(PageSessions& sessions) : calls_(sessions.calls_) {
    const bool isFree = ++calls_ <= kMostCalls;
    if (isFree && !sessions.stopped_) return;
    --calls_;
    if (isFree) RefuseStopped();
    throw PageError(503, "The page runs 8 calls already.");
  }
  ~Slot() { --calls_; }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;

 private:
  std::atomic<int>& calls_;
};

// A run that Cancel and Stop find while the object lives.
class PageSessions::NamedRun {
 public:
  NamedRun(PageSessions& sessions, int session, std::string name)
      : sessions_(sessions), name_(std::move(name)) {
    const std::lock_guard<std::mutex> lock(sessions_.mutex_);
    if (name_.empty()) name_ = devservice::RandomId();
    if (!sessions_.runs_.emplace(name_, std::make_pair(session, cancel_)).second)
      throw PageError(400, "A run of this name is there already.");
    if (sessions_.stopped_) cancel_.Cancel();
  }
  ~NamedRun() {
    const std::lock_guard<std::mutex> lock(sessions_.mutex_);
    sessions_.runs_.erase(name_);
  }
  NamedRun(const NamedRun&) = delete;
  NamedRun& operator=(const NamedRun&) = delete;

  const CancelToken& Token() const { return cancel_; }

 private:
  PageSessions& sessions_;
  std::string name_;
  CancelToken cancel_;
};

PageSessions::PageSessions(PageConsole& console, SharedFiles& files) : console_(console), files_(files) {}

PageSessions::~PageSessions() {
  for (const auto& [id, opened] : sessions_) try {
      opened->session->Release();
    } catch (const std::exception&) {
      // It was closed, or nothing is left to release.
    }
}

void PageSessions::Begin(const PagePlace& place) {
  place_ = place;
}

void PageSessions::Stop() {
  stopped_ = true;
  stop_.Cancel();
  const std::lock_guard<std::mutex> lock(mutex_);
  for (auto& [name, run] : runs_) run.second.Cancel();
}

scriptwells::Options PageSessions::OptionsOf(Opened& opened) const {
  scriptwells::Options options;
  options.silenceTimeout = kSilence;
  options.mostAnswerBytes = kMostAnswerBytes;
  options.homeDirectory = place_.home;
  options.hiddenFiles = true;  // into a directory of the file's own
  options.cancel = stop_;
  options.listenerBodies = false;
  options.listener = [&opened](const scriptwells::Exchange& exchange) {
    if (!RefusedUpload(exchange).empty())
      opened.refused.push_back("the upload was answered with the status " + std::to_string(exchange.status));
  };
  return options;
}

std::string PageSessions::Open(const std::string& user, const std::string& password) {
  const Slot slot(*this);
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (sessions_.size() >= kMostSessions) RefuseMoreSessions();
  }
  const auto opened = std::make_shared<Opened>();
  const bool isOwn = place_.ownUser && user == "page";
  opened->user = user;
  opened->time = TimeText();
  scriptwells::Credentials credentials{isOwn ? place_.ownUser->name : user,
                                       isOwn ? place_.ownUser->password : password};
  try {
    opened->session.emplace(place_.url, credentials, OptionsOf(*opened));
    opened->secretId = opened->session->Id();
  } catch (const scriptwells::Error& error) {
    throw PageError(400, error.message());
  }
  ::explicit_bzero(credentials.password.data(), credentials.password.size());
  const std::lock_guard<std::mutex> lock(mutex_);
  if (sessions_.size() >= kMostSessions) RefuseMoreSessions();  // others came meanwhile
  opened->id = ++last_;
  sessions_[opened->id] = opened;
  return opened->Json();
}

// Its calls end first.
void PageSessions::Close(int id) {
  const Slot slot(*this);
  const std::shared_ptr<Opened> opened = Find(id);
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (sessions_.erase(id) == 0) return;
    for (auto& [name, run] : runs_)
      if (run.first == id) run.second.Cancel();
  }
  files_.EndSession(id);
  const std::lock_guard<std::mutex> lock(opened->running);
  try {
    opened->session->Close(std::chrono::seconds(2));
  } catch (const scriptwells::Error&) {
    // The page has forgotten it; the service ends it when there are too many.
  }
}

std::shared_ptr<PageSessions::Opened> PageSessions::Find(int id) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = sessions_.find(id);
  if (found == sessions_.end()) throw PageError(404, "There is no such session.");
  return found->second;
}

std::string PageSessions::AllJson() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::string all;
  for (const auto& [id, opened] : sessions_) all += (all.empty() ? "" : ",") + opened->Json();
  return "[" + all + "]";
}

std::optional<std::string> PageSessions::UserOf(int id) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = sessions_.find(id);
  if (found == sessions_.end()) return std::nullopt;
  return found->second->user;
}

CallOutcome PageSessions::Run(const CallRequest& request) {
  const Slot slot(*this);
  const std::shared_ptr<Opened> opened = Find(request.session);
  const NamedRun run(*this, request.session, request.run);
  const std::lock_guard<std::mutex> lock(opened->running);
  ++opened->runs;
  return RunIn(*opened, request, run.Token());
}

CallOutcome PageSessions::RunIn(Opened& opened, const CallRequest& request, const CancelToken& cancel) {
  CallOutcome outcome;
  const auto begin = steady_clock::now();
  opened.refused.clear();
  try {
    std::vector<SharedFile> used;
    const scriptwells::Arguments arguments = ArgumentsOf(request.script, outcome.notes, used);
    scriptwells::RunOptions options;
    options.language = request.script.language;
    options.cancel = cancel;
    const std::string code = CheckScript(request.script.code);
    console_.Begin(opened.secretId);
    outcome.value = opened.session->Run(code, arguments, options);
  } catch (const scriptwells::Error& error) {
    outcome.error = error;
  } catch (const Failure& failure) {
    outcome.error = ErrorOf(failure);
  }
  outcome.milliseconds = MillisecondsSince(begin);
  outcome.console = console_.End(opened.secretId);
  for (const std::string& refused : opened.refused) outcome.notes.push_back(refused);
  if (outcome.value && outcome.value->Is<std::string>() && IsOwnFile(outcome.value->As<std::string>()))
    outcome.file = files_.AddPublished(opened.id, outcome.value->As<std::string>()).id;
  return outcome;
}

// Their contents are held by `used` while the call runs.
scriptwells::Arguments PageSessions::ArgumentsOf(const PageScript& script, std::vector<std::string>& notes,
                                                 std::vector<SharedFile>& used) const {
  scriptwells::Arguments arguments;
  std::set<std::string> names;
  for (const PageParameter& parameter : script.parameters) {
    if (!names.insert(parameter.name).second)
      throw Failure(ExitStatus::kLocal, "parameter '" + parameter.name + "' is given twice");
    std::string value = parameter.value;
    if (parameter.type == "file") {
      used.push_back(files_.Get(parameter.file));
      if (!used.back().content)
        throw PageError(400, "The file of a script is not there yet: download it first.");
      value = used.back().content->Path();
    }
    ScriptParameter made = MakeParameter({parameter.name, parameter.type, value});
    for (const std::string& note : made.notes) notes.push_back("parameter '" + parameter.name + "' " + note);
    arguments.Add(std::move(made.argument));
  }
  return arguments;
}

// "http://127.0.0.1:8080/files/ID/" of this service, perhaps with odd answers in front of the path.
bool PageSessions::IsOwnFile(const std::string& text) const {
  constexpr std::string_view kFolder = "/files/";
  if (!devservice::StartsWith(text, place_.url + "/") || text.back() != '/') return false;
  const std::size_t at = text.rfind(kFolder);
  return at != std::string::npos && devservice::IsRandomId(std::string_view(text).substr(
                                        at + kFolder.size(), text.size() - at - kFolder.size() - 1));
}

void PageSessions::Cancel(const std::string& run) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = runs_.find(run);
  if (found != runs_.end()) found->second.second.Cancel();
}

SharedFile PageSessions::Fetch(int id) {
  SharedFile file = files_.Get(id);
  if (file.content) return file;
  const Slot slot(*this);
  const std::shared_ptr<Opened> opened = Find(file.session);
  const std::lock_guard<std::mutex> lock(opened->running);
  SharedFile again = files_.Get(id);
  if (again.content) return again;
  try {
    return files_.SetContent(id, opened->session->Download(file.url, files_.NewDirectory()).native());
  } catch (const scriptwells::Error& error) {
    throw PageError(502, error.message());
  }
}

}  // namespace qv::cli
