// `scriptwells run` against a service in another process: answers that break, signals, and passwords.
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;

constexpr char kEndless[] = "run -e 'while (true) {}' ";
const std::string kNobody = "run -e 1 --user joe --server http://127.0.0.1:1 ";

class RunServer : public ::testing::Test {
 protected:
  Outcome At(const std::string& path, const std::string& options = "") const {
    return RunTool("run -e 1 --user joe --server " + service_.Url() + path + " " + options);
  }
  std::string BrokeOff() const { return "the answer of " + service_.Url() + " broke off: "; }
  std::string NoAnswer() const { return "no answer from " + service_.Url() + ": "; }

  ServeProcess service_{"--script-timeout 20"};
};

TEST_F(RunServer, SessionIsClosedAfterAnAnswerAndAFault) {
  service_.Joe("run -e '6 * 7'").Succeeds("42\n");
  EXPECT_EQ(service_.Count("CreateUserSession"), 1);
  EXPECT_EQ(service_.Count("CloseUserSession"), 1);
  EXPECT_EQ(service_.Count("openSessions"), 0);
  EXPECT_EQ(service_.Joe("run -e", {"throw new ScriptError(5, 'no such customer')"}).Run().exit, 1);
  EXPECT_EQ(service_.Count("CloseUserSession"), 2);
  EXPECT_EQ(service_.Count("openSessions"), 0);
}

TEST_F(RunServer, NothingIsSentIfThisSideIsWrong) {
  EXPECT_EQ(service_.Joe("run -e 1 -p a=int:x").Run().exit, 6);
  EXPECT_EQ(service_.Joe("run /nonexistent/a.js").Run().exit, 6);
  EXPECT_EQ(service_.Count("CreateUserSession"), 0);
}

TEST_F(RunServer, AddressMayEndWithASlashOrBeAVariable) {
  EXPECT_EQ(At("/").out, "1\n");
  EXPECT_EQ(Tool("run -e 1 --user joe").Set("SCRIPTWELLS_SERVER", service_.Url()).Run().out, "1\n");
}

TEST_F(RunServer, OddAnswersAreReported) {
  At("/odd/html")
      .Fails(7, "answer not understood: The respone that arrived is not valid (HTTP status 404; is " +
                    service_.Url() + " a Scriptwells server?)");
  At("/odd/chunked")
      .Fails(7, "answer not understood: Unknown Http problem. (the answer has no usable Content-Length)");
  At("/odd/spoil").FailsLike(7, "answer not understood: Error at file application/xml, line ");
  At("/odd/cut").FailsLike(3, BrokeOff());
  At("/odd/refuse2").FailsLike(3, NoAnswer());
  At("/odd/stallhead", "--timeout 0.3").FailsLike(4, NoAnswer());
  At("/odd/stall", "--timeout 0.3").FailsLike(4, BrokeOff());
}

TEST_F(RunServer, SlowScriptIsATimeoutAndTheSessionIsClosed) {
  EXPECT_EQ(service_.Joe(std::string(kEndless) + "--timeout 0.3").Run().exit, 4);
  EXPECT_TRUE(service_.Reaches("openSessions", 0));
  EXPECT_EQ(service_.Count("CloseUserSession"), 1);
}

TEST_F(RunServer, InterruptClosesTheSession) {
  Process process(service_.Joe(kEndless));
  ASSERT_TRUE(service_.Reaches("Execute", 1));
  process.Signal(SIGINT);
  const auto before = std::chrono::steady_clock::now();
  const Outcome outcome = process.Finish();
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(10));
  outcome.Fails(130, "interrupted");
  EXPECT_TRUE(service_.Reaches("openSessions", 0));
}

