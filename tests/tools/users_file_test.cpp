#include "tools/users_file.h"

#include <gtest/gtest.h>

#include "tools/failure.h"

namespace qv::cli {
namespace {

std::string Refusal(const std::string& text) {
  try {
    ParseUsers(text);
    return "accepted";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), ExitStatus::kLocal);
    return failure.Message();
  }
}

TEST(UsersFile, LinesAreUsers) {
  const auto users = ParseUsers("# who may come\n\njoe:secret\r\nann:a:b\nguest:");
  ASSERT_EQ(users.size(), 3u);
  EXPECT_EQ(users[0].name, "joe");
  EXPECT_EQ(users[0].password, "secret");
  EXPECT_EQ(users[1].name, "ann");
  EXPECT_EQ(users[1].password, "a:b");
  EXPECT_EQ(users[2].name, "guest");
  EXPECT_EQ(users[2].password, "");
}

TEST(UsersFile, BadLineIsToldByItsNumber) {
  EXPECT_EQ(Refusal("joe:x\nann\n"), "users file, line 2: not of the form name:password");
  EXPECT_EQ(Refusal(":x\n"), "users file, line 1: not of the form name:password");
  EXPECT_EQ(Refusal("joe:a;b\n"),
            "users file, line 1: the password holds ';' or '=', which a connection string cannot carry");
}

TEST(UsersFile, FileWithoutUsersIsRefused) {
  EXPECT_EQ(Refusal(""), "the users file names no user");
  EXPECT_EQ(Refusal("# nobody\n\n"), "the users file names no user");
}

}  // namespace
}  // namespace qv::cli
