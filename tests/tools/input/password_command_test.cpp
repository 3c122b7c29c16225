// Passwords that a command prints.
#include "tools/input/password_command.h"

#include <gtest/gtest.h>

#include "fixtures/temporary_directory.h"
#include "tests/tools/refusal.h"

namespace qv::cli {
namespace {

using testing::Holds;
using testing::RefusalOf;

std::string Refusal(const std::string& command) {
  return RefusalOf([&] { PasswordOfCommand(command); });
}

TEST(PasswordCommand, FirstLineIsThePassword) {
  EXPECT_EQ(PasswordOfCommand("echo s3cret"), "s3cret");
  EXPECT_EQ(PasswordOfCommand("printf 's3 cret'"), "s3 cret");
  EXPECT_EQ(PasswordOfCommand("printf 'a\\r\\nb\\n'"), "a");
  EXPECT_EQ(PasswordOfCommand("echo first; yes | head -n 5000"), "first");
  EXPECT_EQ(PasswordOfCommand("a='x y'; echo \"$a\" | tr x z"), "z y");
}

TEST(PasswordCommand, HasNoInput) {
  EXPECT_EQ(PasswordOfCommand("cat; echo end"), "end");
}

TEST(PasswordCommand, EndsOnBrokenPipesAsUsual) {
  EXPECT_EQ(PasswordOfCommand("yes | head -n 1; echo"), "y");
  EXPECT_EQ(PasswordOfCommand("trap | wc -l | tr -d ' '"), "0");
}

TEST(PasswordCommand, FailureIsReportedWithoutItsOutput) {
  const std::pair<const char*, const char*> rows[] = {
      {"echo canary77; exit 3", "the password command failed with exit status 3"},
      {"false", "the password command failed with exit status 1"},
      {"echo canary77; /nonexistent/command 2>/dev/null",
       "the password command failed with exit status 127: there is no such command"},
      {"echo canary77; kill -9 $$", "the password command was ended by signal 9"},
      {"true", "the password command printed no password"},
      {"echo; echo canary77", "the password command printed no password"},
      {"echo canary77; yes canary77", "the password command printed more than 64 kB"}};
  for (const auto& [command, message] : rows) EXPECT_EQ(Refusal(command), message) << command;
  EXPECT_FALSE(Holds(Refusal("yes canary77 | tr -d '\\n' | head -c 5000"), "canary77"));
}

}  // namespace
}  // namespace qv::cli
