// `scriptwells run-document`, with its own service and with one in another process.
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "tests/tools/fresh_directory.h"
#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::RunTool;
using testing::ServeProcess;
using testing::Words;

constexpr char kStart[] =
    "<Scriptwell Language=\"JavaScript\" "
    "xmlns=\"" QV_NAMESPACE_HOST "/dev/ns/scriptwellsApp/scriptwell/1.0\"><Code>";
constexpr char kEnd[] = "</Code></Scriptwell>";

class RunDocument : public ::testing::Test {
 protected:
  std::string Write(const std::string& name, const std::string& content) {
    const std::string path = folder_.Path() + "/" + name;
    std::ofstream(path, std::ios::binary) << content;
    return path;
  }
  std::string WriteCode(const std::string& name, const std::string& code) {
    return Write(name, kStart + code + kEnd);
  }
  static Outcome Local(const std::string& file, const Words& more = {}) {
    Words words{"run-document", "--local", file};
    words.insert(words.end(), more.begin(), more.end());
    return RunTool(words);
  }
  testing::FreshDirectory folder_;
};

TEST_F(RunDocument, AnswerIsPrintedInEveryFormat) {
  const std::string file = WriteCode("sum.xml", "parameters.a + parameters.b");
  const Words parameters{"-p", "a=int:2", "-p", "b=int:40"};
  const Outcome text = Local(file, parameters);
  EXPECT_EQ(text.out, "42\n");
  EXPECT_EQ(text.err, "");
  EXPECT_EQ(text.exit, 0);
  EXPECT_EQ(Local(file, {"-p", "a=int:2", "-p", "b=int:40", "--json"}).out,
            "{\"type\":\"int\",\"value\":42,\"tag\":22}\n");
  EXPECT_EQ(Local(file, {"-p", "a=int:2", "-p", "b=int:40", "-o", "table"}).out,
            "NAME   TYPE VALUE\nanswer int  42\n");
}

TEST_F(RunDocument, DocumentIsReadAsXml) {
  EXPECT_EQ(Local(WriteCode("a.xml", "'a &lt; b &amp;&amp; ' + &quot;c&quot;")).out, "a < b && c\n");
  EXPECT_EQ(Local(WriteCode("b.xml", "<![CDATA[1 < 2 && 'yes']]>")).out, "yes\n");
  EXPECT_EQ(
      Local(Write("c.xml", std::string("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<!-- a -->\n") +
                               kStart + "'caf\xE9'" + kEnd))
          .out,
      "caf\xC3\xA9\n");
}

TEST_F(RunDocument, NameOfTheFileMayHoldOddCharacters) {
  for (const char* name : {"a b.xml", "100%41.xml", "ab:c.xml", "c:x.xml", "caf\xC3\xA9.xml", "-",
                           "file:a.xml", "a#b.xml", "a?.xml"})
    EXPECT_EQ(Local(WriteCode(name, "'" + std::string(name) + "'")).out, std::string(name) + "\n");
}

TEST_F(RunDocument, DocumentThatIsNotWellFormedIsALocalFailure) {
  for (const char* content :
       {"<a", "6 * 7", "<a></b>", "<a/><b/>", "<a>&nothing;</a>", "\xFF\xFE",
        "<?xml version=\"1.0\" encoding=\"none-such\"?><a/>", "<!DOCTYPE a SYSTEM \"missing.dtd\"><a/>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM \"missing.txt\">]><a>&e;</a>"}) {
    const std::string file = Write("bad.xml", content);
    const Outcome outcome = Local(file);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(
        outcome.err,
        "scriptwells: cannot read the script document " + file +
            " as XML (not well-formed, an unknown encoding, or a part of it that cannot be opened), or a "
            "parameter has no form on the wire\n")
        << content;
    EXPECT_EQ(outcome.exit, 6) << content;
  }
}

TEST_F(RunDocument, DocumentOfAnotherKindIsAFaultOfTheServer) {
  const Outcome outcome = Local(Write("other.xml", "<other/>"));
  EXPECT_EQ(outcome.exit, 1);
  EXPECT_EQ(outcome.err.rfind("scriptwells: script fault 0x800403EE (1006): ", 0), 0u) << outcome.err;
}

