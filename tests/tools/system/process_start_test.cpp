// Where the library puts downloads: TEMP as the program sets it at its start.
#include "tools/system/process_start.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "fixtures/environment.h"
#include "tools/program.h"

namespace qv::cli {
namespace {

std::string Temp() {
  const char* value = std::getenv("TEMP");
  return value != nullptr ? value : "(none)";
}

TEST(TempDirectory, IsTheFirstOfTheUsualVariables) {
  struct Row {
    const char* temp;
    const char* tmp;
    const char* tmpdir;
    const char* expected;
  };
  const Row rows[] = {{nullptr, nullptr, "/var/tmp/mine", "/var/tmp/mine"},
                      {nullptr, nullptr, nullptr, "/tmp"},
                      {"", "", "", "/tmp"},
                      {"/a", nullptr, "/b", "/a"},
                      {nullptr, "/a", "/b", "(none)"}};
  for (const Row& row : rows) {
    const EnvironmentVariable temp("TEMP", row.temp);
    const EnvironmentVariable tmp("TMP", row.tmp);
    const EnvironmentVariable tmpdir("TMPDIR", row.tmpdir);
    SetTempDirectory();
    EXPECT_EQ(Temp(), row.expected);
  }
}

// In its own process, since a program watches for signals once.
TEST(TempDirectory, IsSetByTheProgram) {
  const EnvironmentVariable temp("TEMP", nullptr);
  const EnvironmentVariable tmp("TMP", nullptr);
  const EnvironmentVariable tmpdir("TMPDIR", "/var/tmp/mine");
  EXPECT_EXIT(
      {
        std::ostringstream out;
        RunProgram({"--version"}, nullptr, out, out);
        std::exit(Temp() == "/var/tmp/mine" ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace qv::cli
