// Completion for commands of this test's own, in real shells: what the program itself does not have.
#include "tools/manual/completion.h"

#include <gtest/gtest.h>

#include "fixtures/output_of.h"
#include "fixtures/temporary_directory.h"

namespace qv::cli {
namespace {

OptionText Option(std::vector<std::string> names, const std::string& value, ValueKind kind,
                  const std::string& description) {
  OptionText option;
  option.names = std::move(names);
  option.value = value;
  option.kind = kind;
  option.description = description;
  return option;
}

// scriptwells [--profile PROFILE] below [--colour COLOUR] [WORD...]
CommandText Sample() {
  CommandText below;
  below.path = "scriptwells below";
  below.description = "Isn't [it]: strange $(touch bad) `touch bad`?";
  OptionText colour = Option({"-c", "--colour"}, "A:B", ValueKind::kText, R"(It's "$HOME" [x]: \ 100%)");
  colour.choices = {"red", "it's", "a:b"};
  OptionText word = Option({}, "WORD", ValueKind::kText, "Words");
  word.choices = {"one", "two"};
  word.repeated = true;
  below.options = {colour, word};
  CommandText program;
  program.path = "scriptwells";
  program.options = {Option({"--profile"}, "PROFILE", ValueKind::kProfile, "A profile"),
                     Option({"-h", "--help"}, "", ValueKind::kNone, "Help")};
  program.commands = {below};
  return program;
}

class Completion : public ::testing::Test {
 protected:
  Completion() {
    Add("scriptwells.bash", BashTables(Sample(), {}));
    Add("_scriptwells", ZshTables(Sample(), {}));
    Add("scriptwells.fish", FishTables(Sample(), {}));
    folder_.Write("bin/scriptwells",
                  "#!/bin/sh\n[ \"$*\" = 'config profiles' ] && printf 'home\\nwork\\nwide\\n'\n");
    folder_.Write("empty/none", "");
    Run("chmod +x " + folder_.Path("bin/scriptwells"));
  }

  std::string InBash(const std::string& words, int count, const std::string& line) {
    const std::string size = std::to_string(line.size());
    return Run("bash --norc -c 'source " + folder_.Path("scriptwells.bash") + "; COMP_WORDS=(" + words +
               "); COMP_CWORD=" + std::to_string(count - 1) + "; COMP_POINT=" + size + "; COMP_LINE=\"" +
               line + R"("; _scriptwells; echo "${COMPREPLY[*]}"')");
  }
  std::string InFish(const std::string& line) {
    return Run("fish --no-config -c 'source " + folder_.Path("scriptwells.fish") +
               "; complete -C $argv[1]' '" + line + "'");
  }
  // Whether the shell can read its script, and nothing in it is run.
  void ExpectRead(const std::string& command) {
    EXPECT_EQ(Run(command), "");
    EXPECT_EQ(Run("ls empty"), "none\n");
  }
  std::string Path(const std::string& name) const { return folder_.Path(name); }

 private:
  void Add(const std::string& script, const std::string& tables) {
    const std::string folder = SHELLS_FOLDER;
    folder_.Write(script, OutputOf("cat " + folder + "/" + script).text + tables);
  }
  std::string Run(const std::string& command) {
    return OutputOf("cd " + folder_.Path() + " && HOME=" + folder_.Path() + " PATH=" + folder_.Path("bin") +
                    ":$PATH " + command + " 2>&1")
        .text;
  }

  TemporaryDirectory folder_;
};

TEST_F(Completion, ProfilesAreThoseThatTheProgramNames) {
  EXPECT_EQ(InBash("scriptwells --profile w", 3, "scriptwells --profile w"), "work wide\n");
  EXPECT_EQ(InBash("scriptwells --profile = w", 4, "scriptwells --profile=w"), "work wide\n");
  EXPECT_EQ(InFish("scriptwells --profile w"), "wide\tA profile\nwork\tA profile\n");
  EXPECT_NE(ZshTables(Sample(), {}).find("'(--profile)--profile=[A profile]:PROFILE:_scriptwells_profiles'"),
            std::string::npos);
}

TEST_F(Completion, CommandsAfterAnOptionWithAValue) {
  EXPECT_EQ(InBash("scriptwells --profile work \"\"", 4, "scriptwells --profile work "), "below\n");
  EXPECT_EQ(InBash("scriptwells --profile below \"\"", 4, "scriptwells --profile below "), "below\n");
  EXPECT_EQ(InBash("scriptwells --profile = work \"\"", 5, "scriptwells --profile=work "), "below\n");
  EXPECT_EQ(InFish("scriptwells --profile below b"),
            "below\tIsn't [it]: strange $(touch bad) `touch bad`?\n");
}

TEST_F(Completion, RepeatedArguments) {
  EXPECT_EQ(InBash("scriptwells below one \"\"", 4, "scriptwells below one "), "one two\n");
  EXPECT_EQ(InFish("scriptwells below one two "), "one\tWords\ntwo\tWords\n");
}

TEST_F(Completion, DescriptionsAreQuoted) {
  ExpectRead("bash --norc -n " + Path("scriptwells.bash"));
  ExpectRead("zsh -f -c 'compdef() { }; source " + Path("_scriptwells") + "'");
  ExpectRead("fish --no-config -c 'source " + Path("scriptwells.fish") + "'");
  EXPECT_NE(
      ZshTables(Sample(), {}).find("[It'\\''s \"$HOME\" \\[x\\]: \\\\ 100%]:A\\:B:(red it\\'\\''s a\\:b)"),
      std::string::npos)
      << ZshTables(Sample(), {});
}

TEST_F(Completion, ChoicesWithMarksOfTheShell) {
  EXPECT_EQ(InBash("scriptwells below -c i", 4, "scriptwells below -c i"), "it's\n");
  EXPECT_EQ(InFish("scriptwells below --colour i"), "it's\tIt's \"$HOME\" [x]: \\ 100%\n");
  EXPECT_EQ(InBash("scriptwells below -c a", 4, "scriptwells below -c a"), "a:b\n");
}

}  // namespace
}  // namespace qv::cli
