// What the program writes to a terminal, to a pipe, and to a standard stream that is closed (`<&- >&- 2>&-`).
#include "tools/report/standard_output.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;

// NOLINTBEGIN(misc-misleading-bidirectional): characters that mislead are what is tested.

// DEL, CSI in one character, an override of the writing direction, a line separator; and layout.
const std::string kUnsafe = "a\x7f\xC2\x9B.2J\xE2\x80\xAE\xE2\x80\xA8\tb\nc";

// XML 1.1 can name every control character except U+0000.
std::string InXml11(const std::string& body) {
  return test::RawAnswerText("<?xml version=\"1.1\"?><soap:Envelope><soap:Body>" + body +
                             "</soap:Body></soap:Envelope>");
}

std::string AnsweredAnything(const std::string& text) {
  return InXml11("<ExecuteResponse><r xsi:type=\"xsd:string\">" + text + "</r></ExecuteResponse>");
}

std::string Fault(const std::string& text) {
  return InXml11("<soap:Fault><faultstring>" + text + "</faultstring></soap:Fault>");
}

class StandardOutput : public TransferServer {
 protected:
  Tool Answered(const std::string& answer, const std::string& options = "") {
    AnswerCalls({answer});
    return Joe("run -e 1 " + options);
  }
};

TEST_F(StandardOutput, TerminalGetsEscapesAndAPipeEveryByte) {
  const Outcome outcome = Answered(ScriptAnswered("xsd:string", kUnsafe)).OnTerminal();
  EXPECT_EQ(outcome.out, "a\\x7f\\xc2\\x9b.2J\\u202e\\u2028\tb\r\nc\r\n");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(Answered(AnsweredAnything("&#27;]0;owned&#7;&#27;[31mred")).OnTerminal().out,
            "\\x1b]0;owned\\x07\\x1b[31mred\r\n");
  EXPECT_EQ(Answered(ScriptAnswered("xsd:string", "a\xC2\x9B.b"), "-o csv").OnTerminal().out,
            "value\r\r\na\\xc2\\x9b.b\r\r\n");
  EXPECT_EQ(Answered(ScriptAnswered("xsd:string", kUnsafe)).Run().out, kUnsafe + "\n");
  EXPECT_EQ(Answered(AnsweredAnything("&#27;[31mred")).Run().out, "\x1b[31mred\n");
  const std::string json = R"({"type":"string","value":"a\u007f\u009b.2J\u202e\u2028\tb\nc","tag":8})";
  EXPECT_EQ(Answered(ScriptAnswered("xsd:string", kUnsafe), "--json").Run().out, json + "\n");
  EXPECT_EQ(Answered(ScriptAnswered("xsd:string", kUnsafe), "--json").OnTerminal().out, json + "\r\n");
}

TEST_F(StandardOutput, MessagesAreAlwaysEscaped) {
  Answered(Fault("no&#27;[2J such&#x9b;1m\xE2\x80\xAE"))
      .Fails(1, R"(script fault: no\x1b[2J such\xc2\x9b1m\u202e)");
  Answered(Fault("a&#27;&#x9b;z"), "--json")
      .Fails(1, R"({"error":{"kind":"script fault","message":"a\u001b\u009bz","exit":1}})");
}

TEST_F(StandardOutput, FileNameWithControlCharactersIsRejected) {
  Answer({FileAnswer("\x1b]0;x\x07.txt", "text")});
  Adopted().Fails(7,
                  "answer not understood: the answer of " + Origin() +
                      " names the file '\\x1b]0;x\\x07.txt', which is refused: it holds a control character");
  Answer({FileAnswer("cod\xE2\x80\xAEtxt.exe", "text")});
  EXPECT_EQ(Adopted().OnTerminal().exit, 7);
  EXPECT_EQ(folder_.Count(), 0);
}

TEST(TerminalWidth, OtherStreamsHaveNone) {
  const std::ostringstream out;
  EXPECT_EQ(TerminalWidth(out), 0U);
  EXPECT_FALSE(IsTerminal(out));
  EXPECT_EQ(TextFor(out, "\x1b"), "\x1b");
}

TEST(ClosedStreams, InputFailsOnlyIfItIsRead) {
  Tool("run --local -")
      .Close({0})
      .Fails(6, "cannot read the script from standard input: Bad file descriptor");
  Tool("run --server http://127.0.0.1:1 --password-stdin -e 1")
      .Close({0})
      .Fails(6, "cannot read the password: Bad file descriptor");
  Tool("run --local -e '6 * 7'").Close({0}).Succeeds("42\n");
}

TEST(ClosedStreams, LostOutputIsAFailure) {
  for (const char* code : {"6 * 7", "[{a: 1}]"})
    Tool("run --local -e", {code}).Close({1}).Fails(6, "cannot write the answer to standard output");
  for (const char* command : {"--version", "describe"})
    Tool(command).Close({1}).Fails(6, "cannot write to standard output");
  EXPECT_EQ(Tool("run --local -e '6 * 7'").Close({0, 1, 2}).Run().exit, 6);
  EXPECT_EQ(Tool("--version").Close({0, 1, 2}).Run().exit, 6);
  Tool("run --local -e '6 * 7'").Close({2}).Succeeds("42\n");
  Tool("run --local -e", {"throw 'no'"}).Close({2}).Fails(1, "");
}

// The file is opened while a stream's number is free, and must not be written to in its place.
TEST(ClosedStreams, NoFileTakesTheNumberOfAStream) {
  const TemporaryDirectory folder;
  EXPECT_EQ(Tool("run --local", {folder.Write("script.js", "6 * 7")}).Close({0, 1, 2}).Run().exit, 6);
  EXPECT_EQ(folder.Read("script.js"), "6 * 7");
}

// NOLINTEND(misc-misleading-bidirectional)

}  // namespace
}  // namespace qv::cli
