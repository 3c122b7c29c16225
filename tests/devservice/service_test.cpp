// The service as a whole: start and stop, and the sessions of its users.
#include <filesystem>
#include <stdexcept>
#include <thread>

#include "devservice/values/credentials.h"
#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

constexpr char kUnknown[] = "1004|The session does not exist on this service.|session";
constexpr char kRefused[] = "1003|The user name or the password is wrong.|session";

class Sessions : public ServiceTest {
 protected:
  std::string FaultOf(const std::string& action, const std::string& envelope) {
    return FaultIn(Post("", action, envelope).body);
  }
  std::string FaultOfLogin(const std::string& connectionString) {
    return FaultOf("CreateUserSession", CreateEnvelope(connectionString));
  }
  // The answer to "1" in a session, "type|value" or the fault.
  std::string Use(const std::string& session) {
    session_ = session;
    const std::string body = Execute("1");
    return FaultIn(body) == "(no fault)" ? ValueIn(body) : FaultIn(body);
  }
};

TEST_F(Sessions, CreateAnswersAnIdOf128Bits) {
  const std::string id = Login();
  EXPECT_EQ(id.size(), 32U);
  EXPECT_EQ(id.find_first_not_of("0123456789abcdef"), std::string::npos);
  EXPECT_NE(Login(), id);
}

