#include "tools/temp_directory.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <sstream>

#include "tools/program.h"

namespace qv::cli {
namespace {

class TempDirectory : public ::testing::Test {
 protected:
  void SetUp() override {
    for (const char* name : kNames) {
      const char* value = std::getenv(name);
      if (value != nullptr) before_[name] = value;
      ::unsetenv(name);
    }
  }
  void TearDown() override {
    for (const char* name : kNames) ::unsetenv(name);
    for (const auto& [name, value] : before_) ::setenv(name.c_str(), value.c_str(), 1);
  }
  static std::string Temp() {
    const char* value = std::getenv("TEMP");
    return value != nullptr ? value : "(none)";
  }

  static constexpr const char* kNames[] = {"TEMP", "TMP", "TMPDIR"};
  std::map<std::string, std::string> before_;
};

TEST_F(TempDirectory, UsualVariableStandsIn) {
  ::setenv("TMPDIR", "/var/tmp/mine", 1);
  SetTempDirectory();
  EXPECT_EQ(Temp(), "/var/tmp/mine");
}

TEST_F(TempDirectory, NothingMeansTmp) {
  SetTempDirectory();
  EXPECT_EQ(Temp(), "/tmp");
}

TEST_F(TempDirectory, EmptyVariablesCountAsMissing) {
  for (const char* name : kNames) ::setenv(name, "", 1);
  SetTempDirectory();
  EXPECT_EQ(Temp(), "/tmp");
}

TEST_F(TempDirectory, GivenVariableStays) {
  ::setenv("TEMP", "/a", 1);
  ::setenv("TMPDIR", "/b", 1);
  SetTempDirectory();
  EXPECT_EQ(Temp(), "/a");
}

TEST_F(TempDirectory, OtherVariableIsEnough) {
  ::setenv("TMP", "/a", 1);
  ::setenv("TMPDIR", "/b", 1);
  SetTempDirectory();
  EXPECT_EQ(Temp(), "(none)");
}

// In a process of its own, since a program watches for signals once.
TEST_F(TempDirectory, ProgramSetsItAtItsStart) {
  ::setenv("TMPDIR", "/var/tmp/mine", 1);
  EXPECT_EXIT(
      {
        std::ostringstream out;
        std::ostringstream err;
        RunProgram({"--version"}, out, err);
        std::exit(Temp() == "/var/tmp/mine" ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace qv::cli
