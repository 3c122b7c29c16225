#include "system/regular_file.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cerrno>
#include <string>

#include "fixtures/temporary_directory.h"

namespace qv {
namespace {

class RegularFileTest : public testing::Test {
 protected:
  TemporaryDirectory directory_;
};

TEST_F(RegularFileTest, OpensWithItsSize) {
  const RegularFile file = OpenRegularFile(directory_.Write("five", "12345"));
  EXPECT_EQ(file.error, 0);
  EXPECT_EQ(file.size, 5);
  std::string bytes = ">";
  EXPECT_EQ(ReadToEnd(file.descriptor.Get(), 100, bytes), 0);
  EXPECT_EQ(bytes, ">12345");
}

TEST_F(RegularFileTest, IsNotInheritedByOtherPrograms) {
  const RegularFile file = OpenRegularFile(directory_.Write("f", "x"));
  EXPECT_EQ(fcntl(file.descriptor.Get(), F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

TEST_F(RegularFileTest, MissingOneTellsTheSystemsReason) {
  const RegularFile file = OpenRegularFile(directory_.Path("none"));
  EXPECT_EQ(file.error, ENOENT);
  EXPECT_FALSE(file.descriptor.IsOpen());
}

TEST_F(RegularFileTest, DirectoryIsRefused) {
  EXPECT_EQ(OpenRegularFile(directory_.Path()).error, kNotRegular);
}

TEST_F(RegularFileTest, DeviceIsRefused) {
  EXPECT_EQ(OpenRegularFile("/dev/zero").error, kNotRegular);
}

TEST_F(RegularFileTest, PipeIsRefusedAndNotWaitedFor) {
  ASSERT_EQ(mkfifo(directory_.Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(OpenRegularFile(directory_.Path("pipe")).error, kNotRegular);
}

TEST_F(RegularFileTest, ReadingStopsBehindTheLimit) {
  const RegularFile file = OpenRegularFile(directory_.Write("large", std::string(300000, 'x')));
  std::string bytes;
  EXPECT_EQ(ReadToEnd(file.descriptor.Get(), 10, bytes), 0);
  EXPECT_GT(bytes.size(), 10U);
  EXPECT_LT(bytes.size(), 300000U);
}

TEST_F(RegularFileTest, DescriptorThatCannotBeReadTellsTheSystemsReason) {
  std::string bytes;
  EXPECT_EQ(ReadToEnd(-1, 10, bytes), EBADF);
}

}  // namespace
}  // namespace qv
