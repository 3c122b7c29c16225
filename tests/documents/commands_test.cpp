// Types every command of the documents, in their order, as a user with an empty home. In the documents this
// is the user joe, whose checkout is /home/joe/scriptwells.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

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

TEST_P(Commands, DoWhatTheDocumentSays) {
  Typist typist;
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

INSTANTIATE_TEST_SUITE_P(Documents, Commands, ::testing::ValuesIn(DocumentsWithCommands()),
                         [](const auto& document) {
                           std::string name = document.param;
                           for (char& c : name)
                             if (std::isalnum(static_cast<unsigned char>(c)) == 0) c = '_';
                           return name;
                         });

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
  EXPECT_TRUE(IsTrue("$ echo a; echo b >&2\na\nb\n"));
  EXPECT_FALSE(IsTrue("$ echo a\nb\n"));
  EXPECT_FALSE(IsTrue("$ echo a; echo b\na\n"));
  EXPECT_FALSE(IsTrue("$ true\na\n"));
  EXPECT_TRUE(IsTrue("$ echo a1b\na...b\n"));
  EXPECT_FALSE(IsTrue("$ echo a1c\na...b\n"));
}

TEST(CommandsOfADocument, HaveToSucceedWhereNothingIsPrinted) {
  EXPECT_TRUE(IsTrue("$ true\n"));
  EXPECT_FALSE(IsTrue("$ false\n"));
  EXPECT_FALSE(IsTrue("$ scriptwells --version\n"));  // not in the PATH
}

TEST(CommandsOfADocument, KnowOneAnother) {
  EXPECT_TRUE(IsTrue("$ cd tools && export A=b\n$ basename $PWD; echo $A\ntools\nb\n"));
  EXPECT_TRUE(IsTrue("$ echo $HOME $PWD\n/home/joe /home/joe/scriptwells\n"));
}

TEST(CommandsOfADocument, RunInTheBackgroundUntilTheEnd) {
  EXPECT_TRUE(IsTrue(
      "$ bash -c 'echo note; echo http://127.0.0.1:8080; exec sleep 1000' &\nhttp://127.0.0.1:8080\n"));
  EXPECT_FALSE(IsTrue("$ echo x &\nready\n"));
  EXPECT_FALSE(IsTrue("$ echo x &\n"));
}

}  // namespace
}  // namespace qv::documents
