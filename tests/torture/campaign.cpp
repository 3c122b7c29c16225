#include "torture/campaign.h"

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <map>
#include <new>
#include <stdexcept>
#include <system_error>
#include <thread>

#include "fixtures/temporary_directory.h"
#include "torture/answering_server.h"
#include "torture/process_start.h"

namespace qv::torture {
namespace {

// A trial takes milliseconds. One that takes this long waits for what never comes.
constexpr unsigned kHangSeconds = 45;
constexpr int kShownFailures = 12;  // of one line of figures

// Memory that a child process fills for its parent.
class SharedReport {
 public:
  SharedReport() {
    void* place =
        mmap(nullptr, sizeof(TrialReport), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (place == MAP_FAILED) throw std::bad_alloc();
    report_ = new (place) TrialReport;
  }
  ~SharedReport() { munmap(report_, sizeof(TrialReport)); }
  SharedReport(const SharedReport&) = delete;
  SharedReport& operator=(const SharedReport&) = delete;
  TrialReport* Get() const { return report_; }

 private:
  TrialReport* report_;
};

struct Running {
  Trial trial;
  std::unique_ptr<SharedReport> report;
};

std::string EndOf(int status) {
  if (WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM) return "hangs";
  if (WIFSIGNALED(status)) return std::string("signal ") + strsignal(WTERMSIG(status));
  return "exit " + std::to_string(WEXITSTATUS(status));
}

// The figures of one flow, kind and mode.
struct Tally {
  int trials = 0;
  int failures = 0;
  int xmlRefused = 0;
  std::map<std::string, std::string> shown{};  // what, and at which points
};

class Campaign {
 public:
  Campaign(const CampaignOptions& options, Gate& gate)
      : options_(options),
        gate_(gate),
        kinds_(gate.Kinds()),
        jobs_(std::max(1U, std::thread::hardware_concurrency())) {
    CurrentStage().home = files_.Path("home");
    CurrentStage().port = server_.Port();
    SetUpHome();
  }

  int Run() {
    const bool wantsStart = options_.flow.empty() || options_.flow == "start";
    if (gate_.StrikesBeforeMain() && wantsStart) failures_ += TortureProcessStart(options_.stride);
    for (const Flow& flow : Flows()) {
      if (!options_.flow.empty() && options_.flow != flow.name) continue;
      for (const bool hold : {true, false})
        if (hold ? CanHoldXmlLibrary() && flow.usesXml : true) RunFlow(flow, hold);
    }
    std::printf("%ld points refused, %d failures\n", trials_, failures_);
    return failures_;
  }

  // In this process.
  int RunOne() {
    for (const Flow& flow : Flows()) {
      if (options_.flow != flow.name) continue;
      TrialReport report;
      Trial trial{&flow, options_.hold, {0, options_.point, options_.onwards}};
      for (std::size_t kind = 0; kind < kinds_.size(); ++kind)
        if (kinds_[kind] == options_.kind) trial.refusal.kind = kind;
      EnterDirectory();
      RunTrial(trial, gate_, &report);
      std::printf("%s %s, code 0x%08X, %ld passed\n", VerdictText(report.verdict), report.details,
                  static_cast<unsigned>(report.code), report.seen);
      return report.verdict == Verdict::kGood || report.verdict == Verdict::kXmlRefused ? 0 : 1;
    }
    (void)std::fprintf(stderr, "no flow has this name\n");
    return 2;
  }

 private:
  void SetUpHome() const {
    for (const char* script : {"UploadScript.xml", "UploadScriptWithoutTicketdId.xml"})
      files_.Write(std::string("home/ClientScripts/") + script, "<upload-script/>");
    setenv("XDG_CONFIG_HOME", files_.Path("none").c_str(), 1);
    const std::string registry = files_.Write("home/registry.reg", RegistryText(CurrentStage().home));
    setenv("QV_REGISTRY", registry.c_str(), 1);
  }

  // A directory for the files of this process, which is also the temporary one.
  void EnterDirectory() const {
    const std::string own = files_.Path(std::to_string(getpid()));
    std::filesystem::create_directory(own);
    CurrentStage().directory = own;
    setenv("TEMP", own.c_str(), 1);
  }

  void RunFlow(const Flow& flow, bool hold) {
    const auto start = std::chrono::steady_clock::now();
    const long before = trials_;
    const int failuresBefore = failures_;
    RunKinds(flow, hold);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    if (kinds_.size() > 1 && trials_ > before)
      std::printf("%-12s %-7s %ld failing calls, %d failures, %.1f s\n", flow.name, hold ? "held" : "",
                  trials_ - before, failures_ - failuresBefore, seconds.count());
  }

