// Lists in the documents are complete: faults of the development service, commands and types of the program.
#include <gtest/gtest.h>

#include <filesystem>
#include <regex>
#include <set>
#include <sstream>

#include "tests/documents/markdown.h"
#include "tests/fixtures/output_of.h"

namespace qv::documents {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

const std::string kRoot = std::string(QV_SOURCE_DIR) + "/";

Names AllMatches(const std::string& text, const std::regex& pattern) {
  Names names;
  for (auto match = std::sregex_iterator(text.begin(), text.end(), pattern); match != std::sregex_iterator();
       ++match)
    names.insert((*match)[1].str());
  return names;
}

// The first cells of the tables with this head, such as "| 1001 " or "| `byte`, `short` ".
std::string FirstCells(const std::string& document, const std::string& head) {
  std::string cells;
  for (const std::string& line : TableLines(document, head))
    cells += line.substr(0, line.find('|', 1)) + "\n";
  return cells;
}

Names NamesInFirstCells(const std::string& document, const std::string& head) {
  static const std::regex kQuoted("`([A-Za-z-]+)");
  return AllMatches(FirstCells(ReadFile(kRoot + document), head), kQuoted);
}

std::string ContentOf(const std::string& folder, const std::string& fileName) {
  for (const auto& entry : fs::recursive_directory_iterator(kRoot + folder))
    if (entry.path().filename() == fileName) return ReadFile(entry.path().string());
  return "";
}

std::string Program(const std::string& arguments) {
  return OutputOf("env -i timeout 60 " SCRIPTWELLS_PROGRAM " " + arguments + " 2>&1 </dev/null").text;
}

// The types that the program names when it rejects another one.
Names ParameterTypes() {
  const std::string message = Program("run --local -e 1 -p a=nonsense:1");
  const std::size_t list = message.find("(known: ");
  EXPECT_NE(list, std::string::npos) << message;
  return AllMatches(message.substr(list + 7), std::regex(" ([a-z]+)"));
}

TEST(Lists, FaultsOfTheDevelopmentServiceAreInItsDocument) {
  const Names codes =
      AllMatches(ContentOf("devservice", "fault_codes.h"), std::regex(" k[A-Za-z]+ = ([0-9]+),"));
  EXPECT_GE(codes.size(), 18U);
  EXPECT_EQ(AllMatches(FirstCells(ReadFile(kRoot + "devservice/README.md"), "Code"), std::regex("([0-9]+)")),
            codes);
}

TEST(Lists, CommandsAreInTheirDocument) {
  const std::string help = Program("--help");
  const std::string list = help.substr(help.find("Subcommands:\n"));
  const Names commands = AllMatches(list.substr(0, list.find("\n\n")), std::regex("\n  ([a-z-]+)"));
  EXPECT_GE(commands.size(), 9U);
  EXPECT_EQ(NamesInFirstCells("tools/README.md", "Command"), commands);
}

TEST(Lists, TypesOfParametersAreInTheirDocument) {
  const Names types = ParameterTypes();
  EXPECT_GE(types.size(), 13U);
  EXPECT_EQ(NamesInFirstCells("tools/README.md", "Type"), types);
}

TEST(Lists, TypesOfParametersAreInTheHelp) {
  const std::string help = Program("help run");
  const std::size_t list = help.find("Types: ");
  ASSERT_NE(list, std::string::npos) << help;
  const std::size_t first = list + 7;
  EXPECT_EQ(AllMatches(help.substr(first, help.find('.', first) - first), std::regex("([a-z]+)")),
            ParameterTypes());
}

}  // namespace
}  // namespace qv::documents
