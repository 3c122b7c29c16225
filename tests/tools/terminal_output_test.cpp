// What a server says, on a terminal and elsewhere.
#include "tools/terminal_output.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using testing::FileAnswer;
using testing::Outcome;
using testing::RunOnTerminal;
using testing::RunTool;
using testing::ScriptAnswered;
using testing::SessionClosed;
using testing::SessionOpened;
using testing::Words;

// DEL, CSI in one character, an override of the writing direction, a line separator; and what stays.
constexpr char kText[] =
    "a\x7f\xC2\x9B"
    "2J\xE2\x80\xAE\xE2\x80\xA8\tb\nc";

// XML 1.1 can name every control character but U+0000.
std::string AnsweredAnything(const std::string& text) {
  return test::RawAnswerText(
      "<?xml version=\"1.1\"?><soap:Envelope><soap:Body><ExecuteResponse><r xsi:type=\"xsd:string\">" + text +
      "</r></ExecuteResponse></soap:Body></soap:Envelope>");
}

std::string Fault(const std::string& text) {
  return test::RawAnswerText("<?xml version=\"1.1\"?><soap:Envelope><soap:Body><soap:Fault><faultstring>" +
                             text + "</faultstring></soap:Fault></soap:Body></soap:Envelope>");
}

class TerminalOutput : public testing::TransferServer {
 protected:
  Outcome Terminal(const std::string& answer, const Words& more = {}) {
    return RunOnTerminal(Prepared(answer, more), "Password", "\n", {{"SCRIPTWELLS_PASSWORD", "x"}});
  }
  Outcome Pipe(const std::string& answer, const Words& more = {}) {
    return RunTool(Prepared(answer, more), "", {{"SCRIPTWELLS_PASSWORD", "x"}});
  }

 private:
  Words Prepared(const std::string& answer, const Words& more) {
    Answer({SessionOpened(), answer, SessionClosed()});
    Words words = AsJoe("run", {"-e", "1"});
    words.insert(words.end(), more.begin(), more.end());
    return words;
  }
};

TEST_F(TerminalOutput, AnswerIsEscaped) {
  const Outcome outcome = Terminal(ScriptAnswered("xsd:string", kText));
  EXPECT_EQ(outcome.out, "a\\x7f\\xc2\\x9b2J\\u202e\\u2028\tb\r\nc\r\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST_F(TerminalOutput, TitleAndColoursOfTheTerminalStay) {
  EXPECT_EQ(Terminal(AnsweredAnything("&#27;]0;owned&#7;&#27;[31mred")).out,
            "\\x1b]0;owned\\x07\\x1b[31mred\r\n");
}

TEST_F(TerminalOutput, CsvIsEscaped) {
  EXPECT_EQ(Terminal(ScriptAnswered("xsd:string",
                                    "a\xC2\x9B"
                                    "b"),
                     {"-o", "csv"})
                .out,
            "value\r\r\na\\xc2\\x9b"
            "b\r\r\n");
}

TEST_F(TerminalOutput, PipeGetsEveryByte) {
  EXPECT_EQ(Pipe(ScriptAnswered("xsd:string", kText)).out, std::string(kText) + "\n");
  EXPECT_EQ(Pipe(AnsweredAnything("&#27;[31mred")).out, "\x1b[31mred\n");
}

TEST_F(TerminalOutput, JsonIsTheSameEverywhere) {
  const std::string expected =
      "{\"type\":\"string\",\"value\":\"a\\u007f\\u009b2J\\u202e\\u2028\\tb\\nc\",\"tag\":8}";
  EXPECT_EQ(Pipe(ScriptAnswered("xsd:string", kText), {"--json"}).out, expected + "\n");
  EXPECT_EQ(Terminal(ScriptAnswered("xsd:string", kText), {"--json"}).out, expected + "\r\n");
}

TEST_F(TerminalOutput, FaultIsEscapedAlsoInAPipe) {
  EXPECT_EQ(Pipe(Fault("no&#27;[2J such&#x9b;1m\xE2\x80\xAE")).err,
            "scriptwells: script fault: no\\x1b[2J such\\xc2\\x9b"
            "1m\\u202e\n");
  EXPECT_EQ(Pipe(Fault("a&#27;&#x9b;z"), {"--json"}).err,
            "{\"error\":{\"kind\":\"script "
            "fault\",\"message\":\"a\\u001b\\u009bz\",\"exit\":1}}\n");
}

TEST_F(TerminalOutput, FileNameWithControlCharactersIsRefused) {
  Answer({FileAnswer("\x1b]0;x\x07.txt", "text")});
  const Outcome outcome = RunTool(Adopted());
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "scriptwells: answer not understood: the answer of " + Origin() +
                " names the file '\\x1b]0;x\\x07.txt', which is refused: it holds a control character\n");
  EXPECT_EQ(outcome.exit, 7);
  Answer({FileAnswer("cod\xE2\x80\xAEtxt.exe", "text")});
  EXPECT_EQ(RunOnTerminal(Adopted(), "", "").exit, 7);
  EXPECT_EQ(Count(), 0);
}

TEST(TerminalWidth, OtherStreamsHaveNone) {
  const std::ostringstream out;
  EXPECT_EQ(TerminalWidth(out), 0u);
  EXPECT_FALSE(IsTerminal(out));
  EXPECT_EQ(TextFor(out, "\x1b"), "\x1b");
}

}  // namespace
}  // namespace qv::cli
