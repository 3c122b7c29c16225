// Limits of scripts in time and memory, and the life of the worker processes.
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>
#include <vector>

#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

class ScriptLimits : public ServiceTest {
 protected:
  void SetUp() override { StartWithLimit(std::chrono::milliseconds(700)); }
  void StartWithLimit(std::chrono::milliseconds time) {
    StartWith([time](ServiceOptions& options) {
      options.scriptTimeLimit = time;
      options.scriptMemoryLimit = std::size_t{128} << 20;
      options.maxWorkers = 3;
    });
  }
};

// With time enough that memory is what ends a script, also on a busy machine.
class ScriptMemory : public ScriptLimits {
 protected:
  void SetUp() override { StartWithLimit(std::chrono::seconds(30)); }
};

std::string StatOf(const std::filesystem::path& process) {
  std::ifstream file(process / "stat");
  std::string line;
  std::getline(file, line);
  return line;
}

// Processes with this parent, zombies included.
std::vector<pid_t> ChildrenOf(pid_t wanted) {
  std::vector<pid_t> result;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const std::string line = StatOf(entry.path());
    std::istringstream fields(line.substr(line.rfind(')') + 1));
    char state = 0;
    int parent = 0;
    if (!(fields >> state >> parent) || parent != wanted) continue;
    result.push_back(static_cast<pid_t>(std::stol(line)));
  }
  return result;
}

std::vector<pid_t> Children() {
  return ChildrenOf(getpid());
}

// The children of a process as soon as there are any.
std::vector<pid_t> WaitForChildrenOf(pid_t parent) {
  const auto deadline = Clock::now() + std::chrono::seconds(30);
  std::vector<pid_t> children;
  while (children.empty() && Clock::now() < deadline) children = ChildrenOf(parent);
  return children;
}

// Whether a process runs, zombies not counted.
bool Runs(pid_t process) {
  const std::string line = StatOf("/proc/" + std::to_string(process));
  return !line.empty() && line.compare(line.rfind(')'), 3, ") Z") != 0;
}

TEST_F(ScriptLimits, EndlessScriptsEndAtTheTimeLimit) {
  for (const char* script :
       {"while (true) {}", "try { while (true) {} } catch (e) {} finally { while (true) {} }",
        "/^(a+)+$/.test('a'.repeat(40) + 'b') || /(x+x+)+y/.test('x'.repeat(60))",
        "(function f() { Promise.resolve().then(f) })(); 1", "throw {get code() { while (true) {} }}",
        "typed.string({toString() { while (true) {} }})"}) {
    const auto start = Clock::now();
    EXPECT_EQ(Fault(script), "1013|The script took longer than 700 ms.|script") << script;
    EXPECT_GE(Clock::now() - start, std::chrono::milliseconds(700));
    EXPECT_LT(Clock::now() - start, std::chrono::seconds(10));
  }
  EXPECT_EQ(Value("1 + 1"), "xsd:int|2");
  EXPECT_EQ(Stats()["workersKilled"], 6);
}

TEST_F(ScriptMemory, GreedyScriptsEndAtTheMemoryLimit) {
  const std::string fault = "1014|The script took more than 128 MiB of memory.|script";
  ExpectFaults({{"new Array(1e9).fill(0)", fault},
                {"a = []; while (true) a.push(new Array(1000).fill(1))", fault},
                {"new Uint8Array(2e9).fill(1).length", fault}});
  EXPECT_EQ(Value("1 + 1"), "xsd:int|2");
}

TEST_F(ScriptMemory, MemoryOfOneScriptIsNotChargedToTheNext) {
  for (int i = 0; i < 5; ++i) EXPECT_EQ(Value("new Uint8Array(6e7).fill(1).length"), "xsd:int|60000000");
}

TEST_F(ScriptLimits, DeepRecursionIsAnOrdinaryError) {
  ExpectFaultStart("1010|Maxim", {"function f() { return f() + 1 } f()"});
}

TEST_F(ScriptLimits, KilledWorkerIsReplaced) {
  EXPECT_EQ(Value("1"), "xsd:int|1");
  const std::vector<pid_t> workers = Children();
  ASSERT_EQ(workers.size(), 1U);
  kill(workers[0], SIGKILL);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_EQ(Value("2"), "xsd:int|2");
  EXPECT_EQ(Stats()["workersStarted"], 2);
}

