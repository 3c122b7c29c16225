#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <thread>
#include <vector>

#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

class ScriptLimits : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceOptions options = TestOptions();
    options.scriptTimeLimit = std::chrono::milliseconds(700);
    options.scriptMemoryLimit = std::size_t{128} << 20;
    options.maxWorkers = 3;
    StartWith(options);
  }
};

// With time enough that memory is what ends a script, also on a busy machine.
class ScriptMemory : public ServiceTest {
 protected:
  void SetUp() override {
    ServiceOptions options = TestOptions();
    options.scriptTimeLimit = std::chrono::seconds(30);
    options.scriptMemoryLimit = std::size_t{128} << 20;
    StartWith(options);
  }
};

// Processes with this parent, zombies included.
std::vector<pid_t> ChildrenOf(pid_t wanted) {
  std::vector<pid_t> result;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    std::ifstream file(entry.path() / "stat");
    std::string line;
    if (!std::getline(file, line)) continue;
    const std::size_t end = line.rfind(')');
    int parent = 0;
    if (std::sscanf(line.c_str() + end + 1, " %*c %d", &parent) != 1 || parent != wanted) continue;
    result.push_back(static_cast<pid_t>(std::stol(line)));
  }
  return result;
}

std::vector<pid_t> Children() {
  return ChildrenOf(getpid());
}

// Whether a process runs, zombies not counted.
bool Runs(pid_t process) {
  std::ifstream file("/proc/" + std::to_string(process) + "/stat");
  std::string line;
  return std::getline(file, line) && line.compare(line.rfind(')'), 3, ") Z") != 0;
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
  for (const char* script : {"new Array(1e9).fill(0)", "a = []; while (true) a.push(new Array(1000).fill(1))",
                             "new Uint8Array(2e9).fill(1).length"}) {
    EXPECT_EQ(Fault(script), "1014|The script took more than 128 MiB of memory.|script") << script;
  }
  EXPECT_EQ(Value("1 + 1"), "xsd:int|2");
}

TEST_F(ScriptMemory, MemoryOfOneScriptIsNotChargedToTheNext) {
  for (int i = 0; i < 5; ++i) EXPECT_EQ(Value("new Uint8Array(6e7).fill(1).length"), "xsd:int|60000000");
}

TEST_F(ScriptLimits, DeepRecursionIsAnOrdinaryError) {
  EXPECT_EQ(Fault("function f() { return f() + 1 } f()").substr(0, 10), "1010|Maxim");
}

TEST_F(ScriptLimits, KilledWorkerIsReplaced) {
  EXPECT_EQ(Value("1"), "xsd:int|1");
  const std::vector<pid_t> workers = Children();
  ASSERT_EQ(workers.size(), 1u);
  kill(workers[0], SIGKILL);
  std::this_thread::sleep_for(std::chrono::milliseconds(200));
  EXPECT_EQ(Value("2"), "xsd:int|2");
  EXPECT_EQ(Stats()["workersStarted"], 2);
}

TEST_F(ScriptLimits, WorkersHaveNoEnvironment) {
  ASSERT_EQ(setenv("SCRIPT_LIMITS_SECRET", "x", 1), 0);
  EXPECT_EQ(Value("1"), "xsd:int|1");
  const std::vector<pid_t> workers = Children();
  ASSERT_EQ(workers.size(), 1u);
  std::ifstream file("/proc/" + std::to_string(workers[0]) + "/environ");
  ASSERT_TRUE(file.is_open());
  EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}), "");
}

TEST_F(ScriptLimits, WorkerThatDiesInAScriptIsAFault) {
  std::thread killer([] {
    const auto deadline = Clock::now() + std::chrono::seconds(30);
    std::vector<pid_t> workers;
    while (workers.empty() && Clock::now() < deadline) workers = Children();
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    for (const pid_t worker : workers) kill(worker, SIGKILL);
  });
  session_ = Login();
  const std::string first = FaultIn(Execute("while (true) {}"));
  killer.join();
  // On a slow machine the worker may still be starting when it is shot.
  EXPECT_TRUE(first == "1015|The script ended the process that ran it.|script" ||
              first.substr(0, 5) == "1016|")
      << first;
  EXPECT_EQ(Value("3"), "xsd:int|3");
}

TEST_F(ScriptLimits, ManySessionsRunScriptsAtOnce) {
  constexpr int kThreads = 8;
  const std::string session = Login();
  std::vector<std::string> results(kThreads);
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      const std::string script =
          "var t = Date.now(); while (Date.now() - t < 100); " + std::to_string(i) + " * 10";
      results[static_cast<std::size_t>(i)] =
          ValueIn(Post("", "Execute", ExecuteEnvelope(session, script, NilParameters())).body);
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (int i = 0; i < kThreads; ++i) {
    EXPECT_EQ(results[static_cast<std::size_t>(i)], "xsd:int|" + std::to_string(i * 10));
  }
  EXPECT_LE(Children().size(), 3u);
}

TEST_F(ScriptLimits, NoProcessIsLeftBehind) {
  EXPECT_EQ(Value("1"), "xsd:int|1");
  EXPECT_EQ(Fault("while (true) {}").substr(0, 5), "1013|");
  service_->Stop();
  EXPECT_TRUE(Children().empty());
}

// In a process of its own: starts a service, lets a script loop, and waits to be killed.
[[noreturn]] void ServeUntilKilled() {
  ServiceOptions options = TestOptions();
  options.scriptTimeLimit = std::chrono::seconds(100);
  Service service(options);
  service.Start();
  RawClient client(service.Port());
  client.Send(PostRequest("", "CreateUserSession", CreateEnvelope("Username=a;")));
  const std::string body = client.Receive().body;
  const std::string id = body.substr(body.find("xsd:string\">") + 12, 32);
  client.Send(PostRequest("", "Execute", ExecuteEnvelope(id, "while (true) {}", NilParameters())));
  client.Receive();
  _exit(1);
}

TEST(ScriptWorker, DiesWithItsService) {
  const pid_t service = fork();
  if (service == 0) ServeUntilKilled();
  const auto deadline = Clock::now() + std::chrono::seconds(30);
  std::vector<pid_t> workers;
  while (workers.empty() && Clock::now() < deadline) workers = ChildrenOf(service);
  std::this_thread::sleep_for(std::chrono::milliseconds(500));
  kill(service, SIGKILL);
  waitpid(service, nullptr, 0);
  ASSERT_EQ(workers.size(), 1u);
  while (Runs(workers[0]) && Clock::now() < deadline)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  EXPECT_FALSE(Runs(workers[0]));
}

TEST_F(ScriptLimits, StopEndsARunningScriptAtOnce) {
  ServiceOptions options = TestOptions();
  options.scriptTimeLimit = std::chrono::seconds(100);
  StartWith(options);
  session_ = Login();
  RawClient client(service_->Port());
  client.Send(PostRequest("", "Execute", ExecuteEnvelope(session_, "while (true) {}", NilParameters())));
  std::this_thread::sleep_for(std::chrono::milliseconds(400));
  const auto start = Clock::now();
  service_->Stop();
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(3));
  EXPECT_TRUE(Children().empty());
}

}  // namespace
}  // namespace qv::devservice::testing
