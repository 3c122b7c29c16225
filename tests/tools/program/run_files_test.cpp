// Files to and from the service inside the program, and one in another process.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using namespace testing;

class RunFiles : public ::testing::Test {
 protected:
  Tool Eval(const std::string& code, const std::string& options) const {
    return Tool("run --local " + options + " -e", {code}).Set("TEMP", temp_.Path());
  }
  // A parameter with a file of this content.
  std::string File(const std::string& content, const std::string& name = "a.txt") const {
    return "-p 'doc=file:" + folder_.Write(name, content) + "' ";
  }
  void ExpectNothingLeft() const { EXPECT_EQ(temp_.Count(), 0); }

  TemporaryDirectory folder_;
  TemporaryDirectory temp_;
  TemporaryDirectory target_;
};

TEST_F(RunFiles, ScriptAndDocumentReadUploadedFiles) {
  Eval("parameters.doc.size + ' ' + parameters.doc.text()", File("W\xC3\xB6rld", "a b.txt"))
      .Succeeds("6 W\xC3\xB6rld\n");
  ExpectNothingLeft();
  Eval("[parameters.a.size, parameters.n, parameters.b.size].join()",
       "-p a=file:" + folder_.Write("1", std::string(300000, 'x')) +
           " -p n=int:7 -p b=file:" + folder_.Write("2", ""))
      .Succeeds("300000,7,0\n");
  const std::string document = folder_.Write(
      "a.xml", R"(<Scriptwell Language="JavaScript" xmlns=")" QV_NAMESPACE_HOST
               "/dev/ns/scriptwellsApp/scriptwell/1.0\"><Code>parameters.doc.size</Code></Scriptwell>");
  Tool("run-document --local " + document + " " + File("12345")).Set("TEMP", temp_.Path()).Succeeds("5\n");
  ExpectNothingLeft();
  Eval("throw new ScriptError(5, 'no such customer')", File("12345"))
      .Fails(1, "script fault 0x80040005 (5): no such customer");
  ExpectNothingLeft();
}

TEST_F(RunFiles, PublishedFileIsSaved) {
  Eval("publish('out.txt', 'W\xC3\xB6rld')", "--save " + target_.Path()).Succeeds(target_.Path("out.txt\n"));
  EXPECT_EQ(target_.Read("out.txt"), "W\xC3\xB6rld");
  EXPECT_EQ(Eval("publish('twice.txt', parameters.doc.text().repeat(2))",
                 File("line\n") + "--json --save " + target_.Path())
                .Run()
                .out,
            "{\"path\":\"" + target_.Path("twice.txt") + "\",\"bytes\":10}\n");
  EXPECT_EQ(target_.Read("twice.txt"), "line\nline\n");
  ExpectNothingLeft();
}

TEST_F(RunFiles, ServiceWithAHomeTakesUploadsOfOtherProcesses) {
  const ServeProcess service("--home " + folder_.Path("home"));
  service.Joe("run -e parameters.doc.size " + File("12345"))
      .Set("QV_REGISTRY", folder_.Path("home/serve.reg"))
      .Succeeds("5\n");
}

TEST_F(RunFiles, MissingFileIsRefusedByTheService) {
  const ServeProcess service;
  Tool("download --user joe " + service.Url() + "/Quorvane/nothing?ticket=1 " + target_.Path())
      .FailsLike(1, service.Url() + " answered the download with the status 4");
  EXPECT_EQ(service.Count("openSessions"), 0);
}

TEST_F(RunFiles, InterruptRemovesThePrivateHome) {
  Process process(Eval("while (true) {}", File("12345") + "-p n=double:3.14159265"));
  process.ReadErrorLine();
  for (int i = 0; i < 400 && temp_.Count() == 0; ++i) ::usleep(25000);
  ASSERT_NE(temp_.Count(), 0);
  process.Signal(SIGINT);
  EXPECT_EQ(process.Finish().exit, 130);
  ExpectNothingLeft();
}

}  // namespace
}  // namespace qv::cli
