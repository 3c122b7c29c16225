// Files that are opened only when they are regular, and the texts of the system's errors.
#include "system/regular_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>

#include "fixtures/temporary_directory.h"
#include "system/system_error_text.h"

namespace qv {
namespace {

class RegularFileTest : public testing::Test {
 protected:
  TemporaryDirectory directory_;
};

TEST_F(RegularFileTest, OpensWithItsSizeAndIsNotInherited) {
  const RegularFile file = OpenRegularFile(directory_.Write("five", "12345"));
  EXPECT_EQ(file.error, 0);
  EXPECT_EQ(file.size, 5);
  EXPECT_EQ(fcntl(file.descriptor.Get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
  std::string bytes = ">";
  EXPECT_EQ(ReadToEnd(file.descriptor.Get(), 100, bytes), 0);
  EXPECT_EQ(bytes, ">12345");
}

TEST_F(RegularFileTest, FailureHasTheSystemsReason) {
  const RegularFile file = OpenRegularFile(directory_.Path("none"));
  EXPECT_EQ(file.error, ENOENT);
  EXPECT_FALSE(file.descriptor.IsOpen());
  std::string bytes;
  EXPECT_EQ(ReadToEnd(-1, 10, bytes), EBADF);
}

TEST_F(RegularFileTest, OthersAreRefusedAndNotWaitedFor) {
  ASSERT_EQ(mkfifo(directory_.Path("pipe").c_str(), 0600), 0);
  for (const std::string& path : {directory_.Path(), directory_.Path("pipe"), std::string("/dev/zero")})
    EXPECT_EQ(OpenRegularFile(path).error, kNotRegular) << path;
}

TEST_F(RegularFileTest, ReadingStopsAfterTheLimit) {
  const RegularFile file = OpenRegularFile(directory_.Write("large", std::string(300000, 'x')));
  std::string bytes;
  EXPECT_EQ(ReadToEnd(file.descriptor.Get(), 10, bytes), 0);
  EXPECT_GT(bytes.size(), 10U);
  EXPECT_LT(bytes.size(), 300000U);
}

TEST(SystemErrorText, IsTheSystemsOrTheNumber) {
  EXPECT_EQ(SystemErrorText(ENOENT), "No such file or directory");
  EXPECT_EQ(SystemErrorText(EACCES), "Permission denied");
  EXPECT_EQ(SystemErrorText(4711), "Unknown error 4711");
  EXPECT_EQ(SystemErrorText(-1), "Unknown error -1");
}

}  // namespace
}  // namespace qv
