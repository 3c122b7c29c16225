// `scriptwells run --save`: the answer is the address of a file.
#include <fstream>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using testing::FileAnswer;
using testing::Outcome;
using testing::RunTool;
using testing::ScriptAnswered;
using testing::SessionClosed;
using testing::SessionOpened;

class Save : public testing::TransferServer {
 protected:
  Outcome RunAndSave(const testing::Words& more = {}) {
    testing::Words words{"-e", "1", "--save", folder_.Path()};
    words.insert(words.end(), more.begin(), more.end());
    return RunTool(AsJoe("run", words));
  }
  // What comes of an answer that is no address.
  Outcome Refused(const std::string& type, const std::string& text) {
    Answer({SessionOpened(), ScriptAnswered(type, text), SessionClosed()});
    return RunAndSave();
  }
};

TEST_F(Save, FileIsFetchedInTheSameSession) {
  Answer(
      {SessionOpened(), ScriptAnswered("xsd:string", Url()), FileAnswer("out.txt", "text"), SessionClosed()});
  const Outcome outcome = RunAndSave();
  EXPECT_EQ(outcome.out, folder_.Path() + "/out.txt\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.exit, 0);
  EXPECT_EQ(Read(folder_.Path() + "/out.txt"), "text");
  EXPECT_TRUE(WasSent("GET /f?t=1 HTTP/1.1\r\n"));
  EXPECT_TRUE(WasSent("\r\nusid: u1\r\n"));
}

TEST_F(Save, PathAndSizeAsJson) {
  Answer(
      {SessionOpened(), ScriptAnswered("xsd:string", Url()), FileAnswer("out.txt", "text"), SessionClosed()});
  EXPECT_EQ(RunAndSave({"-o", "json"}).out, "{\"path\":\"" + folder_.Path() + "/out.txt\",\"bytes\":4}\n");
}

TEST_F(Save, AnswerThatIsNoAddressIsNotUnderstood) {
  const Outcome text = Refused("xsd:string", "done");
  EXPECT_EQ(text.out, "");
  EXPECT_EQ(
      text.err,
      "scriptwells: answer not understood: the answer is no address of a file: URL 'done' does not begin "
      "with http:// or https://\n");
  EXPECT_EQ(text.exit, 7);
  const Outcome number = Refused("xsd:int", "7");
  EXPECT_EQ(number.err,
            "scriptwells: answer not understood: the answer is no address of a file: its type is int\n");
  EXPECT_EQ(number.exit, 7);
  EXPECT_EQ(Count(), 0);
}

TEST_F(Save, NothingIsReplacedOrHiddenUnlessForced) {
  for (const std::string name : {"out.txt", ".bashrc"}) {
    std::ofstream(folder_.Path() + "/out.txt") << "old";
    Answer({SessionOpened(), ScriptAnswered("xsd:string", Url()), FileAnswer(name, "text")});
    Answer({SessionClosed()});
    const Outcome refused = RunAndSave();
    EXPECT_NE(refused.err.find("(--force "), std::string::npos) << refused.err;
    EXPECT_EQ(refused.exit, name == "out.txt" ? 6 : 7);
    EXPECT_EQ(Read(folder_.Path() + "/out.txt"), "old");
    Answer({SessionOpened(), ScriptAnswered("xsd:string", Url()), FileAnswer(name, "text"), SessionClosed()});
    EXPECT_EQ(RunAndSave({"--force"}).out, folder_.Path() + "/" + name + "\n");
    EXPECT_EQ(Read(folder_.Path() + "/" + name), "text");
  }
}

TEST_F(Save, OtherHostIsWarnedOf) {
  const std::string other = "http://localhost:" + std::to_string(server_.Port());
  Answer({SessionOpened(), ScriptAnswered("xsd:string", other + "/f"), SessionClosed()});
  Answer({FileAnswer("out.txt", "text")});
  const Outcome outcome = RunAndSave();
  EXPECT_EQ(outcome.out, folder_.Path() + "/out.txt\n");
  EXPECT_EQ(outcome.err,
            "scriptwells: warning: the session's id goes to " + other + ", where the file lies\n");
  EXPECT_EQ(outcome.exit, 0);
}

TEST_F(Save, DirectoryIsCheckedBeforeTheScriptRuns) {
  const Outcome outcome = RunTool(AsJoe("run", {"-e", "1", "--save", "/nonexistent/d"}));
  EXPECT_EQ(outcome.err, "scriptwells: cannot save into /nonexistent/d: No such file or directory\n");
  EXPECT_EQ(outcome.exit, 6);
  EXPECT_EQ(server_.Connections(), 0u);
}

}  // namespace
}  // namespace qv::cli
