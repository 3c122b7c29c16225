// The help of every command, and the suggestions for mistyped arguments.
#include <sstream>

#include "scriptwells/version.h"
#include "tests/tools/options_fixture.h"
#include "tests/tools/process.h"

namespace qv::cli {
namespace {

using testing::Each;
using testing::Holds;

const auto kCommands = Each(
    "|run|run-document|shell|map|download|session|session open|session close|serve|registry|registry "
    "get|registry set|"
    "registry remove|registry list|config|config show|config set|config unset|config path|config "
    "profiles|describe|tape|tape show|tape diff|tape verify|check|explain|"
    "help");
const std::string kUnexpected = "The following argument was not expected: ";

class Help : public testing::OptionsTest {
 protected:
  // These arguments are unexpected, and this is the rest of the message.
  static void ExpectGuesses(const std::vector<std::pair<const char*, const char*>>& rows) {
    for (const auto& [line, rest] : rows) EXPECT_EQ(Refusal(line), kUnexpected + rest);
  }
};

TEST_F(Help, LinesFitAHundredColumns) {
  for (const std::string& command : kCommands) {
    std::istringstream lines(TextOf(command + " --help"));
    for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), 100U) << line;
  }
}

TEST_F(Help, ExamplesComeBeforeOptions) {
  for (const std::string& command : kCommands) {
    const std::string text = TextOf(command + " --help");
    const std::size_t examples = text.find("\nExamples:\n  ");
    const std::size_t options = text.find("\nOptions:\n");
    ASSERT_NE(examples, std::string::npos) << text;
    ASSERT_NE(options, std::string::npos) << text;
    EXPECT_LT(examples, options) << text;
    EXPECT_EQ(text.find("Examples:", examples + 5), std::string::npos) << text;
  }
}

TEST_F(Help, CommandPrintsTheSameAsTheOption) {
  for (const std::string& command : kCommands)
    EXPECT_EQ(TextOf("help " + command), TextOf(command + " --help"));
  for (const char* word : {"-V", "--version", "version"})
    EXPECT_EQ(TextOf(word), "scriptwells " SCRIPTWELLS_VERSION "\n");
}

TEST_F(Help, TopicIsTheEndOfItsCommand) {
  const std::string topic = TextOf("help profiles");
  const std::string command = TextOf("help config");
  EXPECT_TRUE(Holds(topic, "[profile.work]")) << topic;
  EXPECT_EQ(command.substr(command.size() - topic.size()), topic);
  EXPECT_EQ(Refusal("help profiles run"), "no command profiles|scriptwells help --help");
}

TEST_F(Help, HasExamplesTypesAndVariables) {
  const std::pair<const char*, const char*> rows[] = {
      {"", "scriptwells serve --port 8080|scriptwells download|130 interrupted"},
      {"run",
       "-p a=int:2 -p b=int:40|SCRIPTWELLS_USER|-p when=datetime:2024-03-05T10:15:30|-p "
       "doc=file:report.pdf|--save|"
       "\n  date      YYYY-MM-DD                              -p on=date:2024-03-05\n"},
      {"run-document", "-p for=duration:P1DT2H|<Scriptwell Language="},
      {"download", "--usid|run --save"},
      {"registry", "QV_REGISTRY"},
      {"registry set", "VALUE|Put \"--\" before a KEY or VALUE that begins with '-'"}};
  for (const auto& [command, parts] : rows)
    for (const std::string& part : Each(parts))
      EXPECT_TRUE(Holds(TextOf(std::string("help ") + command), part)) << command << ": " << part;
  EXPECT_FALSE(Holds(TextOf("help run-document"), "--eval"));
}

TEST_F(Help, MistypedWordGetsASuggestion) {
  ExpectGuesses({{"rnu", "rnu (did you mean run?)|scriptwells --help"},
                 {"registry lst", "lst (did you mean list?)|scriptwells registry --help"},
                 {"run --local -e 1 --servr=http://a",
                  "--servr=http://a (did you mean --server?)|scriptwells run --help"},
                 {"run --local -e 1 -jsno", "-jsno (did you mean --json?)|scriptwells run --help"}});
  EXPECT_EQ(Refusal("serve --prot 8080"),
            "The following arguments were not expected: 8080 --prot (did you mean --port?)|scriptwells serve "
            "--help");
  ExpectGuesses({{"frobnicate", "frobnicate|scriptwells --help"},
                 {"run --local -e 1 --zzz", "--zzz|scriptwells run --help"},
                 {"--json registry list", "--json|scriptwells registry list --help"},
                 {"run --local a.js b.js", "b.js|scriptwells run --help"},
                 {"script-worker", "script-worker|scriptwells --help"}});
  const std::pair<const char*, const char*> rows[] = {{"serv", "no command serv (did you mean serve?)"},
                                                      {"registry gte", "no command gte (did you mean get?)"},
                                                      {"run x", "no command x"}};
  for (const auto& [command, message] : rows)
    EXPECT_EQ(Refusal(std::string("help ") + command), std::string(message) + "|scriptwells help --help");
}

TEST(HelpProgram, ExitsWithZero) {
  for (const char* line : {"help", "help run", "version", "-V", "run --help"}) {
    const testing::Outcome outcome = testing::RunTool(line);
    EXPECT_EQ(outcome.exit, 0);
    EXPECT_EQ(outcome.err, "");
    EXPECT_NE(outcome.out, "");
  }
}

}  // namespace
}  // namespace qv::cli
