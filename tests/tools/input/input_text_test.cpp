// Scripts and passwords that are read from files, from standard input and from variables.
#include "tools/input/input_text.h"

#include <unistd.h>

#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "tests/tools/refusal.h"
#include "tools/input/password.h"

namespace qv::cli {
namespace {

using testing::RefusalOf;

TEST(ReadScript, ReadsTheWholeFileWithoutAByteOrderMark) {
  const TemporaryDirectory folder;
  const std::string content = std::string(200000, 'a') + "\r\nend";
  EXPECT_EQ(ReadWhole(folder.Write("a", content), "script"), content);
  EXPECT_EQ(ReadScript(folder.Write("b", "\xEF\xBB\xBF.1+1\n")), ".1+1\n");
}

TEST(ReadScript, UnreadableFileIsRejected) {
  EXPECT_EQ(RefusalOf([] { ReadScript("/nonexistent/a.js"); }),
            "cannot read the script /nonexistent/a.js: No such file or directory");
  EXPECT_EQ(RefusalOf([] { ReadScript("/"); }), "cannot read the script /: Is a directory");
  EXPECT_EQ(RefusalOf([] { ReadScript("/dev/zero"); }), "the script /dev/zero is longer than 64 MB");
}

TEST(CheckScript, RejectsWhatCannotBeSent) {
  const std::pair<std::string, const char*> rows[] = {
      {"", "the script is empty"},
      {"\xEF\xBB\xBF", "the script is empty"},
      {"a\xFF", "the script is not valid UTF-8"},
      {std::string("a\0b", 3), "the script holds a null character, which would end it there"},
      {"'\xC3\xA9'", "accepted"}};
  for (const auto& [script, message] : rows)
    EXPECT_EQ(RefusalOf([text = script] { CheckScript(text); }), message);
}

// The first line in a pipe, or why there is none.
std::string FirstLine(const std::string& content) {
  int ends[2];
  if (::pipe(ends) != 0) return "no pipe";
  EXPECT_EQ(::write(ends[1], content.data(), content.size()), static_cast<ssize_t>(content.size()));
  ::close(ends[1]);
  std::string line;
  const std::string refusal = RefusalOf([&] { line = ReadLine(ends[0], "password"); });
  ::close(ends[0]);
  return refusal == "accepted" ? line : refusal;
}

TEST(ReadLine, ReturnsTheFirstLine) {
  const std::pair<std::string, std::string> rows[] = {
      {"secret\nmore\n", "secret"},
      {"secret\r\n", "secret"},
      {"secret", "secret"},
      {"", ""},
      {std::string(4097, 'x'), "the password is longer than 4096 bytes"},
      {std::string(4096, 'x'), std::string(4096, 'x')}};
  for (const auto& [content, line] : rows) EXPECT_EQ(FirstLine(content), line);
}

class Password : public ::testing::Test {
 protected:
  RunOptions WithFile(const std::string& content) const {
    RunOptions options;
    options.user = "joe";
    options.passwordFile = folder_.Write("password", content);
    return options;
  }

  TemporaryDirectory folder_;
  EnvironmentVariable variable_{"SCRIPTWELLS_PASSWORD", nullptr};
};

TEST_F(Password, ComesFromTheFileOrTheVariable) {
  EXPECT_EQ(FindPassword(RunOptions()), "");
  EXPECT_EQ(FindPassword(WithFile("s3cret\nrest\n")), "s3cret");
  variable_.Set("other");
  EXPECT_EQ(FindPassword(WithFile("s3cret\n")), "s3cret");
  EXPECT_EQ(FindPassword(RunOptions()), "other");
  RunOptions options;
  options.passwordFile = "/nonexistent/pw";
  EXPECT_THROW(FindPassword(options), Failure);
}

}  // namespace
}  // namespace qv::cli