TEST_F(RunServer, FailureOfClosingIsAWarningBeforeTheFirstFailure) {
  Process process(service_.Joe(kEndless));
  ASSERT_TRUE(service_.Reaches("Execute", 1));
  service_.Itself().Signal(SIGKILL);
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.exit, 3);
  // A listener that is about to end may still take the connection and reset it.
  const std::string first = outcome.err.substr(0, outcome.err.find('\n'));
  EXPECT_TRUE(StartsWith(first, "scriptwells: warning: the session was not closed: ")) << outcome.err;
  EXPECT_TRUE(Holds(first, service_.Url())) << outcome.err;
  EXPECT_TRUE(Holds(outcome.err, "\nscriptwells: " + NoAnswer())) << outcome.err;
}

TEST(RunNowhere, UnusableServerIsReported) {
  const std::string message = "cannot reach http://127.0.0.1:1: ";
  const Outcome outcome = RunTool(kNobody);
  outcome.FailsLike(3, message);
  EXPECT_GT(outcome.err.size(), std::string("scriptwells: \n").size() + message.size());
  RunTool(kNobody + "--json").FailsLike(3, R"({"error":{"kind":"not connected","message":")" + message);
  RunTool("run -e 1 --user joe --server http://no-such-host.invalid")
      .FailsLike(3, "cannot reach http://no-such-host.invalid:80: ");
  RunTool("run -e 1 --user joe --server localhost:8080")
      .Fails(6, "server 'localhost:8080' does not begin with http:// or https://");
  RunTool("run -e 1 --user a;b --server http://127.0.0.1:1")
      .Fails(6, "the user name holds ';' or '=', which a connection string cannot carry");
}

// A service that knows two users.
class RunWithUsers : public ::testing::Test {
 protected:
  Tool As(const std::string& user, const std::string& options = "") const {
    return Tool("run -e \"in\" --server " + service_.Url() + " --user " + user + " " + options);
  }

  TemporaryDirectory folder_;
  ServeProcess service_{"--users-file " +
                        folder_.Write("users", "joe:s3cret\nann:\xC3\xA9t\xC3\xA9 & <hiver>\n")};
};

TEST_F(RunWithUsers, PasswordComesFromFileInputOrVariable) {
  EXPECT_EQ(As("joe", "--password-file " + folder_.Write("password", "s3cret\n")).Run().out, "in\n");
  EXPECT_EQ(As("joe", "--password-stdin").Run("s3cret\n").out, "in\n");
  EXPECT_EQ(As("joe").Set("SCRIPTWELLS_PASSWORD", "s3cret").Run().out, "in\n");
  EXPECT_EQ(As("ann", "--password-stdin").Run("\xC3\xA9t\xC3\xA9 & <hiver>\n").out, "in\n");
}

TEST_F(RunWithUsers, PasswordIsAskedOnATerminalAndNotShown) {
  const Outcome answered = As("joe").OnTerminal("Password of joe: ", "s3cret\n");
  EXPECT_EQ(answered.out, "Password of joe: \r\nin\r\n");
  EXPECT_EQ(answered.exit, 0);
  const Outcome interrupted = As("joe").OnTerminal("Password of joe: ", "\x03");
  EXPECT_EQ(interrupted.exit, 130);
  EXPECT_EQ(interrupted.out, "Password of joe: \r\nscriptwells: interrupted\r\n");
  EXPECT_TRUE(interrupted.echo);
}

TEST_F(RunWithUsers, WrongUserOrPasswordIsARefusedSession) {
  const Outcome outcome = As("joe", "--password-stdin").Run("guess\n");
  outcome.FailsLike(5, "session refused 0x800403EB (1003): ");
  EXPECT_FALSE(Holds(outcome.err, "guess"));
  EXPECT_EQ(As("eve", "--password-stdin").Run("x\n").exit, 5);
  const Outcome nobody = RunTool("run -e 1 --server " + service_.Url());
  EXPECT_EQ(nobody.exit, 5);
  const std::string end = " (no --user given)\n";
  ASSERT_GT(nobody.err.size(), end.size());
  EXPECT_EQ(nobody.err.substr(nobody.err.size() - end.size()), end);
}

}  // namespace
}  // namespace qv::cli