TEST_F(Sessions, ClosedOrUnknownSessionIsAFault) {
  const std::string id = Login();
  EXPECT_EQ(Use(id), "xsd:int|1");
  EXPECT_TRUE(Contains(Post("", "CloseUserSession", CloseEnvelope(id)).body,
                       "<soap:Body><CloseUserSessionResponse "
                       "xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                       "</CloseUserSessionResponse></soap:Body>"));
  EXPECT_EQ(Use(id), kUnknown);
  EXPECT_EQ(FaultOf("CloseUserSession", CloseEnvelope(id)), kUnknown);
  EXPECT_EQ(FaultOf("Execute", ExecuteEnvelope("", "1", NilParameters())), kUnknown);
  EXPECT_EQ(Stats()["scriptsRun"], 1);
}

TEST_F(Sessions, UsersAreChecked) {
  EXPECT_EQ(FaultOfLogin("Username=anyone;"), "(no fault)");
  EXPECT_EQ(FaultOfLogin("DbReplicationId=;Username=;Password=;"), kRefused);
  EXPECT_EQ(FaultOfLogin(""), kRefused);
  StartWith([](ServiceOptions& options) { options.users = {{"joe", "p&=\xC3\xA9"}}; });
  EXPECT_EQ(FaultOfLogin("DbReplicationId=;Username=joe;Password=p&=\xC3\xA9;"), "(no fault)");
  for (const char* text : {"Username=joe;Password=;", "Username=Joe;Password=p&=\xC3\xA9;",
                           "username=joe;Password=p&=\xC3\xA9;", "Username=other;Password=p&=\xC3\xA9;"})
    EXPECT_EQ(FaultOfLogin(text), kRefused) << text;
  const Credentials credentials = ParseConnectionString(
      "DbReplicationId=r;Username=a;Password=x;Foo=1;word;;DbReplicationId=r2;Username=b;Password=p=q");
  EXPECT_EQ(credentials.replicaId, "r2") << "later pairs win";
  EXPECT_EQ(credentials.userName, "b");
  EXPECT_EQ(credentials.password, "p=q");
}

// A peer that opens sessions and forgets them must not lock everybody out.
TEST_F(Sessions, TheOneThatWasNotUsedForTheLongestTimeMakesRoom) {
  StartWith([](ServiceOptions& options) { options.maxSessions = 2; });
  const std::string first = Login();
  const std::string second = Login();
  EXPECT_EQ(Use(first), "xsd:int|1");
  const std::string third = Login();
  EXPECT_EQ(Use(first), "xsd:int|1");
  EXPECT_EQ(Use(third), "xsd:int|1");
  EXPECT_EQ(Use(second), kUnknown);
}

TEST_F(Sessions, SessionsWithARunningScriptStay) {
  StartWith([](ServiceOptions& options) {
    options.maxSessions = 1;
    options.scriptTimeLimit = std::chrono::seconds(100);
  });
  RawClient busy(Port(),
                 PostRequest("", "Execute", ExecuteEnvelope(Login(), "while (true) {}", NilParameters())));
  for (int i = 0; i < 2000 && Stats()["scriptsRun"] != 1; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_EQ(FaultOfLogin("Username=b;"), "1005|There are too many open sessions.|session");
}

class StartStop : public ServiceTest {
 protected:
  std::string StartFailure(const std::function<void(ServiceOptions&)>& change) {
    try {
      StartWith(change);
      return "(started)";
    } catch (const std::runtime_error& error) {
      return error.what();
    }
  }
};

std::ptrdiff_t CountOf(const char* directory) {
  return std::distance(std::filesystem::directory_iterator(directory), {});
}

TEST_F(StartStop, PortAndUrlAreKnownWhileRunning) {
  Service service(TestOptions());
  EXPECT_EQ(service.Port(), 0);
  EXPECT_EQ(service.Url(), "");
  service.Start();
  EXPECT_GT(service.Port(), 0);
  EXPECT_EQ(service.Url(), "http://127.0.0.1:" + std::to_string(service.Port()));
  service.Stop();
  EXPECT_EQ(service.Port(), 0);
}

TEST_F(StartStop, BadOptionsAreFailuresWithMessages) {
  EXPECT_EQ(StartFailure([](ServiceOptions& options) { options.workerCommand.clear(); }),
            "No command for the script worker is set.");
  EXPECT_EQ(StartFailure([](ServiceOptions& options) { options.workerCommand = {"/no/such/program"}; }),
            "The script worker \"/no/such/program\" is no program that can be run.");
  EXPECT_EQ(StartFailure([](ServiceOptions& options) { options.port = 65536; }),
            "The port is not between 0 and 65535.");
  EXPECT_EQ(StartFailure([](ServiceOptions& options) { options.host = "203.0.113.7"; }).substr(0, 33),
            "Cannot listen on 203.0.113.7 port");
  Service first(TestOptions());
  first.Start();
  EXPECT_EQ(StartFailure([&first](ServiceOptions& options) { options.port = first.Port(); }),
            "Cannot listen on 127.0.0.1 port " + std::to_string(first.Port()) +
                ": the port is taken, not permitted, or the address is not one of this machine.");
}

TEST_F(StartStop, CanBeRepeatedOnOnePortWithoutLeaks) {
  StartWith(TestOptions());
  service_->Stop();
  const std::ptrdiff_t descriptors = CountOf("/proc/self/fd");
  const std::ptrdiff_t threads = CountOf("/proc/self/task");
  for (int i = 0; i < 30; ++i) {
    service_->Start();
    service_->Start();
    EXPECT_EQ(StatusOf(Get("/")), "200");
    service_->Stop();
    service_->Stop();
  }
  EXPECT_EQ(CountOf("/proc/self/fd"), descriptors);
  EXPECT_EQ(CountOf("/proc/self/task"), threads);
}

TEST_F(StartStop, FixedPortIsFreeAgainAtOnce) {
  const int port = Port();
  Get("/");
  service_->Stop();
  EXPECT_EQ(StartFailure([port](ServiceOptions& options) { options.port = port; }), "(started)");
}

TEST_F(StartStop, StopDoesNotWaitForKeptConnections) {
  RawClient idle(Port());
  RawClient half(Port(), "POST / HTTP/1.1\r\nContent-Length: 50\r\n\r\nabc");
  idle.Send(Request("GET /"));
  idle.Receive();
  StopAtOnce();
  EXPECT_TRUE(idle.Receive().closed);
}

TEST_F(StartStop, OtherProgramsAsWorkersAreFaults) {
  StartWith([](ServiceOptions& options) { options.workerCommand = {"/bin/true"}; });
  EXPECT_EQ(Fault("1"), "1016|The script worker \"/bin/true\" does not work.|service");
  StartWith(
      [](ServiceOptions& options) { options.workerCommand = {"/bin/cat"}; });  // Sends nothing by itself.
  RawClient client(Port(), PostRequest("", "Execute", ExecuteEnvelope(Session(), "1", NilParameters())));
  EXPECT_TRUE(client.Receive(std::chrono::milliseconds(200)).timedOut);
  StopAtOnce();
}

}  // namespace
}  // namespace qv::devservice::testing
