#include "tools/options.h"

#include <gtest/gtest.h>

#include "tests/tools/options_fixture.h"

namespace qv::cli {
namespace {

class RegistryArguments : public testing::OptionsTest {};

TEST_F(RegistryArguments, RegistryCommandsTakeKeyAndValue) {
  const RegistryOptions get = Registry({"registry", "get", "home"});
  EXPECT_EQ(get.verb, RegistryVerb::kGet);
  EXPECT_EQ(get.key, "home");
  EXPECT_FALSE(get.json);
  const RegistryOptions set = Registry({"registry", "set", "A\\B", "/a b", "--json"});
  EXPECT_EQ(set.verb, RegistryVerb::kSet);
  EXPECT_EQ(set.key, "A\\B");
  EXPECT_EQ(set.value, "/a b");
  EXPECT_TRUE(set.json);
  EXPECT_EQ(Registry({"registry", "remove", "x"}).verb, RegistryVerb::kRemove);
  EXPECT_EQ(Registry({"registry", "remove", "x"}).key, "x");
  EXPECT_EQ(Registry({"registry", "list"}).verb, RegistryVerb::kList);
}

TEST_F(RegistryArguments, JsonMayStandBeforeTheVerb) {
  const RegistryOptions list = Registry({"registry", "--json", "list"});
  EXPECT_EQ(list.verb, RegistryVerb::kList);
  EXPECT_TRUE(list.json);
  EXPECT_TRUE(Registry({"registry", "--json", "get", "a"}).json);
  EXPECT_FALSE(Registry({"registry", "list"}).json);
}

TEST_F(RegistryArguments, UsageFailureNamesTheHelpOfItsVerb) {
  const auto hint = [](const std::vector<std::string>& words) { return ParseArguments(words).hint; };
  EXPECT_EQ(hint({"registry", "get"}), "scriptwells registry get --help");
  EXPECT_EQ(hint({"registry", "set", "a"}), "scriptwells registry set --help");
  EXPECT_EQ(hint({"registry", "remove", "--colour"}), "scriptwells registry remove --help");
  EXPECT_EQ(hint({"registry", "list", "a"}), "scriptwells registry list --help");
  EXPECT_EQ(hint({"registry", "--colour"}), "scriptwells registry --help");
}

TEST_F(RegistryArguments, HelpOfSetTellsOfTheTwoDashes) {
  const ParsedArguments parsed = ParseArguments({"registry", "set", "--help"});
  EXPECT_EQ(parsed.command, Command::kText);
  EXPECT_NE(parsed.text.find("begins with '-' stands behind \"--\""), std::string::npos) << parsed.text;
  EXPECT_EQ(Registry({"registry", "set", "--json", "--", "A\\B", "-5"}).value, "-5");
}

TEST_F(RegistryArguments, RegistryValuesStayWhole) {
  EXPECT_EQ(Registry({"registry", "set", "a", ""}).value, "");
  EXPECT_EQ(Registry({"registry", "set", "a", "[b,c]"}).value, "[b,c]");
  EXPECT_EQ(Registry({"registry", "set", "--", "a", "-b"}).value, "-b");
}

TEST_F(RegistryArguments, RegistryChecksItsArguments) {
  EXPECT_EQ(Refusal({"registry"}),
            "no registry command given (get, set, remove or list)|scriptwells registry --help");
  for (const std::vector<std::string>& words : {std::vector<std::string>{"registry", "get"},
                                                {"registry", "get", "a", "b"},
                                                {"registry", "set", "a"},
                                                {"registry", "set", "a", "b", "c"},
                                                {"registry", "remove"},
                                                {"registry", "list", "a"},
                                                {"registry", "walk"},
                                                {"registry", "get", "a", "--colour"},
                                                {"registry", "get", "a", "list"}})
    EXPECT_NE(Refusal(words), "accepted");
}

}  // namespace
}  // namespace qv::cli
