// File parameters that are uploaded before the call, and what the library needs for that.
#include <filesystem>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;

class Upload : public TransferServer {
 protected:
  void SetUp() override { NameHome(home_); }
  void NameHome(const std::string& home) const {
    folder_.Write("registry.reg",
                  "[HKEY_LOCAL_MACHINE\\SOFTWARE\\Quorvane\\Quorvane\\HomeDir]\n@=\"" + home + "\"\n");
  }
  Tool Command(const std::string& script = "-e 1", const std::string& options = "") const {
    return Joe("run " + script + " -p doc=file:" + file_ + " " + options)
        .Set("QV_REGISTRY", folder_.Path("registry.reg"));
  }
  // The answer of the upload script.
  std::string Address() const { return ScriptAnswered("xsd:string", Origin() + "/up?ticket=t7"); }
  // A call whose upload is answered with this status.
  void AnswerUpload(const std::string& status) {
    AnswerCalls({Address(), StatusAnswer(status), ScriptAnswered("xsd:string", "done")});
  }
  void ExpectNothingSent() const { EXPECT_EQ(server_.Connections(), 0U); }

  std::string home_ = folder_.Path("home");
  std::string script_ =
      folder_.Write("home/ClientScripts/UploadScript.xml",
                    "<Scriptwell Language=\"JavaScript\"><Code>where()</Code></Scriptwell>");
  std::string file_ = folder_.Write("a.txt", "content");
};

TEST_F(Upload, FileIsSentBeforeTheCall) {
  AnswerUpload("200 OK");
  Command().Succeeds("done\n");
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

TEST_F(Upload, RefusedUploadGetsAWarning) {
  AnswerUpload("403 Forbidden");
  Command().Succeeds("done\n",
                     "warning: " + Origin() + " answered the upload of " + file_ + " with the status 403");
  AnswerCalls({ScriptAnswered("xsd:string", "nowhere")});
  Command().Fails(7,
                  "answer not understood: Cannot parse url, expecting 'http://' after protocol name. (the "
                  "server's upload script gave no address to upload to)");
  AnswerCalls({ScriptAnswered("xsd:string", "done")});
  EXPECT_EQ(Joe("run -e 1 -p a=int:1").Run().out, "done\n");
}

TEST_F(Upload, UnusableHomeIsExplainedBeforeAnythingIsSent) {
  Joe("run -e 1 -p doc=file:" + file_)
      .Fails(6,
             "a file cannot be uploaded, since no home directory is known: 'scriptwells registry set home "
             "DIR', and "
             "put the server's upload scripts into DIR/ClientScripts");
  std::filesystem::remove(script_);
  Command().Fails(6, "cannot read the upload script " + script_ +
                         ": No such file or directory; put the server's upload scripts into " + home_ +
                         "/ClientScripts");
  NameHome("/tmp/a:b");
  Command().Fails(
      6, "the home directory /tmp/a:b holds '#', '?', ':' or '\\', below which the library finds no scripts");
  ExpectNothingSent();
}

// The script comes late, so that the file can be removed after it was checked.
TEST_F(Upload, FileThatIsRemovedIsALocalFailure) {
  AnswerCalls({});
  Process process(Command("-", "-p n=double:3.14159265"));
  EXPECT_EQ(process.ReadErrorLine(), "scriptwells: note: parameter 'n' travels with 6 significant digits");
  std::filesystem::remove(file_);
  process.Finish("1").Fails(6, "cannot read the file " + file_ + ": No such file or directory");
  EXPECT_TRUE(WasClosed());
}

// The server stops reading, with more to send than a connection holds.
TEST_F(Upload, InterruptOnATerminalStopsItAndClosesTheSession) {
  folder_.Write("a.txt", std::string(std::size_t{32} << 20, 'x'));
  server_.Expect(test::RawScript()
                     .ReadRequest()
                     .Write(SessionOpened())
                     .ReadRequest()
                     .Write(Address())
                     .ReadBytes(1000)
                     .Stall());
  Answer({SessionClosed()});
  const Outcome outcome = Command().OnTerminal("of 33.6 MB", "\x03");
  EXPECT_EQ(outcome.exit, 130);
  for (const char* part : {"\ra.txt  ", "\r\x1b[Kscriptwells: interrupted\r\n"})
    EXPECT_TRUE(Holds(outcome.out, part)) << outcome.out;
  EXPECT_TRUE(WasSent("POST /up?ticket=t7 HTTP/1.1\r\n"));
  EXPECT_TRUE(WasClosed());
}

}  // namespace
}  // namespace qv::cli
