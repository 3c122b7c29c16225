// The help of every command, and what is said to those who mistype one.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/tools/options_fixture.h"
#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using Words = std::vector<std::string>;

std::string TextOf(const Words& words) {
  const ParsedArguments parsed = ParseArguments(words);
  EXPECT_EQ(parsed.command, Command::kText) << parsed.text;
  return parsed.text;
}

const std::vector<Words> kCommands = {{},
                                      {"run"},
                                      {"run-document"},
                                      {"download"},
                                      {"session"},
                                      {"session", "open"},
                                      {"session", "close"},
                                      {"serve"},
                                      {"registry"},
                                      {"registry", "get"},
                                      {"registry", "set"},
                                      {"registry", "remove"},
                                      {"registry", "list"},
                                      {"describe"},
                                      {"help"}};

Words WithHelp(Words words) {
  words.emplace_back("--help");
  return words;
}

class Help : public testing::OptionsTest {};

TEST_F(Help, LinesFitAHundredColumns) {
  for (const Words& command : kCommands) {
    std::istringstream lines(TextOf(WithHelp(command)));
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100u) << line;
  }
}

TEST_F(Help, ExamplesStandInFrontOfOptions) {
  for (const Words& command : kCommands) {
    const std::string text = TextOf(WithHelp(command));
    const std::size_t examples = text.find("\nExamples:\n  ");
    const std::size_t options = text.find("\nOptions:\n");
    ASSERT_NE(examples, std::string::npos) << text;
    ASSERT_NE(options, std::string::npos) << text;
    EXPECT_LT(examples, options) << text;
    EXPECT_EQ(text.find("Examples:", examples + 5), std::string::npos) << text;
  }
}

TEST_F(Help, CommandPrintsTheSameAsTheOption) {
  for (const Words& command : kCommands) {
    Words help{"help"};
    help.insert(help.end(), command.begin(), command.end());
    EXPECT_EQ(TextOf(help), TextOf(WithHelp(command)));
  }
}

TEST_F(Help, UnknownCommandIsRefused) {
  EXPECT_EQ(Refusal({"help", "serv"}), "no command serv (did you mean serve?)|scriptwells help --help");
  EXPECT_EQ(Refusal({"help", "registry", "gte"}),
            "no command gte (did you mean get?)|scriptwells help --help");
  EXPECT_EQ(Refusal({"help", "run", "x"}), "no command x|scriptwells help --help");
  EXPECT_EQ(Refusal({"help", "script-worker"}), "no command script-worker|scriptwells help --help");
}

TEST_F(Help, NotesKeepTheirTables) {
  const std::string run = TextOf({"help", "run"});
  EXPECT_NE(run.find("\n  date      YYYY-MM-DD                              -p on=date:2024-03-05\n"),
            std::string::npos);
}

TEST_F(Help, VersionHasThreeNames) {
  for (const char* word : {"-V", "--version", "version"}) EXPECT_EQ(TextOf({word}), "scriptwells 0.1.0\n");
}

TEST_F(Help, MistypedWordIsGuessed) {
  const std::string one = "The following argument was not expected: ";
  EXPECT_EQ(Refusal({"rnu"}), one + "rnu (did you mean run?)|scriptwells --help");
  EXPECT_EQ(Refusal({"registry", "lst"}), one + "lst (did you mean list?)|scriptwells registry --help");
  EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "--servr=http://a"}),
            one + "--servr=http://a (did you mean --server?)|scriptwells run --help");
  EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "-jsno"}),
            one + "-jsno (did you mean --json?)|scriptwells run --help");
  EXPECT_EQ(Refusal({"serve", "--prot", "8080"}),
            "The following arguments were not expected: 8080 --prot (did you mean --port?)|scriptwells serve "
            "--help");
}

TEST_F(Help, NothingIsGuessedWhereNothingIsNear) {
  const std::string one = "The following argument was not expected: ";
  EXPECT_EQ(Refusal({"frobnicate"}), one + "frobnicate|scriptwells --help");
  EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "--zzz"}), one + "--zzz|scriptwells run --help");
  EXPECT_EQ(Refusal({"run", "--local", "-e", "1", "--parm"}), one + "--parm|scriptwells run --help");
  EXPECT_EQ(Refusal({"--json", "registry", "list"}), one + "--json|scriptwells registry list --help");
  EXPECT_EQ(Refusal({"run", "--local", "a.js", "b.js"}), one + "b.js|scriptwells run --help");
}

TEST_F(Help, HiddenCommandIsNeverGuessed) {
  EXPECT_EQ(Refusal({"script-worke"}),
            "The following argument was not expected: script-worke|scriptwells --help");
  EXPECT_EQ(TextOf({"--help"}).find("script-worker"), std::string::npos);
}

TEST(HelpProgram, CommandsEndWithZero) {
  for (const Words& words : {Words{"help"}, Words{"help", "run"}, Words{"version"}, Words{"-V"}}) {
    const testing::Outcome outcome = testing::RunTool(words);
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_NE(outcome.out, "");
  }
}

}  // namespace
}  // namespace qv::cli
