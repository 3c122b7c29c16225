#include "tools/password.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>

#include "tools/failure.h"

namespace qv::cli {
namespace {

std::string Refusal(const std::string& value) {
  try {
    CheckCredential(value, "user name");
    return "accepted";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), ExitStatus::kLocal);
    return failure.Message();
  }
}

TEST(Credential, SeparatorsOfTheConnectionStringAreRefused) {
  EXPECT_EQ(Refusal("a;b"), "the user name holds ';' or '=', which a connection string cannot carry");
  EXPECT_EQ(Refusal("a=b"), "the user name holds ';' or '=', which a connection string cannot carry");
  EXPECT_EQ(Refusal("=a"), "the user name holds ';' or '=', which a connection string cannot carry");
}

TEST(Credential, OddBytesAreRefused) {
  EXPECT_EQ(Refusal("a\nb"), "the user name holds a control character");
  EXPECT_EQ(Refusal(std::string("a\0b", 3)), "the user name holds a control character");
  EXPECT_EQ(Refusal("a\xFF"), "the user name is not valid UTF-8");
}

TEST(Credential, EverythingElsePasses) {
  EXPECT_EQ(Refusal(""), "accepted");
  EXPECT_EQ(Refusal("J\xC3\xB6rg & <Co> \"x\""), "accepted");
}

class Password : public ::testing::Test {
 protected:
  void SetUp() override { ::unsetenv("SCRIPTWELLS_PASSWORD"); }
  void TearDown() override {
    ::unsetenv("SCRIPTWELLS_PASSWORD");
    std::remove(path_.c_str());
  }
  RunOptions WithFile(const std::string& content) {
    std::ofstream(path_, std::ios::binary) << content;
    RunOptions options;
    options.user = "joe";
    options.passwordFile = path_;
    return options;
  }
  std::string path_ = ::testing::TempDir() + "password_test." + std::to_string(::getpid());
};

TEST_F(Password, FileGivesItsFirstLine) {
  EXPECT_EQ(FindPassword(WithFile("s3cret\nrest\n")), "s3cret");
}

TEST_F(Password, FileWinsOverTheVariable) {
  ::setenv("SCRIPTWELLS_PASSWORD", "other", 1);
  EXPECT_EQ(FindPassword(WithFile("s3cret\n")), "s3cret");
}

TEST_F(Password, VariableIsTaken) {
  ::setenv("SCRIPTWELLS_PASSWORD", "from outside", 1);
  EXPECT_EQ(FindPassword(RunOptions()), "from outside");
}

TEST_F(Password, WithoutUserNobodyIsAsked) {
  EXPECT_EQ(FindPassword(RunOptions()), "");
}

TEST_F(Password, MissingFileIsToldWithoutTheVariableSteppingIn) {
  ::setenv("SCRIPTWELLS_PASSWORD", "other", 1);
  RunOptions options;
  options.passwordFile = "/nonexistent/pw";
  EXPECT_THROW(FindPassword(options), Failure);
}

TEST_F(Password, BadPasswordIsNotRepeated) {
  try {
    FindPassword(WithFile("my;secret\n"));
    FAIL() << "a password was taken that cannot travel";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Message(), "the password holds ';' or '=', which a connection string cannot carry");
  }
}

}  // namespace
}  // namespace qv::cli
