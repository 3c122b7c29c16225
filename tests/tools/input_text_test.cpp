#include "tools/input_text.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

#include "tools/failure.h"

namespace qv::cli {
namespace {

class InputText : public ::testing::Test {
 protected:
  void TearDown() override { std::remove(path_.c_str()); }
  const std::string& File(const std::string& content) {
    std::ofstream(path_, std::ios::binary) << content;
    return path_;
  }
  std::string path_ = ::testing::TempDir() + "input_text_test." + std::to_string(::getpid());
};

std::string Refusal(const std::string& text) {
  try {
    CheckScript(text);
    return "accepted";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), ExitStatus::kLocal);
    return failure.Message();
  }
}

TEST_F(InputText, FileIsReadWhole) {
  const std::string content = std::string(200000, 'a') + "\r\nend";
  EXPECT_EQ(ReadWhole(File(content), "script"), content);
}

TEST_F(InputText, ByteOrderMarkIsLeftOut) {
  EXPECT_EQ(ReadScript(File("\xEF\xBB\xBF"
                            "1+1\n")),
            "1+1\n");
}

TEST_F(InputText, MissingFileIsTold) {
  try {
    ReadScript("/nonexistent/a.js");
    FAIL() << "a missing file was read";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Message(), "cannot read the script /nonexistent/a.js: No such file or directory");
  }
}

TEST_F(InputText, FolderIsNoScript) {
  EXPECT_THROW(ReadScript("/"), Failure);
}

TEST_F(InputText, EndlessFileIsRefused) {
  try {
    ReadScript("/dev/zero");
    FAIL() << "an endless file was read";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Message(), "the script /dev/zero is longer than 64 MB");
  }
}

TEST_F(InputText, ScriptThatCannotTravelIsRefused) {
  EXPECT_EQ(Refusal(""), "the script is empty");
  EXPECT_EQ(Refusal("\xEF\xBB\xBF"), "the script is empty");
  EXPECT_EQ(Refusal("a\xFF"), "the script is not valid UTF-8");
  EXPECT_EQ(Refusal(std::string("a\0b", 3)), "the script holds a null character, which would end it there");
  EXPECT_EQ(Refusal("'\xC3\xA9'"), "accepted");
}

class Lines : public ::testing::Test {
 protected:
  // The first line of what stands in a pipe.
  static std::string FirstLine(const std::string& content) {
    int ends[2];
    if (::pipe(ends) != 0) return "no pipe";
    EXPECT_EQ(::write(ends[1], content.data(), content.size()), static_cast<ssize_t>(content.size()));
    ::close(ends[1]);
    std::string line;
    try {
      line = ReadLine(ends[0], "password");
    } catch (const Failure& failure) {
      line = "refused: " + failure.Message();
    }
    ::close(ends[0]);
    return line;
  }
};

TEST_F(Lines, LineEndDoesNotCount) {
  EXPECT_EQ(FirstLine("secret\nmore\n"), "secret");
  EXPECT_EQ(FirstLine("secret\r\n"), "secret");
  EXPECT_EQ(FirstLine("secret"), "secret");
  EXPECT_EQ(FirstLine(""), "");
}

TEST_F(Lines, EndlessLineIsRefused) {
  EXPECT_EQ(FirstLine(std::string(4097, 'x')), "refused: the password is longer than 4096 bytes");
  EXPECT_EQ(FirstLine(std::string(4096, 'x')), std::string(4096, 'x'));
}

}  // namespace
}  // namespace qv::cli
