// The service as the tests of a program use it.
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <thread>

#include "face/testing/control_client.h"
#include "failure_of.h"
#include "scriptwells/scriptwells.h"
#include "scriptwells/testing.h"

namespace scriptwells::testing {
namespace {

namespace fs = std::filesystem;

ServiceOptions BuiltService() {
  ServiceOptions options;
  options.program = SERVICE_PROGRAM;
  return options;
}

// The page of a service at its own address.
std::string Page(const DevelopmentService& service, const std::string& name) {
  return ControlClient(service.Url() + "/").Get(name);
}

bool IsGone(const std::string& url) {
  try {
    ControlClient(url + "/").Get("stats");
    return false;
  } catch (const ConnectionError& error) {
    return error.phase() == Phase::kConnect;
  }
}

bool Vanishes(const fs::path& path) {
  for (int i = 0; i < 2000 && fs::exists(path); ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  return !fs::exists(path);
}

OrderedFault ForAny(OrderedFault::Kind kind, std::uint32_t number, const std::string& text = "") {
  return {kind, number, text, ""};
}

TEST(DevelopmentService, RunsWhileTheObjectLives) {
  std::string url;
  fs::path home;
  {
    const DevelopmentService service(BuiltService());
    url = service.Url();
    home = service.HomeDirectory();
    EXPECT_EQ(url.compare(0, 17, "http://127.0.0.1:"), 0) << url;
    EXPECT_TRUE(fs::is_regular_file(home / "ClientScripts/UploadScript.xml"));
    EXPECT_TRUE(fs::is_regular_file(home / "ClientScripts/UploadScriptWithoutTicketdId.xml"));
    EXPECT_FALSE(IsGone(url));
  }
  EXPECT_TRUE(IsGone(url));
  EXPECT_FALSE(fs::exists(home));
  EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1) << "a zombie is left";
}

TEST(DevelopmentService, CountsAndRequestsAreTheServices) {
  const DevelopmentService service(BuiltService());
  const std::map<std::string, std::int64_t> none = {
      {"CloseUserSession", 0}, {"CreateUserSession", 0}, {"Execute", 0}};
  EXPECT_EQ(service.Counts(), none);
  EXPECT_TRUE(service.Requests().empty());
  Page(service, "stats");
  const std::vector<SeenRequest> requests = service.Requests();
  ASSERT_EQ(requests.size(), 1U);
  EXPECT_EQ(requests[0].method, "GET");
  EXPECT_EQ(requests[0].target, "/stats");
  EXPECT_EQ(requests[0].action + requests[0].body, "");
}

TEST(DevelopmentService, OrdersAreCarriedOut) {
  DevelopmentService service(BuiltService());
  service.Order(ForAny(OrderedFault::Kind::kStatus, 503, "busy"));
  EXPECT_EQ(FailureOf(Phase::kAnswer, [&service] { Page(service, "stats"); }),
            "the development service refused the request: busy");
  service.Order(ForAny(OrderedFault::Kind::kCutAnswer, 0));
  EXPECT_EQ(FailureOf<ConnectionError>(Phase::kReceive, [&service] { Page(service, "stats"); }),
            "the answer of the development service broke off");
  service.Order(ForAny(OrderedFault::Kind::kSilence, 200));
  const auto before = std::chrono::steady_clock::now();
  Page(service, "stats");
  EXPECT_GE(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(200));
}

TEST(DevelopmentService, RefusedOrderHasTheReason) {
  DevelopmentService service(BuiltService());
  EXPECT_EQ(
      FailureOf(Phase::kAnswer, [&] { service.Order(ForAny(OrderedFault::Kind::kStatus, 99)); }),
      "the development service refused the request: The number of the kind status is not a whole number "
      "from 200 to 599");
  EXPECT_EQ(FailureOf(Phase::kAnswer,
                      [&] {
                        service.Order({OrderedFault::Kind::kFault, 5, "", "Frobnicate"});
                      }),
            "the development service refused the request: The action of the order is none of the service");
  EXPECT_EQ(
      FailureOf(Phase::kAddress, [&] { service.Order(ForAny(OrderedFault::Kind::kStatus, 500, "\xFF")); }),
      "the fault's text or action is not valid UTF-8");
}

TEST(DevelopmentService, OddAnswersMeetTheNextCalls) {
  DevelopmentService service(BuiltService());
  Session session = service.Connect();
  OddOrder refusals;
  refusals.names = "refuse";
  refusals.requests = 2;
  service.Order(refusals);
  for (int i = 0; i < 2; ++i) EXPECT_THROW(session.Run("1"), ConnectionError);
  EXPECT_EQ(session.Run("1").As<std::int32_t>(), 1);
  OddOrder always;
  always.names = "spoil";
  always.requests = 0;
  service.Order(always);
  for (int i = 0; i < 3; ++i) EXPECT_THROW(session.Run("1"), Error);
  service.Order(OddOrder{});
  EXPECT_EQ(session.Run("1").As<std::int32_t>(), 1);
  OddOrder wrong;
  wrong.names = "frob";
  EXPECT_EQ(FailureOf(Phase::kAnswer, [&] { service.Order(wrong); }).substr(0, 100),
            "the development service refused the request: There is no odd answer of the name \"frob\". "
            "Names: ns2, ");
}

TEST(DevelopmentService, Moves) {
  DevelopmentService first(BuiltService());
  const std::string url = first.Url();
  DevelopmentService second(std::move(first));
  EXPECT_EQ(second.Url(), url);
  EXPECT_FALSE(IsGone(url));
  second = DevelopmentService(BuiltService());
  EXPECT_NE(second.Url(), url);
  EXPECT_TRUE(IsGone(url));
  EXPECT_FALSE(IsGone(second.Url()));
}

// Runs `child` in another process, which writes on the pipe. Returns what that wrote, up to a line end.
std::string LineFromFork(void (*child)(int pipe), int& status) {
  int ends[2];
  if (pipe(ends) != 0) return "no pipe";
  const pid_t process = fork();
  if (process == 0) {
    child(ends[1]);
    _exit(0);
  }
  close(ends[1]);
  std::string line;
  for (char byte = 0; read(ends[0], &byte, 1) == 1 && byte != '\n';) line += byte;
  close(ends[0]);
  waitpid(process, &status, 0);
  return line;
}

void WriteLine(int pipe, const std::string& text) {
  const std::string line = text + "\n";
  if (write(pipe, line.data(), line.size()) < 0) _exit(1);
}

TEST(DevelopmentService, EndsWithAProcessThatIsKilled) {
  int status = 0;
  const std::string home = LineFromFork(
      [](int pipe) {
        const DevelopmentService service(BuiltService());
        WriteLine(pipe, service.HomeDirectory().string());
        kill(getpid(), SIGKILL);
      },
      status);
  EXPECT_TRUE(WIFSIGNALED(status));
  ASSERT_NE(home, "");
  EXPECT_TRUE(Vanishes(home));
}

TEST(DevelopmentService, WorksWithoutStandardStreams) {
  int status = 0;
  const std::string said = LineFromFork(
      [](int pipe) {
        for (const int stream : {0, 1, 2}) close(stream);
        const DevelopmentService service(BuiltService());
        WriteLine(pipe, Page(service, ""));
      },
      status);
  EXPECT_EQ(said.compare(0, 31, "Scriptwells development service"), 0) << said;
  EXPECT_EQ(status, 0);
}

TEST(DevelopmentService, ConnectGivesASessionWithUploads) {
  DevelopmentService service(BuiltService());
  const fs::path file = service.HomeDirectory() / "ClientScripts/UploadScript.xml";
  {
    Session session = service.Connect();
    EXPECT_EQ(session.Run("parameters.a + 1", {{"a", 41}}).As<int>(), 42);
    EXPECT_EQ(session.Run("parameters.f.size", {{"f", File{file}}}).As<std::int64_t>(),
              static_cast<std::int64_t>(fs::file_size(file)));
  }
  EXPECT_EQ(service.Counts().at("CreateUserSession"), 1);
  EXPECT_EQ(service.Counts().at("CloseUserSession"), 1);
  EXPECT_EQ(service.Requests().front().action, "CreateUserSession");
}

TEST(DevelopmentService, ConnectIsTheFirstUser) {
  ServiceOptions options = BuiltService();
  options.users = {{"joe", "a:b"}, {"ann", "x"}};
  const DevelopmentService service(options);
  Session session = service.Connect();
  EXPECT_EQ(session.Run("1").As<int>(), 1);
  EXPECT_THROW(Session(service.Url(), {"joe", "x"}), SessionError);
}

TEST(DevelopmentService, OrderedFaultReachesTheSession) {
  DevelopmentService service(BuiltService());
  Session session = service.Connect();
  OrderedFault fault;
  fault.number = 77;
  fault.text = "ordered";
  service.Order(fault);
  try {
    session.Run("1");
    ADD_FAILURE() << "the fault did not come";
  } catch (const ScriptError& error) {
    EXPECT_EQ(error.number(), 77U);
    EXPECT_EQ(error.message(), "ordered");
  }
  EXPECT_EQ(session.Run("1").As<int>(), 1);
  EXPECT_EQ(service.Counts().at("Execute"), 2);
}

}  // namespace
}  // namespace scriptwells::testing
