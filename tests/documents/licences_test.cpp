// The licence of the project and those of its dependencies are stated where they have to be.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <sstream>

#include "tests/documents/markdown.h"

namespace qv::documents {
namespace {

namespace fs = std::filesystem;

const fs::path kRoot = QV_SOURCE_DIR;

std::string FirstLineOf(const fs::path& file) {
  const std::string text = ReadFile(file);
  return text.substr(0, text.find('\n'));
}

TEST(Licences, EveryInstalledHeaderBeginsWithItsLicence) {
  int headers = 0;
  for (const char* folder : {"include/scriptwells", "include/qvscriptwells"})
    for (const auto& entry : fs::directory_iterator(kRoot / folder)) {
      if (entry.path().extension() != ".h") continue;
      ++headers;
      EXPECT_EQ(FirstLineOf(entry.path()), "// SPDX-License-Identifier: Apache-2.0") << entry.path();
    }
  EXPECT_GT(headers, 30);
}

TEST(Licences, TheTextIsTheWholeApacheLicense) {
  const std::string text = ReadFile(kRoot / "LICENSE");
  std::size_t place = 0;
  for (const char* part :
       {"Apache License\n", "Version 2.0, January 2004", "1. Definitions.", "2. Grant of Copyright License.",
        "3. Grant of Patent License.", "4. Redistribution.", "5. Submission of Contributions.",
        "6. Trademarks.", "7. Disclaimer of Warranty.", "8. Limitation of Liability.",
        "9. Accepting Warranty or Additional Liability.", "END OF TERMS AND CONDITIONS"}) {
    place = text.find(part, place);
    ASSERT_NE(place, std::string::npos) << part;
  }
}

// The names in a section of packages.txt: "[build]", a package and a comment per line, an empty line.
std::vector<std::string> PackagesOf(const std::string& list, const std::string& section) {
  std::vector<std::string> names;
  std::istringstream lines(list.substr(std::min(list.size(), list.find("\n[" + section + "]\n"))));
  std::string line;
  std::getline(lines, line);
  std::getline(lines, line);
  while (std::getline(lines, line) && line.rfind('[', 0) != 0) {
    std::string name;
    std::istringstream(line) >> name;
    if (!name.empty() && name.front() != '#') names.push_back(name);
  }
  return names;
}

// Of the packages, those that the page has no row for, or a row with an empty cell.
std::vector<std::string> Missing(const std::vector<std::string>& packages, const std::string& page) {
  std::vector<std::string> missing;
  const std::vector<std::string> lines = TableLines(page, "Package");
  for (const std::string& package : packages)
    if (std::none_of(lines.begin(), lines.end(), [&package](const std::string& line) {
          return line.rfind("| `" + package + "` | ", 0) == 0 && line.find("|  |") == std::string::npos &&
                 std::count(line.begin(), line.end(), '|') == 5;
        }))
      missing.push_back(package);
  return missing;
}

TEST(Licences, EachPackageOfTheBuildIsOnThePageOfDependencies) {
  std::vector<std::string> packages = PackagesOf(ReadFile(kRoot / "packages.txt"), "build");
  EXPECT_GE(packages.size(), 18U);
  packages.emplace_back("pybind11-dev");
  EXPECT_EQ(Missing(packages, ReadFile(kRoot / "docs/dependencies.md")), std::vector<std::string>{});
}

TEST(Licences, APackageThatThePageLacksIsFound) {
  const auto packages = PackagesOf(
      "# All\n\n[build]\ncmake  # it\n# more\nlibone-dev\nlibtwo-dev # x\n\n[checks]\ngit\n", "build");
  EXPECT_EQ(packages, (std::vector<std::string>{"cmake", "libone-dev", "libtwo-dev"}));
  EXPECT_EQ(Missing(packages,
                    "| Package | Version | Licence | For |\n|---|---|---|---|\n"
                    "| `cmake` | 3 | BSD | all |\n| `libtwo-dev` | 2 |  | all |\n"),
            (std::vector<std::string>{"libone-dev", "libtwo-dev"}));
}

}  // namespace
}  // namespace qv::documents
