// Types every command of the documents, in their order, as a user with an empty home. In the documents this
// is the user joe, whose checkout is /home/joe/scriptwells.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>

#include "tests/documents/markdown.h"
#include "tests/documents/typing.h"

namespace qv::documents {
namespace {

class Commands : public ::testing::TestWithParam<std::string> {};

std::vector<std::string> DocumentsWithCommands() {
  std::vector<std::string> documents;
  for (const std::string& document : Documents())
    if (!CommandsOf(ReadFile(std::string(QV_SOURCE_DIR) + "/" + document)).empty())
      documents.push_back(document);
  return documents;
}

// Whose commands are tested with a tape, too.
const std::string kTaped[] = {"README.md", "docs/tapes.md", "tools/README.md"};

UsedTapes RecordedTapeOf(const std::string& document) {
  const bool isTaped = std::find(std::begin(kTaped), std::end(kTaped), document) != std::end(kTaped);
  return isTaped ? RecordedTape(document) : UsedTapes();
}

TEST_P(Commands, DoWhatTheDocumentSays) {
  Typist typist(RecordedTapeOf(GetParam()));
  const std::vector<Command> commands = CommandsOf(ReadFile(std::string(QV_SOURCE_DIR) + "/" + GetParam()));
  const std::vector<Typed> typed = typist.Type(commands);
  ASSERT_EQ(typed.size(), commands.size());
  for (std::size_t i = 0; i < typed.size(); ++i) {
    const std::string where = GetParam() + ":" + std::to_string(commands[i].line) + ": " + commands[i].text;
    EXPECT_TRUE(Agrees(commands[i], typed[i])) << where << "\nprinted:\n"
                                               << typed[i].output << "exit " << typed[i].exit;
  }
  EXPECT_EQ(typist.ProcessesLeft(), 0) << "processes are left";
  EXPECT_EQ(typist.TemporaryFilesLeft(), "") << "files are left";
}

INSTANTIATE_TEST_SUITE_P(Documents, Commands, ::testing::ValuesIn(DocumentsWithCommands()), TestName);

// The same commands, answered by a tape: no service runs, and the machine has no network.
class CommandsOnTape : public ::testing::TestWithParam<std::string> {};

TEST_P(CommandsOnTape, DoTheSame) {
  Typist typist({{}, TapeOf(GetParam())});
  const std::vector<Command> commands = CommandsOf(ReadFile(std::string(QV_SOURCE_DIR) + "/" + GetParam()));
  const std::vector<Typed> typed = typist.Type(commands);
  ASSERT_EQ(typed.size(), commands.size());
  int calls = 0;
  for (std::size_t i = 0; i < typed.size(); ++i) {
    if (IsInBackground(commands[i].text)) continue;
    calls += commands[i].text.find("scriptwells run") != std::string::npos ? 1 : 0;
    EXPECT_TRUE(Agrees(commands[i], typed[i])) << commands[i].text << "\nprinted:\n"
                                               << typed[i].output << "exit " << typed[i].exit;
  }
  EXPECT_GE(calls, 3);
  EXPECT_EQ(typist.ProcessesLeft(), 0) << "processes are left";
  EXPECT_EQ(typist.TemporaryFilesLeft(), "") << "files are left";
}

INSTANTIATE_TEST_SUITE_P(Documents, CommandsOnTape, ::testing::ValuesIn(kTaped), TestName);

TEST(CommandsOnATape, HaveNoNetwork) {
  Typist typist({{}, TapeOf("README.md")});
  const std::vector<Typed> typed = typist.Type({{0, ": < /dev/tcp/127.0.0.1/8080", {}}});
  EXPECT_NE(typed.at(0).output.find("Network is unreachable"), std::string::npos) << typed.at(0).output;
}

// Whether a document with this block is correct.
bool IsTrue(const std::string& block) {
  const std::vector<Command> commands = CommandsOf("```\n" + block + "```\n");
  Typist typist;
  const std::vector<Typed> typed = typist.Type(commands);
  for (std::size_t i = 0; i < commands.size(); ++i)
    if (i >= typed.size() || !Agrees(commands[i], typed[i])) return false;
  return typist.ProcessesLeft() == 0;
}

TEST(CommandsOfADocument, AreHeldToWhatTheyPrint) {
  const struct {
    const char* block;
    bool isTrue;
  } rows[] = {
      {"$ echo a; echo b >&2\na\nb\n", true},
      {"$ echo a\nb\n", false},
      {"$ echo a; echo b\na\n", false},
      {"$ true\na\n", false},
      {"$ echo a1b\na...b\n", true},
      {"$ echo a1c\na...b\n", false},
      // Where nothing is printed they have to succeed.
      {"$ true\n", true},
      {"$ false\n", false},
      {"$ scriptwells --version\n", false},  // not in the PATH
      // They know one another.
      {"$ cd tools && export A=b\n$ basename $PWD; echo $A\ntools\nb\n", true},
      {"$ echo $HOME $PWD\n/home/joe /home/joe/scriptwells\n", true},
      // In the background they run until the end.
      {"$ bash -c 'echo note; echo http://127.0.0.1:8080; exec sleep 1000' &\nhttp://127.0.0.1:8080\n", true},
      {"$ echo x &\nready\n", false},
      {"$ echo x &\n", false},
  };
  for (const auto& row : rows) EXPECT_EQ(IsTrue(row.block), row.isTrue) << row.block;
}

}  // namespace
}  // namespace qv::documents
