// Sessions: who may open one, and when it ends.
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
  EXPECT_EQ(id.size(), 32u);
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
  RawClient busy(Port());
  busy.Send(PostRequest("", "Execute", ExecuteEnvelope(Login(), "while (true) {}", NilParameters())));
  for (int i = 0; i < 2000 && Stats()["scriptsRun"] != 1; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_EQ(FaultOfLogin("Username=b;"), "1005|There are too many open sessions.|session");
}

}  // namespace
}  // namespace qv::devservice::testing
