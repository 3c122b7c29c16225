// The options of `map`.
#include "tests/tools/options_fixture.h"

namespace qv::cli {
namespace {

class MapOptionsTest : public testing::OptionsTest {
 protected:
  static MapOptions Map(const std::string& line) { return Parsed(Command::kMap, line).map; }
};

TEST_F(MapOptionsTest, TakesScriptAndRows) {
  const MapOptions map = Map("map a.js rows.csv --server http://s");
  EXPECT_EQ(map.file, "a.js");
  EXPECT_EQ(map.rows, "rows.csv");
  EXPECT_EQ(map.jobs, 4);
  EXPECT_EQ(map.output, OutputFormat::kCsv);
  EXPECT_EQ(map.language, "JavaScript");
  const MapOptions more =
      Map("map -e 1 rows.csv --server http://s -j 8 -o json --results r --failed f --resume --retry-unknown "
          "--language L");
  EXPECT_EQ(more.file, "");
  EXPECT_EQ(more.code, "1");
  EXPECT_EQ(more.rows, "rows.csv");
  EXPECT_EQ(more.jobs, 8);
  EXPECT_EQ(more.output, OutputFormat::kJson);
  EXPECT_EQ(more.results, "r");
  EXPECT_EQ(more.failed, "f");
  EXPECT_TRUE(more.resume);
  EXPECT_TRUE(more.retryUnknown);
  EXPECT_EQ(more.language, "L");
  EXPECT_EQ(Map("map a r --server http://s --json").output, OutputFormat::kJson);
  EXPECT_TRUE(Parsed(Command::kMap, "map a r --server http://s --json --force").map.force);
  Set("OUTPUT", "json");
  EXPECT_EQ(Map("map a r --server http://s").output, OutputFormat::kJson);
  Set("OUTPUT", "table");
  EXPECT_EQ(Map("map a r --server http://s").output, OutputFormat::kCsv);
}

TEST_F(MapOptionsTest, IsChecked) {
  const std::pair<const char*, const char*> rows[] = {
      {"map", "give a script and rows (FILE ROWS)"},
      {"map a.js", "give a script and rows (FILE ROWS)"},
      {"map -e 1", "no rows given (ROWS)"},
      {"map a b -e 1", "give the script as FILE or with -e, not both"},
      {"map a b", "no server given (--server URL)"},
      {"map a b -j 0", "--jobs must be between 1 and 64"},
      {"map a b -j 65", "--jobs must be between 1 and 64"},
      {"map - b --password-stdin", "standard input cannot hold both the script and the password"},
      {"map a b --json -o csv", "give --json or another --output, not both"},
      {"map a b --resume", "--resume needs --results, whose journal it reads"},
      {"map a b --resume --results r --force", "give --resume or --force, not both"},
      {"map a b --results r --retry-unknown", "--retry-unknown needs --resume"}};
  for (const auto& [line, message] : rows)
    EXPECT_EQ(Refusal(line), std::string(message) + "|scriptwells map --help");
  EXPECT_EQ(Refusal("map a b --server http://s -o table"),
            "--output must be csv or json|scriptwells map --help");
  EXPECT_NE(Refusal("map a b --server http://s --usid x"), "accepted");
}

TEST_F(MapOptionsTest, HelpShowsTheFormsThatItTakes) {
  EXPECT_NE(TextOf("map --help").find("{csv,json}"), std::string::npos) << TextOf("map --help");
  EXPECT_EQ(TextOf("map --help").find("table,"), std::string::npos);
  EXPECT_NE(TextOf("run --help").find("{csv,json,table,text}"), std::string::npos);
}

TEST_F(MapOptionsTest, FormOfAProfileIsTakenWhereItFits) {
  WriteProfiles("[profile.a]\noutput = \"table\"\n[profile.b]\noutput = \"json\"\n");
  EXPECT_EQ(Map("map a r --server http://s --profile a").output, OutputFormat::kCsv);
  EXPECT_EQ(Map("map a r --server http://s --profile b").output, OutputFormat::kJson);
}

}  // namespace
}  // namespace qv::cli
