// `scriptwells session open` and `close`.
#include "tests/tools/options_fixture.h"
#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using testing::FreshDirectory;
using testing::Outcome;
using testing::RunTool;
using testing::ServeProcess;
using testing::SessionClosed;
using testing::SessionOpened;
using testing::Variables;
using testing::Words;

std::string LineOf(const Outcome& outcome) {
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
  return outcome.out.substr(0, outcome.out.find('\n'));
}

TEST(SessionCommand, SeveralCommandsUseOneSession) {
  ServeProcess service;
  const FreshDirectory folder;
  const std::string usid = LineOf(RunTool({"session", "open", "--server", service.Url(), "--user", "joe"}));
  EXPECT_FALSE(usid.empty());
  EXPECT_EQ(service.Count("CloseUserSession"), 0);
  const Variables given{{"SCRIPTWELLS_SERVER", service.Url()}, {"SCRIPTWELLS_USID", usid}};
  const std::string url = LineOf(RunTool({"run", "-e", "publish('out.txt', 'text')"}, "", given));
  EXPECT_EQ(LineOf(RunTool({"download", url, folder.Path()}, "", given)), folder.Path() + "/out.txt");
  EXPECT_EQ(LineOf(RunTool({"session", "close"}, "", given)), "");
  EXPECT_EQ(service.Count("CreateUserSession"), 1);
  EXPECT_EQ(service.Count("CloseUserSession"), 1);
  const Outcome again = RunTool({"session", "close"}, "", given);
  EXPECT_EQ(again.err,
            "scriptwells: the session was not closed: The session does not exist on this service.\n");
  EXPECT_EQ(again.exit, 1);
}

class SessionCommandServer : public testing::TransferServer {
 protected:
  Words At(const std::string& verb, const Words& more) const {
    Words words{"session", verb, "--server", Origin()};
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }
};

TEST_F(SessionCommandServer, IdIsPrintedAndTheSessionStaysOpen) {
  Answer({SessionOpened()});
  EXPECT_EQ(LineOf(RunTool(At("open", {"--user", "joe"}))), "u1");
  EXPECT_TRUE(WasSent("#CreateUserSession\r\n"));
  EXPECT_FALSE(WasSent("#CloseUserSession\r\n"));
}

TEST_F(SessionCommandServer, ResultsAsJson) {
  Answer({SessionOpened()});
  EXPECT_EQ(RunTool(At("open", {"--json"})).out, "{\"usid\":\"u1\"}\n");
  Answer({SessionClosed()});
  EXPECT_EQ(RunTool(At("close", {"--usid", "u1", "--json"})).out, "{\"closed\":true}\n");
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
  EXPECT_TRUE(WasSent("u1"));
}

TEST_F(SessionCommandServer, SessionWhoseIdCannotBePrintedIsClosed) {
  Answer({SessionOpened(), SessionClosed()});
  testing::Process process(At("open", {}), {}, "/dev/full");
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.err, "scriptwells: cannot write the session's id to standard output\n");
  EXPECT_EQ(outcome.exit, 6);
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

TEST_F(SessionCommandServer, IdThatDrivesTheTerminalIsRefused) {
  Answer({test::RawAnswerText("<soap:Envelope><soap:Body><CreateUserSessionResponse><CreateUserSessionResult>"
                              "a\x7f</CreateUserSessionResult></CreateUserSessionResponse></soap:Body>"
                              "</soap:Envelope>"),
          SessionClosed()});
  const Outcome outcome = RunTool(At("open", {}));
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "scriptwells: answer not understood: the server's session id holds a character that no header "
            "carries\n");
  EXPECT_EQ(outcome.exit, 7);
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

TEST_F(SessionCommandServer, ServerThatIsNotThere) {
  const Outcome outcome = RunTool({"session", "close", "--server", "http://127.0.0.1:1", "--usid", "x"});
  EXPECT_EQ(outcome.err.rfind("scriptwells: cannot reach http://127.0.0.1:1: ", 0), 0u) << outcome.err;
  EXPECT_EQ(outcome.exit, 3);
}

class SessionCommandLine : public testing::OptionsTest {
 protected:
  static SessionCommandOptions Session(const std::vector<std::string>& arguments) {
    const ParsedArguments parsed = ParseArguments(arguments);
    EXPECT_EQ(parsed.command, Command::kSession) << parsed.text;
    return parsed.session;
  }
};

TEST_F(SessionCommandLine, OpenTakesCredentialsAndNoId) {
  ::setenv("SCRIPTWELLS_USID", "abc", 1);
  const SessionCommandOptions open =
      Session({"session", "open", "--server", "http://h", "--user", "u", "--password-stdin", "--json"});
  EXPECT_EQ(open.verb, SessionVerb::kOpen);
  EXPECT_EQ(open.server, "http://h");
  EXPECT_EQ(open.user, "u");
  EXPECT_TRUE(open.passwordFromInput);
  EXPECT_TRUE(open.json);
  EXPECT_EQ(open.usid, "");
  EXPECT_NE(Refusal({"session", "open", "--server", "http://h", "--usid", "x"}), "accepted");
}

TEST_F(SessionCommandLine, CloseTakesAnIdAndNoCredentials) {
  const SessionCommandOptions close = Session({"session", "close", "--server", "http://h", "--usid", "x"});
  EXPECT_EQ(close.verb, SessionVerb::kClose);
  EXPECT_EQ(close.usid, "x");
  ::setenv("SCRIPTWELLS_USID", "abc", 1);
  ::setenv("SCRIPTWELLS_SERVER", "http://usual", 1);
  EXPECT_EQ(Session({"session", "close"}).usid, "abc");
  EXPECT_EQ(Session({"session", "close"}).server, "http://usual");
  EXPECT_NE(Refusal({"session", "close", "--user", "x"}), "accepted");
}

TEST_F(SessionCommandLine, WhatIsMissingIsNamed) {
  EXPECT_EQ(Refusal({"session"}), "no session command given (open or close)|scriptwells session --help");
  EXPECT_EQ(Refusal({"session", "open"}), "no server given (--server URL)|scriptwells session open --help");
  EXPECT_EQ(Refusal({"session", "close", "--server", "h"}),
            "no session given (--usid ID or SCRIPTWELLS_USID)|scriptwells session close --help");
}

TEST_F(SessionCommandLine, RunTakesAnIdForAServerOnly) {
  EXPECT_EQ(Run({"run", "-e", "1", "--server", "http://h", "--usid", "x"}).usid, "x");
  EXPECT_EQ(Run({"run-document", "a.xml", "--server", "http://h", "--usid", "x"}).usid, "x");
  EXPECT_EQ(Refusal({"run", "-e", "1", "--local", "--usid", "x"}),
            "a session of --local ends with it; --usid goes with --server|scriptwells run --help");
  ::setenv("SCRIPTWELLS_USID", "abc", 1);
  EXPECT_EQ(Run({"run", "-e", "1", "--server", "http://h"}).usid, "abc");
  EXPECT_EQ(Run({"run", "-e", "1", "--local"}).usid, "");
}

}  // namespace
}  // namespace qv::cli
