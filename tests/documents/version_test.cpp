// The documents are of the version that is built.
#include <gtest/gtest.h>

#include <sstream>

#include "scriptwells/version.h"
#include "tests/documents/markdown.h"

namespace qv::documents {
namespace {

TEST(Version, IsThatOfTheNewestEntryInTheChangelog) {
  std::istringstream lines(ReadFile(QV_SOURCE_DIR "/CHANGELOG.md"));
  std::string line;
  while (std::getline(lines, line) && line.rfind("## ", 0) != 0) continue;
  EXPECT_EQ(line, "## " SCRIPTWELLS_VERSION);
}

}  // namespace
}  // namespace qv::documents
