// Files that are replaced as a whole.
#include "tools/system/replaced_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "fixtures/temporary_directory.h"
#include "tests/tools/refusal.h"

namespace qv::cli {
namespace {

using testing::RefusalOf;

class ReplacedFile : public ::testing::Test {
 protected:
  static unsigned ModeOf(const std::string& path) {
    struct stat facts = {};
    EXPECT_EQ(::stat(path.c_str(), &facts), 0) << path;
    return facts.st_mode & 07777U;
  }

  TemporaryDirectory folder_;
};

TEST_F(ReplacedFile, IsPrivateAndAlone) {
  ReplaceFile(folder_.Path("a"), "one");
  EXPECT_EQ(ModeOf(folder_.Path("a")), 0600U);
  ::chmod(folder_.Path("a").c_str(), 0644);
  ReplaceFile(folder_.Path("a"), "two");
  EXPECT_EQ(folder_.Read("a"), "two");
  EXPECT_EQ(ModeOf(folder_.Path("a")), 0600U);
  EXPECT_EQ(folder_.Count(), 1);
}

TEST_F(ReplacedFile, LinkStays) {
  folder_.Write("kept/target", "one");
  ASSERT_EQ(::symlink("kept/target", folder_.Path("link").c_str()), 0);
  ASSERT_EQ(::symlink("link", folder_.Path("second").c_str()), 0);
  ReplaceFile(folder_.Path("second"), "two");
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.Path("link")));
  EXPECT_TRUE(std::filesystem::is_symlink(folder_.Path("second")));
  EXPECT_EQ(folder_.Read("kept/target"), "two");
}

TEST_F(ReplacedFile, WhatCannotBeWrittenStays) {
  ASSERT_EQ(::symlink("missing", folder_.Path("dangling").c_str()), 0);
  ASSERT_EQ(::symlink("loop", folder_.Path("loop").c_str()), 0);
  folder_.Write("folder/a", "one");
  const std::pair<const char*, const char*> rows[] = {{"dangling", "No such file or directory"},
                                                      {"loop", "Too many levels of symbolic links"},
                                                      {"folder", "Is a directory"},
                                                      {"none/a", "No such file or directory"},
                                                      {"folder/a/b", "Not a directory"}};
  for (const auto& [name, reason] : rows) {
    const std::string path = folder_.Path(name);
    EXPECT_EQ(RefusalOf([&path] { ReplaceFile(path, "x"); }), "cannot write " + path + ": " + reason);
  }
  EXPECT_EQ(folder_.Count(), 3);
}

TEST_F(ReplacedFile, DirectoriesArePrivate) {
  MakeParentDirectories(folder_.Path("a/b/c"));
  EXPECT_EQ(ModeOf(folder_.Path("a")), 0700U);
  EXPECT_EQ(ModeOf(folder_.Path("a/b")), 0700U);
  MakeParentDirectories(folder_.Path("a/b/c"));
  folder_.Write("file", "");
  EXPECT_EQ(RefusalOf([&] { MakeParentDirectories(folder_.Path("file/b/c")); }),
            "cannot write " + folder_.Path("file/b") + ": Not a directory");
}

}  // namespace
}  // namespace qv::cli
