// The README's C++ is an excerpt of an example, which the build compiles and other tests run.
#include <gtest/gtest.h>

#include <sstream>

#include "tests/documents/markdown.h"

namespace qv::documents {
namespace {

const std::string kRoot = std::string(QV_SOURCE_DIR) + "/";

std::string Indented(const std::string& code) {
  std::string indented;
  std::istringstream lines(code);
  for (std::string line; std::getline(lines, line);) indented += "  " + line + "\n";
  return indented;
}

TEST(Code, OfTheReadmeIsAnExcerptOfTheFirstExample) {
  const std::vector<std::string> blocks = BlocksOf(ReadFile(kRoot + "README.md"), "cpp");
  ASSERT_EQ(blocks.size(), 1U);
  EXPECT_NE(ReadFile(kRoot + "examples/first_call.cpp").find(Indented(blocks[0])), std::string::npos)
      << "not in examples/first_call.cpp:\n"
      << blocks[0];
}

}  // namespace
}  // namespace qv::documents