TEST_F(RunDocument, FaultOfTheScriptIsTold) {
  const Outcome outcome = Local(WriteCode("a.xml", "throw new ScriptError(5, 'no such customer')"));
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "scriptwells: script fault 0x80040005 (5): no such customer\n");
  EXPECT_EQ(outcome.exit, 1);
}

TEST_F(RunDocument, StandardInputIsAUsageFailure) {
  const Outcome outcome = Local("-");
  EXPECT_EQ(outcome.err,
            "scriptwells: a script document is read by its name and cannot come from standard input; "
            "try 'scriptwells run-document --help'\n");
  EXPECT_EQ(outcome.exit, 2);
}

// A user that a server has, and files that it never hears of.
TEST_F(RunDocument, NothingIsAskedWhenTheFileIsWrong) {
  ServeProcess service;
  const auto there = [&service](const std::string& file) {
    return RunTool({"run-document", file, "--server", service.Url(), "--user", "joe"});
  };
  const Outcome missing = there(folder_.Path() + "/missing.xml");
  EXPECT_EQ(missing.err, "scriptwells: cannot read the script document " + folder_.Path() +
                             "/missing.xml: No such file or directory\n");
  EXPECT_EQ(missing.exit, 6);
  const Outcome directory = there(folder_.Path());
  EXPECT_EQ(directory.err,
            "scriptwells: cannot read the script document " + folder_.Path() + ": Is a directory\n");
  EXPECT_EQ(directory.exit, 6);
  EXPECT_EQ(there(Write("empty.xml", "")).exit, 6);
  EXPECT_EQ(service.Count("CreateUserSession"), 0);
}

TEST_F(RunDocument, SessionIsClosedOnEveryWayOut) {
  ServeProcess service;
  const auto there = [&service](const std::string& file) {
    return RunTool({"run-document", file, "--server", service.Url(), "--user", "joe"});
  };
  EXPECT_EQ(there(WriteCode("good.xml", "6 * 7")).out, "42\n");
  EXPECT_EQ(there(Write("bad.xml", "<a")).exit, 6);
  EXPECT_EQ(service.Count("CreateUserSession"), 2);
  EXPECT_EQ(service.Count("CloseUserSession"), 2);
  EXPECT_EQ(service.Count("openSessions"), 0);
}

TEST_F(RunDocument, PipeAsAPartIsRefusedAndNotWaitedFor) {
  ASSERT_EQ(::mkfifo((folder_.Path() + "/part").c_str(), 0600), 0);
  const std::string file = Write("a.xml", "<!DOCTYPE a [<!ENTITY e SYSTEM \"part\">]><a>&e;</a>");
  const Outcome outcome = Local(file);
  EXPECT_NE(outcome.err.find("cannot read the script document " + file), std::string::npos) << outcome.err;
  EXPECT_EQ(outcome.exit, 6);
}

TEST_F(RunDocument, InterruptOfItsScriptClosesTheSessionAndLeaves) {
  ServeProcess service;
  testing::Process process(
      {"run-document", WriteCode("a.xml", "while (true) {}"), "--server", service.Url(), "--user", "joe"});
  for (int i = 0; i < 400 && service.Count("Execute") == 0; ++i)
    std::this_thread::sleep_for(std::chrono::milliseconds(25));
  process.Signal(SIGINT);
  const Outcome outcome = process.Finish();
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "scriptwells: interrupted\n");
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_EQ(service.Count("CloseUserSession"), 1);
}

TEST_F(RunDocument, ScriptThatLooksLikeADocumentIsHintedAt) {
  const Outcome outcome = RunTool({"run", "--local", WriteCode("a.xml", "1")});
  EXPECT_EQ(outcome.err.rfind("scriptwells: note: this looks like a script document, which scriptwells "
                              "run-document runs\nscriptwells: script fault ",
                              0),
            0u)
      << outcome.err;
  EXPECT_EQ(outcome.exit, 1);
}

}  // namespace
}  // namespace qv::cli
