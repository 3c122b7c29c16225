#include "devservice/files/sessions.h"

#include <thread>

#include "service_fixture.h"

namespace qv::devservice::testing {
namespace {

class Session : public ServiceTest {
 protected:
  std::string FaultOfLogin(const std::string& connectionString) {
    return FaultIn(Post("", "CreateUserSession", CreateEnvelope(connectionString)).body);
  }
};

TEST_F(Session, CreateAnswersAnIdOf128Bits) {
  StartWith(TestOptions());
  const std::string id = Login();
  EXPECT_EQ(id.size(), 32u);
  EXPECT_EQ(id.find_first_not_of("0123456789abcdef"), std::string::npos);
  EXPECT_NE(Login(), id);
}

TEST_F(Session, CloseAnswersAnEmptyElement) {
  StartWith(TestOptions());
  const RawAnswer answer = Post("", "CloseUserSession", CloseEnvelope(Login()));
  EXPECT_NE(answer.body.find("<soap:Body><CloseUserSessionResponse "
                             "xmlns=\"http://quorvane.example/dev/ns/ivarnel/scriptwells\">"
                             "</CloseUserSessionResponse></soap:Body>"),
            std::string::npos)
      << answer.body;
}

TEST_F(Session, ClosedOrUnknownSessionIsAFault) {
  StartWith(TestOptions());
  session_ = Login();
  EXPECT_EQ(Value("1"), "xsd:int|1");
  Post("", "CloseUserSession", CloseEnvelope(session_));
  const std::string fault = "1004|The session does not exist on this service.|session";
  EXPECT_EQ(Fault("1"), fault);
  EXPECT_EQ(FaultIn(Post("", "CloseUserSession", CloseEnvelope(session_)).body), fault);
  EXPECT_EQ(FaultIn(Post("", "Execute", ExecuteEnvelope("", "1", NilParameters())).body), fault);
  EXPECT_EQ(Stats()["scriptsRun"], 1);
}

TEST_F(Session, WithoutUsersAnyNameIsWelcome) {
  StartWith(TestOptions());
  EXPECT_EQ(FaultOfLogin("Username=anyone;"), "(no fault)");
  EXPECT_EQ(FaultOfLogin("DbReplicationId=;Username=;Password=;"),
            "1003|The user name or the password is wrong.|session");
  EXPECT_EQ(FaultOfLogin(""), "1003|The user name or the password is wrong.|session");
}

TEST_F(Session, WithUsersNameAndPasswordHaveToMatch) {
  ServiceOptions options = TestOptions();
  options.users = {{"joe", "p&=\xC3\xA9"}};
  StartWith(options);
  EXPECT_EQ(FaultOfLogin("DbReplicationId=;Username=joe;Password=p&=\xC3\xA9;"), "(no fault)");
  for (const char* text : {"Username=joe;Password=;", "Username=Joe;Password=p&=\xC3\xA9;",
                           "username=joe;Password=p&=\xC3\xA9;", "Username=other;Password=p&=\xC3\xA9;"}) {
    EXPECT_EQ(FaultOfLogin(text).substr(0, 5), "1003|") << text;
  }
}

// A peer that opens sessions and forgets them must not lock everybody out.
TEST_F(Session, TheOneThatWasNotUsedForTheLongestTimeMakesRoom) {
  ServiceOptions options = TestOptions();
  options.maxSessions = 2;
  StartWith(options);
  const std::string first = Login();
  const std::string second = Login();
  session_ = first;
  EXPECT_EQ(Value("1"), "xsd:int|1");
  const std::string third = Login();
  EXPECT_EQ(Value("2"), "xsd:int|2");
  session_ = third;
  EXPECT_EQ(Value("3"), "xsd:int|3");
  session_ = second;
  EXPECT_EQ(Fault("1"), "1004|The session does not exist on this service.|session");
}

TEST_F(Session, SessionsWithARunningScriptStay) {
  ServiceOptions options = TestOptions();
  options.maxSessions = 1;
  options.scriptTimeLimit = std::chrono::seconds(100);
  StartWith(options);
  session_ = Login();
  RawClient busy(service_->Port());
  busy.Send(PostRequest("", "Execute", ExecuteEnvelope(session_, "while (true) {}", NilParameters())));
  for (int i = 0; i < 2000 && Stats()["scriptsRun"] != 1; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  EXPECT_EQ(FaultOfLogin("Username=b;"), "1005|There are too many open sessions.|session");
}

TEST(ConnectionString, LaterPairsWinAndUnknownKeysAreSkipped) {
  const Credentials credentials = ParseConnectionString(
      "DbReplicationId=r;Username=a;Password=x;Foo=1;word;;DbReplicationId=r2;Username=b;Password=p=q");
  EXPECT_EQ(credentials.replicaId, "r2");
  EXPECT_EQ(credentials.userName, "b");
  EXPECT_EQ(credentials.password, "p=q");
}

}  // namespace
}  // namespace qv::devservice::testing
