// The program against a service in another process, over real sockets.
#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <thread>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::Process;
using testing::RunTool;
using testing::ServeProcess;
using testing::Words;

constexpr char kNobody[] = "http://127.0.0.1:1";

class RunServer : public ::testing::Test {
 protected:
  Outcome At(const std::string& path, const Words& more, const std::string& input = "") {
    Words words{"run", "--server", service_.Url() + path, "--user", "joe"};
    words.insert(words.end(), more.begin(), more.end());
    return RunTool(words, input);
  }
  Outcome There(const Words& more, const std::string& input = "") { return At("", more, input); }

  // Waits until the service has as many open sessions; false when that does not come.
  bool SessionsBecome(int count) {
    for (int i = 0; i < 200; ++i) {
      if (service_.Count("openSessions") == count) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    return false;
  }
  bool ScriptStarts() {
    for (int i = 0; i < 200; ++i) {
      if (service_.Count("Execute") == 1) return true;
      std::this_thread::sleep_for(std::chrono::milliseconds(25));
    }
    return false;
  }

  ServeProcess service_{{"--script-timeout", "20"}};
};

TEST_F(RunServer, ScriptRunsAndTheSessionIsClosed) {
  const Outcome outcome = There({"-e", "6 * 7"});
  EXPECT_EQ(outcome.out, "42\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(service_.Count("CreateUserSession"), 1);
  EXPECT_EQ(service_.Count("CloseUserSession"), 1);
  EXPECT_EQ(service_.Count("openSessions"), 0);
}

TEST_F(RunServer, SessionIsClosedAfterAFaultToo) {
  const Outcome outcome = There({"-e", "throw new ScriptError(5, 'no such customer')"});
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_EQ(service_.Count("CloseUserSession"), 1);
  EXPECT_EQ(service_.Count("openSessions"), 0);
}

TEST_F(RunServer, NothingIsAskedWhenThisSideIsWrong) {
  EXPECT_EQ(There({"-e", "1", "-p", "a=int:x"}).exit, 6);
  EXPECT_EQ(There({"/nonexistent/a.js"}).exit, 6);
  EXPECT_EQ(service_.Count("CreateUserSession"), 0);
}

TEST_F(RunServer, SlashBehindTheServerDoesNotMatter) {
  EXPECT_EQ(At("/", {"-e", "1"}).out, "1\n");
}

TEST_F(RunServer, VariablesStandInForOptions) {
  const Outcome outcome =
      RunTool({"run", "-e", "1", "--user", "joe"}, "", {{"SCRIPTWELLS_SERVER", service_.Url()}});
  EXPECT_EQ(outcome.out, "1\n");
}

TEST_F(RunServer, PageInPlaceOfAnAnswerIsNotUnderstood) {
  const Outcome outcome = At("/odd/html", {"-e", "1"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(
      outcome.err,
      "scriptwells: answer not understood: The respone that arrived is not valid (HTTP status 404; is " +
          service_.Url() + " a Scriptwells server?)\n");
  EXPECT_EQ(outcome.exit, 7);
}

TEST_F(RunServer, AnswerWithoutLengthIsNotUnderstood) {
  const Outcome outcome = At("/odd/chunked", {"-e", "1"});
  EXPECT_EQ(outcome.err,
            "scriptwells: answer not understood: Unknown Http problem. "
            "(the answer has no usable Content-Length)\n");
  EXPECT_EQ(outcome.exit, 7);
}

TEST_F(RunServer, SpoiledAnswerIsNotUnderstood) {
  const Outcome outcome = At("/odd/spoil", {"-e", "1"});
  EXPECT_EQ(outcome.exit, 7);
  EXPECT_EQ(outcome.err.rfind("scriptwells: answer not understood: Error at file application/xml, line ", 0),
            0u)
      << outcome.err;
}

TEST_F(RunServer, AnswerThatIsCutIsABrokenConnection) {
  const Outcome outcome = At("/odd/cut", {"-e", "1"});
  EXPECT_EQ(outcome.exit, 3);
  EXPECT_EQ(outcome.err.rfind("scriptwells: the answer of " + service_.Url() + " broke off: ", 0), 0u)
      << outcome.err;
}

TEST_F(RunServer, DroppedConnectionIsABrokenConnection) {
  const Outcome outcome = At("/odd/refuse2", {"-e", "1"});
  EXPECT_EQ(outcome.exit, 3);
  EXPECT_EQ(outcome.err.rfind("scriptwells: no answer from " + service_.Url() + ": ", 0), 0u) << outcome.err;
}

TEST_F(RunServer, SilenceBeforeTheAnswerIsATimeout) {
  const Outcome outcome = At("/odd/stallhead", {"-e", "1", "--timeout", "0.3"});
  EXPECT_EQ(outcome.exit, 4);
  EXPECT_EQ(outcome.err.rfind("scriptwells: no answer from " + service_.Url() + ": ", 0), 0u) << outcome.err;
}

TEST_F(RunServer, SilenceInTheAnswerIsATimeout) {
  const Outcome outcome = At("/odd/stall", {"-e", "1", "--timeout", "0.3"});
  EXPECT_EQ(outcome.exit, 4);
  EXPECT_EQ(outcome.err.rfind("scriptwells: the answer of " + service_.Url() + " broke off: ", 0), 0u)
      << outcome.err;
}

TEST_F(RunServer, SlowScriptIsATimeoutAndTheSessionIsClosed) {
  const Outcome outcome = There({"-e", "while (true) {}", "--timeout", "0.3"});
  EXPECT_EQ(outcome.exit, 4);
  EXPECT_TRUE(SessionsBecome(0));
  EXPECT_EQ(service_.Count("CloseUserSession"), 1);
}

TEST_F(RunServer, InterruptClosesTheSessionAndLeaves) {
  Process process({"run", "--server", service_.Url(), "--user", "joe", "-e", "while (true) {}"});
  ASSERT_TRUE(ScriptStarts());
  process.Signal(SIGINT);
  const auto before = std::chrono::steady_clock::now();
  const Outcome outcome = process.Finish();
  EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(10));
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "scriptwells: interrupted\n");
  EXPECT_TRUE(SessionsBecome(0));
}

TEST_F(RunServer, FailureOfClosingIsAWarningBesideTheFirstFailure) {
  Process process({"run", "--server", service_.Url(), "--user", "joe", "-e", "while (true) {}"});
  ASSERT_TRUE(ScriptStarts());
  service_.Itself().Signal(SIGKILL);
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.exit, 3);
  // A listener that is about to go may still take the connection and reset it.
  const std::string first = outcome.err.substr(0, outcome.err.find('\n'));
  EXPECT_EQ(first.rfind("scriptwells: warning: the session was not closed: ", 0), 0u) << outcome.err;
  EXPECT_NE(first.find(service_.Url()), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("\nscriptwells: no answer from " + service_.Url() + ": "), std::string::npos)
      << outcome.err;
}

TEST(RunNowhere, UnreachableServerIsNamedWithTheReason) {
  const Outcome outcome = RunTool({"run", "--server", kNobody, "--user", "joe", "-e", "1"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.exit, 3);
  EXPECT_EQ(outcome.err.rfind("scriptwells: cannot reach http://127.0.0.1:1: ", 0), 0u) << outcome.err;
  EXPECT_GT(outcome.err.size(), std::string("scriptwells: cannot reach http://127.0.0.1:1: \n").size());
}

TEST(RunNowhere, FailureAsJson) {
  const Outcome outcome = RunTool({"run", "--server", kNobody, "--user", "joe", "-e", "1", "--json"});
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.exit, 3);
  EXPECT_EQ(outcome.err.rfind(
                "{\"error\":{\"kind\":\"not connected\",\"message\":\"cannot reach http://127.0.0.1:1: ", 0),
            0u)
      << outcome.err;
}

TEST(RunNowhere, UnknownHostIsUnreachable) {
  const Outcome outcome =
      RunTool({"run", "--server", "http://no-such-host.invalid", "--user", "joe", "-e", "1"});
  EXPECT_EQ(outcome.exit, 3);
  EXPECT_EQ(outcome.err.rfind("scriptwells: cannot reach http://no-such-host.invalid:80: ", 0), 0u)
      << outcome.err;
}

TEST(RunNowhere, BadServerIsALocalFailure) {
  const Outcome outcome = RunTool({"run", "--server", "localhost:8080", "--user", "joe", "-e", "1"});
  EXPECT_EQ(outcome.err, "scriptwells: server 'localhost:8080' does not begin with http:// or https://\n");
  EXPECT_EQ(outcome.exit, 6);
}

TEST(RunNowhere, CredentialThatCannotTravelIsALocalFailure) {
  const Outcome outcome = RunTool({"run", "--server", kNobody, "--user", "a;b", "-e", "1"});
  EXPECT_EQ(outcome.err,
            "scriptwells: the user name holds ';' or '=', which a connection string cannot carry\n");
  EXPECT_EQ(outcome.exit, 6);
}

// A service that knows two users.
class RunWithUsers : public ::testing::Test {
 protected:
  static std::string Write(const std::string& name, const std::string& content) {
    const std::string path =
        ::testing::TempDir() + "run_server_test." + std::to_string(::getpid()) + "." + name;
    std::ofstream(path) << content;
    return path;
  }
  void TearDown() override {
    std::remove(users_.c_str());
    std::remove(password_.c_str());
  }
  Outcome As(const std::string& user, const Words& more, const std::string& input = "",
             const testing::Variables& variables = {}) {
    Words words{"run", "--server", service_.Url(), "--user", user, "-e", "'in'"};
    words.insert(words.end(), more.begin(), more.end());
    return RunTool(words, input, variables);
  }

