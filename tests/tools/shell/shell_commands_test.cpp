// Commands of the shell, and completion of what is typed.
#include "tools/shell/shell_commands.h"

#include <gtest/gtest.h>

#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "tests/tools/refusal.h"
#include "tools/shell/completion.h"

namespace qv::cli {
namespace {

using testing::Words;

std::string Refusal(const std::string& line) {
  return testing::RefusalOf([&] { ParseShellCommand(line); }, ExitStatus::kUsage);
}

TEST(ShellCommands, NameAndArgumentAreTaken) {
  const TypedCommand command = ParseShellCommand(":trace  my file.txt  ");
  EXPECT_EQ(command.verb, ShellVerb::kTrace);
  EXPECT_EQ(command.argument, "my file.txt");
  EXPECT_EQ(ParseShellCommand(":params").verb, ShellVerb::kParams);
  EXPECT_EQ(ParseShellCommand(":param a=int:1").verb, ShellVerb::kParam);
  EXPECT_EQ(ParseShellCommand(":param a=string: b ").argument, "a=string: b ");
}

TEST(ShellCommands, NamesMayBeShortened) {
  EXPECT_EQ(ParseShellCommand(":q").verb, ShellVerb::kQuit);
  EXPECT_EQ(ParseShellCommand(":h").verb, ShellVerb::kHelp);
  EXPECT_EQ(ParseShellCommand(":unp a").verb, ShellVerb::kUnparam);
  EXPECT_EQ(Refusal(":o json"), ":o is short for several commands, such as :open and :output");
}

TEST(ShellCommands, WrongOnesAreRefused) {
  EXPECT_EQ(Refusal(":tiem on"), "no command :tiem; did you mean :time?");
  EXPECT_EQ(Refusal(":xyzzy"), "no command :xyzzy; :help lists all");
  EXPECT_EQ(Refusal(":"), "no command :; :help lists all");
  EXPECT_EQ(Refusal(":params all"), ":params takes nothing more");
  EXPECT_EQ(Refusal(":param"), "it is :param NAME=TYPE:VALUE");
  EXPECT_EQ(Refusal(":open  "), "it is :open FILE");
  EXPECT_THROW(IsOn("maybe"), Failure);
  EXPECT_TRUE(IsOn("on"));
  EXPECT_FALSE(IsOn("off"));
}

TEST(ShellCommands, HelpHasEveryOne) {
  const std::string help = ShellHelp();
  for (const ShellCommandRow& row : ShellCommands())
    EXPECT_TRUE(testing::Holds(help, "\n  :" + std::string(row.name)) ||
                testing::StartsWith(help, "  :help"));
  EXPECT_TRUE(testing::StartsWith(ShellHelp("time"), "  :time [on|off] "));
  EXPECT_EQ(ShellHelp(":time"), ShellHelp("time"));
}

class CompletionTest : public ::testing::Test {
 protected:
  // What is offered, what stays before it, and what follows.
  static std::string Offered(const std::string& line, bool isOpen = false) {
    const CompletionNames names{{"year", "yen", "doc"}, {"city", "citizens", "\x1b[2J", "year"}};
    const Completion completion = Complete(line, isOpen, names);
    std::string text;
    for (const std::string& word : completion.words) text += (text.empty() ? "" : " ") + word;
    return text + "|" + line.substr(0, completion.start) + "|" + completion.after;
  }
};

TEST_F(CompletionTest, CommandsAndTheirArguments) {
  EXPECT_EQ(Offered(":pa"), ":param :params|| ");
  EXPECT_EQ(Offered("  :he"), ":help|  | ");
  EXPECT_EQ(Offered(":help ti"), "time|:help | ");
  EXPECT_EQ(Offered(":output "), "csv json table text|:output | ");
  EXPECT_EQ(Offered(":time o"), "off on|:time | ");
  EXPECT_EQ(Offered(":unparam ye"), "year yen|:unparam | ");
  EXPECT_EQ(Offered(":param ye"), "year= yen=|:param |");
  EXPECT_EQ(Offered(":param a=d"), "date: datetime: double: duration:|:param a=|");
  EXPECT_EQ(Offered(":param a=int:1"), "|:param a=int:1|");
  EXPECT_EQ(Offered(":upload d"), "doc=|:upload |");
  EXPECT_EQ(Offered(":session x"), "|:session x|");
  EXPECT_EQ(Offered(":nothing x"), "|:nothing x|");
}

TEST_F(CompletionTest, NamesInScripts) {
  EXPECT_EQ(Offered("parameters.ye"), "year yen|parameters.|");
  EXPECT_EQ(Offered("rows[0].ci"), "citizens city|rows[0].|");
  EXPECT_EQ(Offered("f(pa"), "parameters|f(|");
  EXPECT_EQ(Offered("y"), "year||");
  EXPECT_EQ(Offered(":pa", true), "parameters|:|");
  EXPECT_EQ(Offered("1 + "), "citizens city parameters year|1 + |");
}

TEST_F(CompletionTest, Files) {
  const TemporaryDirectory folder;
  folder.Write("report one.js", "");
  folder.Write("results/a", "");
  folder.Write(".hidden", "");
  const std::string path = folder.Path("re");
  EXPECT_EQ(Offered(":open " + path),
            folder.Path("report one.js") + " " + folder.Path("results/") + "|:open |");
  EXPECT_EQ(Offered(":upload doc=" + path + "p"), folder.Path("report one.js") + "|:upload doc=|");
  EXPECT_EQ(Offered(":param d=file:" + path + "s"), folder.Path("results/") + "|:param d=file:|");
  EXPECT_EQ(Offered(":open " + folder.Path(".h")), folder.Path(".hidden") + "|:open |");
  EXPECT_EQ(Offered(":open " + folder.Path("nowhere/a")), "|:open |");
  const EnvironmentVariable home("HOME", folder.Path().c_str());
  EXPECT_EQ(Offered(":save ~/res"), "~/results/|:save |");
}

TEST(CommonStart, IsOfWholeCharacters) {
  EXPECT_EQ(CommonStart({"city", "citizens"}), "cit");
  EXPECT_EQ(CommonStart({"same"}), "same");
  EXPECT_EQ(CommonStart({"a", "ab"}), "a");
  EXPECT_EQ(CommonStart({"ab", "a"}), "a");
  EXPECT_EQ(CommonStart({"x\xC3\xA9", "x\xC3\xA8"}), "x");
  EXPECT_EQ(CommonStart({}), "");
}

}  // namespace
}  // namespace qv::cli
