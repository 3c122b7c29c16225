// `--record`, `--replay` and `tape`.
#include <sys/stat.h>

#include "tests/tools/transfer_server.h"

namespace qv::cli {
namespace {

using namespace testing;

class Tapes : public TransferServer {
 protected:
  std::string tape_ = folder_.Path("a.tape");
  std::string record_ = " --record " + tape_;
  std::string replay_ = " --replay " + tape_;
};

TEST_F(Tapes, RunIsPlayedWithoutAServer) {
  AnswerCalls({ScriptAnswered("xsd:int", "42")});
  Joe("run -e '6 * 7' -p a=int:1" + record_).Succeeds("42\n");
  const std::size_t connections = server_.Connections();
  Joe("run -e '6 * 7' -p a=int:1" + replay_).Succeeds("42\n");
  Tool("run -e '6 * 7' -p a=int:1 --user joe" + replay_).Succeeds("42\n");
  Tool("run -e '6 * 7' -p a=int:1 --user joe").Set("SCRIPTWELLS_REPLAY", tape_).Succeeds("42\n");
  EXPECT_EQ(server_.Connections(), connections);
  const Outcome other = Tool("run -e '6 * 8' -p a=int:1 --user joe" + replay_).Run();
  EXPECT_EQ(other.exit, 6);
  EXPECT_EQ(other.out, "");
  EXPECT_TRUE(Holds(other.err, "the request (execute) is not on the tape " + tape_)) << other.err;
  EXPECT_TRUE(Holds(other.err, "6 * 8")) << other.err;
}

TEST_F(Tapes, SeveralCommandsShareOne) {
  const auto commands = [this](const std::string& tape) {
    const std::string id = Joe("session open" + tape).Run().out;
    Tool("run -e 1 --usid " + id.substr(0, id.find('\n')) + " --server " + Origin() + tape).Succeeds("1\n");
    Adopted("--force" + tape).Succeeds(folder_.Path("out.txt\n"));
    Tool("session close --usid u1 --server " + Origin() + tape).Succeeds("");
  };
  for (const std::string& answer :
       {SessionOpened(), ScriptAnswered("xsd:int", "1"), FileAnswer("out.txt", "text"), SessionClosed()})
    Answer({answer});
  commands(record_);
  commands(replay_);
  EXPECT_EQ(server_.Connections(), 4U);
  EXPECT_EQ(folder_.Read("out.txt"), "text");
}

TEST_F(Tapes, LocalRunsArePlayedWithoutAService) {
  const std::string sent = folder_.Write("notes.txt", "to be sent");
  const std::string line =
      "run --local -e 'publish(\"out.txt\", parameters.doc.text())' -p doc=file:" + sent +
      " --force --save " + folder_.Path();
  Tool(line + record_).Succeeds(folder_.Path("out.txt\n"));
  EXPECT_EQ(folder_.Read("out.txt"), "to be sent");
  folder_.Write("out.txt", "");
  Tool(line + replay_).Succeeds(folder_.Path("out.txt\n"));
  EXPECT_EQ(folder_.Read("out.txt"), "to be sent");
}

TEST_F(Tapes, AreCreatedForTheirOwnerAndReplaceNothing) {
  AnswerCalls({ScriptAnswered("xsd:int", "42")});
  Joe("run -e 1" + record_).Succeeds("42\n");
  struct stat facts = {};
  ASSERT_EQ(::stat(tape_.c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777, 0600U);
  const std::string notes = folder_.Write("notes.txt", "precious notes of a long line\n");
  Joe("run -e 1 --record " + notes)
      .Fails(6, "cannot write the tape " + notes + ": the file is there already and is no tape");
  EXPECT_EQ(folder_.Read("notes.txt"), "precious notes of a long line\n");
  Joe("run -e 1 --replay /none").Fails(6, "cannot read the tape /none: No such file or directory");
}

TEST_F(Tapes, AreShownComparedAndVerified) {
  AnswerCalls({ScriptAnswered("xsd:int", "42")});
  Joe("run -e '6 * 7'" + record_).Succeeds("42\n");
  const Outcome shown = RunTool("tape show " + tape_);
  EXPECT_EQ(shown.exit, 0);
  EXPECT_TRUE(Holds(shown.out, "\n  script = \"6 * 7\"\n  = int 42\n")) << shown.out;
  RunTool("tape verify " + tape_ + " " + tape_).Succeeds("");
  RunTool("tape diff " + tape_ + " " + tape_).Succeeds("");
  std::string edited = folder_.Read("a.tape");
  edited.replace(edited.find("  = int 42"), 10, "  = int 43");
  const std::string other = folder_.Write("b.tape", edited);
  const Outcome verified = RunTool("tape verify " + tape_ + " " + other);
  EXPECT_EQ(verified.exit, 1);
  EXPECT_TRUE(Holds(verified.out, other + ", line ")) << verified.out;
  EXPECT_TRUE(Holds(verified.out, "the value is not that of the answer\n")) << verified.out;
  edited.replace(edited.find(">42<"), 4, ">43<");
  folder_.Write("b.tape", edited);
  const Outcome differs = RunTool("tape diff " + tape_ + " " + other);
  EXPECT_EQ(differs.exit, 1);
  EXPECT_TRUE(Holds(differs.out, "\n- <r xsi:type=\"xsd:int\">42</r>")) << differs.out;
  RunTool("tape show " + folder_.Write("c.tape", "hello\n"))
      .Fails(6, "cannot read the tape " + folder_.Path("c.tape") + ", line 1: not a tape");
}

}  // namespace
}  // namespace qv::cli