  std::string users_ = Write("users", "joe:s3cret\nann:\xC3\xA9t\xC3\xA9 & <hiver>\n");
  std::string password_ = Write("password", "s3cret\n");
  ServeProcess service_{{"--users-file", users_}};
};

TEST_F(RunWithUsers, PasswordComesFromAFile) {
  EXPECT_EQ(As("joe", {"--password-file", password_}).out, "in\n");
}

TEST_F(RunWithUsers, PasswordComesFromStandardInput) {
  EXPECT_EQ(As("joe", {"--password-stdin"}, "s3cret\n").out, "in\n");
}

TEST_F(RunWithUsers, PasswordComesFromTheEnvironment) {
  EXPECT_EQ(As("joe", {}, "", {{"SCRIPTWELLS_PASSWORD", "s3cret"}}).out, "in\n");
}

TEST_F(RunWithUsers, PasswordMayHoldAnyOtherCharacter) {
  EXPECT_EQ(As("ann", {"--password-stdin"}, "\xC3\xA9t\xC3\xA9 & <hiver>\n").out, "in\n");
}

TEST_F(RunWithUsers, PasswordIsAskedOnATerminalAndNotShown) {
  const Outcome outcome = testing::RunOnTerminal(
      {"run", "--server", service_.Url(), "--user", "joe", "-e", "'in'"}, "Password of joe: ", "s3cret\n");
  EXPECT_EQ(outcome.out, "Password of joe: \r\nin\r\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST_F(RunWithUsers, InterruptAtTheQuestionLeaves) {
  const Outcome outcome = testing::RunOnTerminal(
      {"run", "--server", service_.Url(), "--user", "joe", "-e", "'in'"}, "Password of joe: ", "\x03");
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_EQ(outcome.out, "Password of joe: \r\nscriptwells: interrupted\r\n");
  EXPECT_TRUE(outcome.echo);
}

TEST_F(RunWithUsers, WrongPasswordIsARefusedSession) {
  const Outcome outcome = As("joe", {"--password-stdin"}, "guess\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.exit, 5);
  EXPECT_EQ(outcome.err.rfind("scriptwells: session refused 0x800403EB (1003): ", 0), 0u) << outcome.err;
  EXPECT_EQ(outcome.err.find("guess"), std::string::npos);
}

TEST_F(RunWithUsers, MissingUserIsHintedAt) {
  const Outcome outcome = RunTool({"run", "--server", service_.Url(), "-e", "1"});
  EXPECT_EQ(outcome.exit, 5);
  const std::string end = " (no --user given)\n";
  ASSERT_GT(outcome.err.size(), end.size());
  EXPECT_EQ(outcome.err.substr(outcome.err.size() - end.size()), end);
}

TEST_F(RunWithUsers, UnknownUserIsARefusedSession) {
  EXPECT_EQ(As("eve", {"--password-stdin"}, "x\n").exit, 5);
}

}  // namespace
}  // namespace qv::cli
