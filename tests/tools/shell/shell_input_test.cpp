// Lines of the shell that become commands and scripts.
#include "tools/shell/shell_input.h"

#include <gtest/gtest.h>

#include "tests/tools/refusal.h"
#include "tests/tools/words.h"

namespace qv::cli {
namespace {

using testing::Each;
using Found = ShellInput::Found;

// What was found in the lines of "a|b|c" (and at their end), one text each: "$" before scripts; "..." for one
// that is open.
testing::Words FoundIn(const std::string& lines, const std::string& language = "JavaScript") {
  ShellInput input(language);
  testing::Words texts;
  const auto add = [&](Found found) {
    if (found == Found::kCommand) texts.push_back(input.Text());
    if (found == Found::kScript) texts.push_back("$" + input.Text());
    if (found == Found::kOpen) texts.emplace_back("...");
  };
  for (const std::string& line : Each(lines)) add(input.Add(line));
  add(input.End());
  return texts;
}

using Words = testing::Words;

TEST(ShellInput, LinesAreCommandsOrScripts) {
  EXPECT_EQ(FoundIn("1 + 1|:time on|  :help|  2"), (Words{"$1 + 1", ":time on", ":help", "$  2"}));
  EXPECT_EQ(FoundIn("||  |1|"), (Words{"$1"}));
  EXPECT_EQ(FoundIn("// a comment|1"), (Words{"$1"}));
}

TEST(ShellInput, ScriptGoesOnWhileItIsOpen) {
  EXPECT_EQ(FoundIn("f(|  1,||  2|)|3"), (Words{"...", "...", "...", "...", "$f(\n  1,\n\n  2\n)", "$3"}));
  EXPECT_EQ(FoundIn("a ? b|:time"), (Words{"$a ? b", ":time"}));
  EXPECT_EQ(FoundIn("a ?|b|  :time|"), (Words{"...", "$a ?\nb", ":time"}));
  EXPECT_EQ(FoundIn("(a ?|b|:time)"), (Words{"...", "...", "$(a ?\nb\n:time)"}));
}

TEST(ShellInput, OpenScriptIsSentByForceAndAtTheEnd) {
  EXPECT_EQ(FoundIn("f(|:}|1"), (Words{"...", "$f(", "$1"}));
  EXPECT_EQ(FoundIn("f("), (Words{"...", "$f("}));
}

TEST(ShellInput, BlockHoldsAnyScript) {
  EXPECT_EQ(FoundIn(":{|a()|  .b()|:time|:}|1"),
            (Words{"...", "...", "...", "...", "$a()\n  .b()\n:time", "$1"}));
  EXPECT_EQ(FoundIn(":{||1|  :}  "), (Words{"...", "...", "...", "$\n1"}));
  EXPECT_EQ(FoundIn(":{|:}|1"), (Words{"...", "$1"}));
  EXPECT_EQ(FoundIn(":{|Sub A|  B = \"(\"|:}", "VBScript"),
            (Words{"...", "...", "...", "$Sub A\n  B = \"(\""}));
  EXPECT_EQ(FoundIn(":{|a \\|:}", "VBScript"), (Words{"...", "...", "$a \\"}));
}

TEST(ShellInput, OtherLanguagesGoOnAfterABackslash) {
  EXPECT_EQ(FoundIn("a = (|b \\|c \\||d", "VBScript"), (Words{"$a = (", "...", "...", "$b \nc \n", "$d"}));
  EXPECT_EQ(FoundIn("'a\\|b'"), (Words{"...", "$'a\\\nb'"}));
}

TEST(ShellInput, KeepsWhatWasTyped) {
  ShellInput input("JavaScript");
  input.Add(":{");
  input.Add("  a");
  EXPECT_TRUE(input.IsOpen());
  input.Add(":}");
  EXPECT_EQ(input.Typed(), ":{\n  a\n:}");
  EXPECT_FALSE(input.IsOpen());
  input.Add("  :time on ");
  EXPECT_EQ(input.Typed(), "  :time on ");
}

TEST(ShellInput, DropForgetsWhatIsOpen) {
  ShellInput input("JavaScript");
  input.Add("f({");
  input.Drop();
  EXPECT_FALSE(input.IsOpen());
  EXPECT_EQ(input.Add("1"), Found::kScript);
  EXPECT_EQ(input.Text(), "1");
}

TEST(ShellInput, HasALimit) {
  ShellInput input("JavaScript");
  input.Add("`");
  const std::string line(std::size_t{33} << 20, 'a');
  EXPECT_EQ(input.Add(line), Found::kOpen);
  EXPECT_THROW(input.Add(line), Failure);
  EXPECT_FALSE(input.IsOpen());
}

}  // namespace
}  // namespace qv::cli
