// `scriptwells shell` with a pipe as its input. On a terminal: terminal/shell_test.py.
#include <sys/stat.h>

#include <csignal>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;

Outcome Typed(const std::string& lines, const std::string& options = "", const Words& more = {}) {
  return Tool("shell --local " + options, more).Run(lines);
}

TEST(Shell, RunsEachScript) {
  Typed("6 * 7\n'text'\n").Succeeds("42\ntext\n");
  Typed("1\n2").Succeeds("1\n2\n");
  Typed("1\r\n").Succeeds("1\n");
  Typed("").Succeeds("");
  Typed("\n\n// nothing\n").Succeeds("");
}

TEST(Shell, ScriptsMayHaveSeveralLines) {
  Typed("(function () {\n  return `a\nb`\n})()\n:{\n[1, 2, 3]\n  .length\n:}\nMath.max(1,\n 2)")
      .Succeeds("a\nb\n3\n2\n");
}

TEST(Shell, AllScriptsAreInOneSession) {
  const ServeProcess service;
  service.Joe("shell")
      .Run("1\n2\n:session\n")
      .Succeeds("1\n2\nSERVER" + std::string(service.Url().size() - 5, ' ') + "USER OPEN FOR CALLS\n" +
                service.Url() + " joe  0 s      2\n");
  EXPECT_EQ(service.Count("CreateUserSession"), 1);
  EXPECT_EQ(service.Count("CloseUserSession"), 1);
}

TEST(Shell, ParametersAreForTheScriptsThatFollow) {
  Typed(
      ":param a=int:40\nparameters.a + 2\n:param a=string:x y \nparameters.a + '.'\n:params\n:unparam "
      "a\n:params\n"
      "typeof parameters.a\n")
      .Succeeds("42\nx y .\nNAME TYPE   VALUE\na    string x y \nundefined\n");
  Typed("parameters.a\n:param b=double:0.123456789\n", "-p a=int:5")
      .Succeeds("5\n", "note: parameter 'b' travels with 6 significant digits");
  Typed(":param a\n").Fails(6, "parameter 'a' is not of the form name=type:value, such as a=int:5");
  Typed(":unparam a\n").Fails(2, "no parameter 'a'; :params lists all");
}

TEST(Shell, OutputAndLanguageAreSet) {
  Typed(":output\n:output json\n1\n:output csv\n1\n:output table\n[{a: 1}]\n:language\n", "-o text")
      .Succeeds("text\n{\"type\":\"int\",\"value\":1,\"tag\":22}\nvalue\r\n1\r\na\n1\nJavaScript\n");
  Typed(":output xml\n").Fails(2, "it is text, table, csv or json, not 'xml'");
  Typed(":language VBScript\n1 \\\n+ 2\n").FailsLike(1, "script fault ");
}

TEST(Shell, FirstFailureEndsIt) {
  const Outcome outcome = Typed("1\n(\nfoo.bar())\n2\n");
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_EQ(outcome.out, "1\n");
  EXPECT_EQ(outcome.err,
            "scriptwells: script fault 0x800403F2 (1010): Can't find variable: foo (line 2)\n"
            "  2 | foo.bar())\n"
            "    | ^^^^^^^^^^\n");
  EXPECT_TRUE(StartsWith(Typed("foo\n", "--json").err, "{\"error\":{\"kind\":\"script fault\""));
}

TEST(Shell, UploadsAndSaves) {
  const TemporaryDirectory folder;
  const std::string file = folder.Write("notes.txt", "to be sent");
  const Outcome outcome =
      Typed(":upload doc=" + file + "\nparameters.doc.text()\npublish('out.txt', 'saved')\n:save " +
            folder.Path() + "\n");
  EXPECT_TRUE(StartsWith(outcome.out, "to be sent\nhttp://")) << outcome.out;
  EXPECT_TRUE(Holds(outcome.out, "\n" + folder.Path("out.txt") + "\n")) << outcome.out;
  EXPECT_EQ(folder.Read("out.txt"), "saved");
  Typed("[{a: 1, b: 'x'}]\n:save " + folder.Path("a.csv") + "\n:save " + folder.Path("a.json") + "\n:save " +
        folder.Path("a.txt") + "\n")
      .Succeeds("a b\n1 x\n");
  EXPECT_EQ(folder.Read("a.csv"), "a,b\r\n1,x\r\n");
  EXPECT_EQ(folder.Read("a.json").substr(0, 21), "{\"type\":\"recordlist\",");
  EXPECT_EQ(folder.Read("a.txt"), "a b\n1 x\n");
  const Outcome second = Typed("1\n:save " + folder.Path("a.csv") + "\n");
  EXPECT_EQ(second.exit, 6);
  EXPECT_EQ(second.err, "scriptwells: the file " + folder.Path("a.csv") + " exists\n");
  EXPECT_EQ(folder.Read("a.csv"), "a,b\r\n1,x\r\n");
  Typed(":save x\n").Fails(2, "there is no answer to save");
}