TEST_F(ScriptLimits, WorkersHaveNoEnvironment) {
  ASSERT_EQ(setenv("SCRIPT_LIMITS_SECRET", "x", 1), 0);
  EXPECT_EQ(Value("1"), "xsd:int|1");
  const std::vector<pid_t> workers = Children();
  ASSERT_EQ(workers.size(), 1U);
  std::ifstream file("/proc/" + std::to_string(workers[0]) + "/environ");
  ASSERT_TRUE(file.is_open());
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "");
}

TEST_F(ScriptLimits, WorkerThatDiesInAScriptIsAFault) {
  Session();
  std::thread killer([] {
    const std::vector<pid_t> workers = WaitForChildrenOf(getpid());
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    for (const pid_t worker : workers) kill(worker, SIGKILL);
  });
  const std::string first = FaultIn(Execute("while (true) {}"));
  killer.join();
  // On a slow machine the worker may still be starting when it is killed.
  EXPECT_TRUE(first == "1015|The script ended the process that ran it.|script" ||
              first.substr(0, 5) == "1016|")
      << first;
  EXPECT_EQ(Value("3"), "xsd:int|3");
}

TEST_F(ScriptLimits, ManySessionsRunScriptsAtOnce) {
  constexpr std::size_t kThreads = 8;
  Session();
  std::vector<std::string> results(kThreads);
  std::vector<std::thread> threads(kThreads);
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads[i] = std::thread([&, i] {
      results[i] = ValueIn(
          Execute("var t = Date.now(); while (Date.now() - t < 100); " + std::to_string(i) + " * 10"));
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (std::size_t i = 0; i < kThreads; ++i) EXPECT_EQ(results[i], "xsd:int|" + std::to_string(i * 10));
  EXPECT_LE(Children().size(), 3U);
}

TEST_F(ScriptLimits, NoProcessIsLeftBehind) {
  EXPECT_EQ(Value("1"), "xsd:int|1");
  EXPECT_EQ(FaultCode("while (true) {}"), "1013");
  service_->Stop();
  EXPECT_TRUE(Children().empty());
}

TEST_F(ScriptLimits, StopEndsARunningScriptAtOnce) {
  StartWithLimit(std::chrono::seconds(100));
  RawClient client(
      Port(), PostRequest("", "Execute", ExecuteEnvelope(Session(), "while (true) {}", NilParameters())));
  std::this_thread::sleep_for(std::chrono::milliseconds(400));
  StopAtOnce();
  EXPECT_TRUE(Children().empty());
}

class ScriptWorker : public ScriptLimits {
 protected:
  void SetUp() override {}
};

TEST_F(ScriptWorker, OfTheHostIsTheFirst) {
  ServiceOptions options = TestOptions();
  service_ = std::make_unique<Service>(options);
  service_->Start(StartedWorker(options.workerCommand));
  const std::vector<pid_t> started = Children();
  EXPECT_EQ(Value("6 * 7"), "xsd:int|42");
  EXPECT_EQ(Children(), started);
  EXPECT_EQ(Stats()["workersStarted"], 1);
  StopAtOnce();
  EXPECT_TRUE(Children().empty());
}

TEST_F(ScriptWorker, OfTheHostMayHaveEnded) {
  service_ = std::make_unique<Service>(TestOptions());
  service_->Start(StartedWorker({"/bin/true"}));
  EXPECT_EQ(Fault("1"), "1016|The script worker \"/bin/true\" does not work.|service");
  EXPECT_EQ(Value("6 * 7"), "xsd:int|42");
}

TEST_F(ScriptWorker, OfTheHostEndsUnusedToo) {
  {
    Service service(TestOptions());
    service.Start(StartedWorker({"/bin/cat"}));
    EXPECT_EQ(Children().size(), 1U);
  }
  EXPECT_TRUE(Children().empty());
  EXPECT_THROW(StartedWorker({"/no/such/program"}), std::runtime_error);
}

TEST_F(ScriptWorker, DiesWithItsService) {
  const pid_t service = fork();
  if (service == 0) {  // Serves a script that loops until this process is killed.
    StartWithLimit(std::chrono::seconds(100));
    Execute("while (true) {}");
    _exit(1);
  }
  const std::vector<pid_t> workers = WaitForChildrenOf(service);
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  kill(service, SIGKILL);
  waitpid(service, nullptr, 0);
  ASSERT_EQ(workers.size(), 1U);
  const auto deadline = Clock::now() + std::chrono::seconds(30);
  while (Runs(workers[0]) && Clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_FALSE(Runs(workers[0]));
}

}  // namespace
}  // namespace qv::devservice::testing