  void RunKinds(const Flow& flow, bool hold) {
    for (std::size_t kind = 0; kind < kinds_.size(); ++kind) {
      if (!options_.kind.empty() && options_.kind != kinds_[kind]) continue;
      const long points = PointsOf({&flow, hold, {kind, kNever, false}});
      if (points == 0) continue;
      for (const bool onwards : {false, true})
        if (!onwards || !gate_.IsPassing(kind)) RunPoints(flow, hold, kind, onwards, points);
    }
  }

  long PointsOf(const Trial& trial) {
    tally_ = {};
    points_ = 0;
    Start(trial);
    while (!running_.empty()) Collect();
    if (tally_.failures > 0) PrintTally(trial, "nothing refused", 0, 0);
    return points_;
  }

  void RunPoints(const Flow& flow, bool hold, std::size_t kind, bool onwards, long points) {
    const auto start = std::chrono::steady_clock::now();
    tally_ = {};
    for (long at = 1; at <= points; at += at < options_.dense ? 1 : options_.stride)
      Start({&flow, hold, {kind, at, onwards}});
    while (!running_.empty()) Collect();
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - start;
    trials_ += tally_.trials;
    PrintTally({&flow, hold, {kind, 0, onwards}}, onwards ? "from there on" : "once", points,
               seconds.count());
  }

  void PrintTally(const Trial& trial, const char* mode, long points, double seconds) {
    failures_ += tally_.failures;
    // With many kinds there is a line for each flow, and for each kind only where something failed.
    if (kinds_.size() > 1 && tally_.failures == 0) return;
    std::printf("%-12s %-7s %-20s %-14s %6d of %6ld points  %5d failures %7.1f s", trial.flow->name,
                trial.hold ? "held" : "", kinds_[trial.refusal.kind].c_str(), mode, tally_.trials, points,
                tally_.failures, seconds);
    if (tally_.xmlRefused > 0) std::printf("  (%d without XML library from there on)", tally_.xmlRefused);
    std::printf("\n");
    int left = kShownFailures;
    for (const auto& [what, where] : tally_.shown)
      if (left-- > 0) std::printf("    %s: at %s\n", what.c_str(), where.c_str());
    static_cast<void>(std::fflush(stdout));
  }

  void Start(const Trial& trial) {
    while (running_.size() >= jobs_) Collect();
    auto report = std::make_unique<SharedReport>();
    static_cast<void>(std::fflush(stdout));  // or the child prints it once more
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("fork failed");
    if (child == 0) {
      alarm(kHangSeconds);
      EnterDirectory();
      RunTrial(trial, gate_, report->Get());
      std::exit(0);
    }
    running_[child] = {trial, std::move(report)};
  }

  void Collect() {
    int status = 0;
    // Any but the server: that one is no child that ends.
    const pid_t child = waitpid(-1, &status, 0);
    const auto found = running_.find(child);
    if (found == running_.end()) throw std::runtime_error("the server has ended");
    Judge(found->second, status);
    running_.erase(found);
    std::error_code ignored;
    std::filesystem::remove_all(files_.Path(std::to_string(child)), ignored);
  }

  void Judge(const Running& done, int status) {
    const TrialReport& report = *done.report->Get();
    ++tally_.trials;
    points_ = report.seen;
    const bool ended = status == 0;
    if (ended && report.verdict == Verdict::kXmlRefused) ++tally_.xmlRefused;
    if (ended && (report.verdict == Verdict::kGood || report.verdict == Verdict::kXmlRefused)) return;
    ++tally_.failures;
    const std::string what = ended ? std::string(VerdictText(report.verdict)) + ", " + report.details
                                   : EndOf(status) + ", step: " + report.step;
    std::string& where = tally_.shown[what];
    if (where.size() < 60)
      where += (where.empty() ? "" : ", ") + std::to_string(done.trial.refusal.at);
    else if (where.back() != '.')
      where += " ...";
  }

  const CampaignOptions& options_;
  Gate& gate_;
  std::vector<std::string> kinds_;
  std::size_t jobs_;
  TemporaryDirectory files_;
  AnsweringServer server_;
  std::map<pid_t, Running> running_;
  Tally tally_;
  long points_ = 0;
  long trials_ = 0;
  int failures_ = 0;
};

}  // namespace

Stage& CurrentStage() {
  static Stage stage;
  return stage;
}

int RunCampaign(const CampaignOptions& options, Gate& gate) {
  Campaign campaign(options, gate);
  return options.point > 0 ? campaign.RunOne() : campaign.Run();
}

}  // namespace qv::torture
