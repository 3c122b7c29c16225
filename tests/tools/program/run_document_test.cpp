// `scriptwells run-document`, with the service inside the program and with another one.
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;

class RunDocument : public ::testing::Test {
 protected:
  static std::string WithCode(const std::string& code) {
    return R"(<Scriptwell Language="JavaScript" xmlns=")" QV_NAMESPACE_HOST
           "/dev/ns/scriptwellsApp/scriptwell/1.0\"><Code>" +
           code + "</Code></Scriptwell>";
  }
  std::string Write(const std::string& content) const { return folder_.Write("a.xml", content); }
  std::string WriteCode(const std::string& code) const { return Write(WithCode(code)); }
  static Outcome Local(const std::string& file, const std::string& options = "") {
    return RunTool("run-document --local " + options, {file});
  }
  // Runs a document with this code.
  Outcome Eval(const std::string& code, const std::string& options = "") const {
    return Local(WriteCode(code), options);
  }
  static void ExpectUnreadable(const std::string& file) {
    Local(file).Fails(
        6, "cannot read the script document " + file +
               " as XML (not well-formed, an unknown encoding, or a part of it that cannot be opened), "
               "or a parameter has no form on the wire");
  }

  TemporaryDirectory folder_;
};

TEST_F(RunDocument, AnswerIsPrintedInEveryFormat) {
  const std::string code = "parameters.a + parameters.b";
  const std::string parameters = "-p a=int:2 -p b=int:40 ";
  Eval(code, parameters).Succeeds("42\n");
  EXPECT_EQ(Eval(code, parameters + "--json").out, "{\"type\":\"int\",\"value\":42,\"tag\":22}\n");
  EXPECT_EQ(Eval(code, parameters + "-o table").out, "NAME   TYPE VALUE\nanswer int  42\n");
  EXPECT_EQ(Eval("'a &lt; b &amp;&amp; ' + &quot;c&quot;").out, "a < b && c\n");
  EXPECT_EQ(Eval("<![CDATA[1 < 2 && 'yes']]>").out, "yes\n");
  EXPECT_EQ(
      Local(Write("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n<!-- a -->\n" + WithCode("'caf\xE9'")))
          .out,
      "caf\xC3\xA9\n");
}

TEST_F(RunDocument, FileMayHaveAnyName) {
  for (const std::string name : {"a b.xml", "100%41.xml", "ab:c.xml", "c:x.xml", "caf\xC3\xA9.xml", "-",
                                 "file:a.xml", "a#b.xml", "a?.xml"})
    EXPECT_EQ(Local(folder_.Write(name, WithCode("'" + name + "'"))).out, name + "\n");
}

TEST_F(RunDocument, UnreadableDocumentIsALocalFailure) {
  for (const char* content :
       {"<a", "6 * 7", "<a></b>", "<a/><b/>", "<a>&nothing;</a>", "\xFF\xFE",
        R"(<?xml version="1.0" encoding="none-such"?><a/>)", "<!DOCTYPE a SYSTEM \"missing.dtd\"><a/>",
        "<!DOCTYPE a [<!ENTITY e SYSTEM \"missing.txt\">]><a>&e;</a>"})
    ExpectUnreadable(Write(content));
  ASSERT_EQ(::mkfifo(folder_.Path("part").c_str(), 0600), 0);
  ExpectUnreadable(Write("<!DOCTYPE a [<!ENTITY e SYSTEM \"part\">]><a>&e;</a>"));
}

TEST_F(RunDocument, FaultsAreReported) {
  Local(Write("<other/>")).FailsLike(1, "script fault 0x800403EE (1006): ");
  Eval("throw new ScriptError(5, 'no such customer')")
      .Fails(1, "script fault 0x80040005 (5): no such customer");
  Local("-").Fails(
      2,
      "a script document is read by its name and cannot come from standard input; try 'scriptwells "
      "run-document --help'");
}

TEST_F(RunDocument, NothingIsSentIfTheFileIsWrong) {
  const ServeProcess service;
  const std::string start = "cannot read the script document " + folder_.Path();
  service.Joe("run-document " + folder_.Path("missing.xml"))
      .Fails(6, start + "/missing.xml: No such file or directory");
  service.Joe("run-document " + folder_.Path()).Fails(6, start + ": Is a directory");
  EXPECT_EQ(service.Joe("run-document " + Write("")).Run().exit, 6);
  EXPECT_EQ(service.Count("CreateUserSession"), 0);
}

TEST_F(RunDocument, SessionIsAlwaysClosed) {
  const ServeProcess service;
  EXPECT_EQ(service.Joe("run-document " + WriteCode("6 * 7")).Run().out, "42\n");
  EXPECT_EQ(service.Joe("run-document " + Write("<a")).Run().exit, 6);
  EXPECT_EQ(service.Count("CreateUserSession"), 2);
  EXPECT_EQ(service.Count("CloseUserSession"), 2);
  EXPECT_EQ(service.Count("openSessions"), 0);
}

TEST_F(RunDocument, InterruptClosesTheSession) {
  const ServeProcess service;
  Process process(service.Joe("run-document " + WriteCode("while (true) {}")));
  service.Reaches("Execute", 1);
  process.Signal(SIGINT);
  process.Finish().Fails(130, "interrupted");
  EXPECT_EQ(service.Count("CloseUserSession"), 1);
}

TEST_F(RunDocument, RunSuggestsIt) {
  RunTool("run --local", {WriteCode("1")})
      .FailsLike(
          1,
          "note: this looks like a script document, which scriptwells run-document runs\nscriptwells: script "
          "fault ");
}

}  // namespace
}  // namespace qv::cli
