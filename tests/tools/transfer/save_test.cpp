// `scriptwells run --save`: the answer is the address of a file.
#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;

class Save : public TransferServer {
 protected:
  // A run whose script answers with the URL, and a file of this name.
  Outcome Saved(const std::string& name, const std::string& options = "") {
    AnswerCalls({ScriptAnswered("xsd:string", Url()), FileAnswer(name, "text")});
    return RunAndSave(options);
  }
  Outcome RunAndSave(const std::string& options = "") const {
    return Joe("run -e 1 --save " + folder_.Path() + " " + options).Run();
  }
};

TEST_F(Save, FileIsFetchedInTheSameSession) {
  Saved("out.txt").Succeeds(folder_.Path("out.txt\n"));
  EXPECT_EQ(folder_.Read("out.txt"), "text");
  EXPECT_TRUE(WasSent("GET /f?t=1 HTTP/1.1\r\n"));
  EXPECT_TRUE(WasSent("\r\nusid: u1\r\n"));
  EXPECT_EQ(Saved("out.txt", "-o json --force").out,
            "{\"path\":\"" + folder_.Path("out.txt") + "\",\"bytes\":4}\n");
}

TEST_F(Save, AnyOtherAnswerIsNotUnderstood) {
  const std::string start = "answer not understood: the answer is not the address of a file: ";
  const std::pair<std::string, std::string> rows[] = {
      {ScriptAnswered("xsd:string", "done"), "URL 'done' does not begin with http:// or https://"},
      {ScriptAnswered("xsd:int", "7"), "its type is int"}};
  for (const auto& [answer, reason] : rows) {
    AnswerCalls({answer});
    RunAndSave().Fails(7, start + reason);
  }
  EXPECT_EQ(folder_.Count(), 0);
}

TEST_F(Save, NothingIsReplacedOrHiddenWithoutForce) {
  for (const std::string name : {"out.txt", ".bashrc"}) {
    folder_.Write("out.txt", "old");
    Answer({SessionOpened(), ScriptAnswered("xsd:string", Url()), FileAnswer(name, "text")});
    Answer({SessionClosed()});
    const Outcome refused = RunAndSave();
    EXPECT_TRUE(Holds(refused.err, "(--force ")) << refused.err;
    EXPECT_EQ(refused.exit, name == "out.txt" ? 6 : 7);
    EXPECT_EQ(folder_.Read("out.txt"), "old");
    EXPECT_EQ(Saved(name, "--force").out, folder_.Path(name + "\n"));
    EXPECT_EQ(folder_.Read(name), "text");
  }
}

TEST_F(Save, DirectoryAndHostAreChecked) {
  Joe("run -e 1 --save /nonexistent/d")
      .Fails(6, "cannot save into /nonexistent/d: No such file or directory");
  EXPECT_EQ(server_.Connections(), 0U);
  const std::string other = "http://localhost:" + std::to_string(server_.Port());
  AnswerCalls({ScriptAnswered("xsd:string", other + "/f")});
  Answer({FileAnswer("out.txt", "text")});
  RunAndSave().Succeeds(folder_.Path("out.txt\n"),
                        "warning: the session's id is sent to " + other + ", which has the file");
}

}  // namespace
}  // namespace qv::cli
