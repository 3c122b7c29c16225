// File parameters on their way to a server that answers as the test says.
#include <filesystem>
#include <fstream>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using testing::Outcome;
using testing::Process;
using testing::RunTool;
using testing::ScriptAnswered;
using testing::SessionClosed;
using testing::SessionOpened;
using testing::StatusAnswer;
using testing::Words;

class Upload : public testing::TransferServer {
 protected:
  static void Write(const std::string& path, const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << content;
  }
  void SetUp() override {
    Write(registry_, "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" + home_ + "\"\n");
    Write(script_, "<Scriptwell Language=\"JavaScript\"><Code>where()</Code></Scriptwell>");
    Write(file_, "content");
  }
  Words Command(const std::string& code = "1") const {
    return AsJoe("run", {"-e", code, "-p", "doc=file:" + file_});
  }
  Outcome Run(const Words& words) const { return RunTool(words, "", {{"QV_REGISTRY", registry_}}); }
  std::string Address() const { return Origin() + "/up?ticket=t7"; }

  std::string registry_ = folder_.Path() + "/registry.reg";
  std::string home_ = folder_.Path() + "/home";
  std::string script_ = home_ + "/ClientScripts/UploadScript.xml";
  std::string file_ = folder_.Path() + "/a.txt";
};

TEST_F(Upload, FileGoesToTheServerBeforeTheCall) {
  Answer({SessionOpened(), ScriptAnswered("xsd:string", Address()), StatusAnswer("200 OK"),
          ScriptAnswered("xsd:string", "done"), SessionClosed()});
  const Outcome outcome = Run(Command());
  EXPECT_EQ(outcome.out, "done\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
  const std::string sent = server_.AllReceived();
  const std::size_t asked = sent.find("where()");
  const std::size_t posted = sent.find("POST /up?ticket=t7 HTTP/1.1\r\n");
  const std::size_t called = sent.find("<Id xsi:type=\"string\">t7</Id>");
  EXPECT_NE(asked, std::string::npos);
  EXPECT_LT(asked, posted);
  EXPECT_LT(posted, called);
  EXPECT_NE(called, std::string::npos);
  EXPECT_TRUE(WasSent("\r\n\r\ncontent"));
}

TEST_F(Upload, RefusedUploadIsWarnedOf) {
  Answer({SessionOpened(), ScriptAnswered("xsd:string", Address()), StatusAnswer("403 Forbidden"),
          ScriptAnswered("xsd:string", "done"), SessionClosed()});
  const Outcome outcome = Run(Command());
  EXPECT_EQ(outcome.out, "done\n");
  EXPECT_EQ(outcome.err, "scriptwells: warning: " + Origin() + " answered the upload of " + file_ +
                             " with the status 403\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST_F(Upload, UnknownHomeIsExplainedBeforeTheServerIsAsked) {
  const Outcome outcome = RunTool(Command());
  EXPECT_EQ(outcome.err,
            "scriptwells: a file cannot be uploaded, since no home directory is known: 'scriptwells registry "
            "set home DIR', and put the server's upload scripts into DIR/ClientScripts\n");
  EXPECT_EQ(outcome.exit, 6);
  EXPECT_EQ(server_.Connections(), 0u);
}

TEST_F(Upload, MissingScriptIsExplainedBeforeTheServerIsAsked) {
  std::filesystem::remove(script_);
  const Outcome outcome = Run(Command());
  EXPECT_EQ(outcome.err, "scriptwells: cannot read the upload script " + script_ +
                             ": No such file or directory; put the server's upload scripts into " + home_ +
                             "/ClientScripts\n");
  EXPECT_EQ(outcome.exit, 6);
  EXPECT_EQ(server_.Connections(), 0u);
}

TEST_F(Upload, HomeThatTheLibraryCannotReadIsExplained) {
  Write(registry_, "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"/tmp/a:b\"\n");
  EXPECT_EQ(Run(Command()).err,
            "scriptwells: the home directory /tmp/a:b holds '#', '?', ':' or '\\', below which the library "
            "finds no scripts\n");
}

TEST_F(Upload, OtherParametersNeedNoHome) {
  Answer({SessionOpened(), ScriptAnswered("xsd:string", "done"), SessionClosed()});
  EXPECT_EQ(RunTool(AsJoe("run", {"-e", "1", "-p", "a=int:1"})).out, "done\n");
}

TEST_F(Upload, ScriptThatGivesNoAddressIsExplained) {
  Answer({SessionOpened(), ScriptAnswered("xsd:string", "nowhere"), SessionClosed()});
  const Outcome outcome = Run(Command());
  EXPECT_EQ(outcome.err,
            "scriptwells: answer not understood: Cannot parse url, expecting 'http://' after protocol name. "
            "(the server's upload script gave no address to upload to)\n");
  EXPECT_EQ(outcome.exit, 7);
}

// The script comes late, so that the file can go after it was looked at.
TEST_F(Upload, FileThatVanishesIsALocalFailure) {
  Answer({SessionOpened(), ScriptAnswered("xsd:string", Address()), SessionClosed()});
  Answer({SessionClosed()});
  Process process(AsJoe("run", {"-", "-p", "doc=file:" + file_, "-p", "n=double:3.14159265"}),
                  {{"QV_REGISTRY", registry_}});
  EXPECT_EQ(process.ReadErrorLine(), "scriptwells: note: parameter 'n' travels with 6 significant digits");
  std::filesystem::remove(file_);
  const Outcome outcome = process.Finish("1");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err,
            "scriptwells: the upload failed: Couldn't open file " + file_ + ": No such file or directory\n");
  EXPECT_EQ(outcome.exit, 6);
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

// The server stops reading, with more on its way than a connection holds.
TEST_F(Upload, InterruptOnATerminalStopsItAndClosesTheSession) {
  Write(file_, std::string(std::size_t{32} << 20, 'x'));
  server_.Expect(test::RawScript()
                     .ReadRequest()
                     .Write(SessionOpened())
                     .ReadRequest()
                     .Write(ScriptAnswered("xsd:string", Address()))
                     .ReadBytes(1000)
                     .Stall());
  Answer({SessionClosed()});
  const Outcome outcome = testing::RunOnTerminal(Command(), "of 33.6 MB", "\x03",
                                                 {{"QV_REGISTRY", registry_}, {"SCRIPTWELLS_PASSWORD", "x"}});
  EXPECT_EQ(outcome.exit, 130);
  EXPECT_NE(outcome.out.find("\ra.txt  "), std::string::npos) << outcome.out;
  EXPECT_NE(outcome.out.find("\r\x1b[Kscriptwells: interrupted\r\n"), std::string::npos) << outcome.out;
  EXPECT_TRUE(WasSent("POST /up?ticket=t7 HTTP/1.1\r\n"));
  EXPECT_TRUE(WasSent("#CloseUserSession\r\n"));
}

}  // namespace
}  // namespace qv::cli