TEST(Shell, OpensScriptsAndDocuments) {
  const TemporaryDirectory folder;
  const std::string script = folder.Write("a script.js", "parameters.a\n+ 1");
  Typed(":open " + script + "\n:open " EXAMPLES_FOLDER "/document.xml\n", "-p a=int:41")
      .Succeeds(
          "42\nGr\xC3\xBC\xC3\x9F"
          "e, W\xC3\xB6rld! You sent: <a>\n");
  Typed(":open " + folder.Path("none") + "\n")
      .Fails(6, "cannot read the script " + folder.Path("none") + ": No such file or directory");
}

TEST(Shell, TimeAndHelp) {
  const Outcome outcome = Typed(":time on\n:time\n1\n:help time\n");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_TRUE(StartsWith(outcome.out, "on\n1\n  :time [on|off]")) << outcome.out;
  EXPECT_TRUE(StartsWith(outcome.err, "scriptwells: note: the call took ")) << outcome.err;
  Typed(":tme\n").Fails(2, "no command :tme; did you mean :time?");
}

TEST(Shell, TapeIsPlayedWithoutAService) {
  const TemporaryDirectory folder;
  const std::string tape = folder.Path("tape");
  Typed("6 * 7\n'b'\n", "--record", {tape}).Succeeds("42\nb\n");
  Typed("6 * 7\n'b'\n", "--replay", {tape}).Succeeds("42\nb\n");
  const Outcome outcome = Typed("6 * 8\n", "--replay", {tape});
  EXPECT_NE(outcome.exit, 0);
  EXPECT_EQ(outcome.out, "");
}

TEST(Shell, QuitEndsIt) {
  Typed("1\n:quit\n2\n").Succeeds("1\n");
}

TEST(Shell, PasswordMayComeFirst) {
  const TemporaryDirectory folder;
  const ServeProcess service("--users-file", {folder.Write("users", "joe:secret\n")});
  service.Joe("shell --password-stdin").Run("secret\n1\n").Succeeds("1\n");
  service.Joe("shell").Set("SCRIPTWELLS_PASSWORD", "wrong").Run().FailsLike(5, "session refused");
}

TEST(Shell, InterruptEndsItWithoutATerminal) {
  const ServeProcess service("--script-timeout 60");
  Process process(service.Joe("shell"));
  EXPECT_TRUE(service.Reaches("CreateUserSession", 1));
  process.Signal(SIGINT);
  process.Finish().Fails(130, "interrupted");
  EXPECT_TRUE(service.Reaches("CloseUserSession", 1));
}

// The canary of --trace: neither the password nor the session's id is in a trace that begins later.
class ShellTrace : public TransferServer {};

TEST_F(ShellTrace, BeginsAndEndsAtAnyTime) {
  AnswerCalls({ScriptAnswered("xsd:int", "1"), ScriptAnswered("xsd:string", "canary-password u1-canary"),
               ScriptAnswered("xsd:int", "3")});
  const Outcome outcome = Tool("shell --user joe --server " + Origin())
                              .Set("SCRIPTWELLS_PASSWORD", "canary-password")
                              .Run("1\n:trace " + folder_.Path("t") + "\n2\n:trace\n:trace off\n:trace\n3\n");
  EXPECT_EQ(outcome.out, "1\ncanary-password u1-canary\n" + folder_.Path("t") + "\noff\n3\n");
  EXPECT_EQ(outcome.err, "");
  const std::string trace = folder_.Read("t");
  EXPECT_EQ(trace.find("POST "), 0U);
  EXPECT_EQ(trace.find("\nPOST "), std::string::npos) << trace;
  EXPECT_TRUE(Holds(trace, "***")) << trace;
  EXPECT_FALSE(Holds(trace, "canary-password")) << trace;
  EXPECT_FALSE(Holds(trace, "u1")) << trace;
  struct stat facts = {};
  ASSERT_EQ(::stat(folder_.Path("t").c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777, 0600U);
}

TEST_F(ShellTrace, GoesToStandardError) {
  AnswerCalls({ScriptAnswered("xsd:int", "1")});
  const Outcome outcome = Joe("shell").Run(":trace on\n:trace\n1\n:trace off\n");
  EXPECT_EQ(outcome.out, "on\n1\n");
  EXPECT_TRUE(StartsWith(outcome.err, "POST ")) << outcome.err;
  Tool("shell --local")
      .Run(":trace /nonexistent/t\n")
      .Fails(6, "cannot write the trace /nonexistent/t: No such file or directory");
}

}  // namespace
}  // namespace qv::cli
