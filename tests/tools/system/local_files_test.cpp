// Files and directories that are checked before any request is sent.
#include "tools/system/local_files.h"

#include <sys/stat.h>

#include <filesystem>

#include "fixtures/current_directory.h"
#include "fixtures/temporary_directory.h"
#include "tests/tools/refusal.h"
#include "tests/tools/words.h"

namespace qv::cli {
namespace {

using testing::RefusalOf;

std::string Unreadable(const std::string& file) {
  return RefusalOf([&] { CheckReadable(file, "file"); });
}
std::string UnusableTarget(const std::string& directory) {
  return RefusalOf([&] { CheckTargetDirectory(directory); });
}

class LocalFiles : public ::testing::Test {
 protected:
  TemporaryDirectory folder_;
  std::string missing_ = folder_.Path("missing");
};

TEST_F(LocalFiles, ReadableFileHasASize) {
  EXPECT_EQ(CheckReadable(folder_.Write("a", "12345"), "file"), 5);
  EXPECT_EQ(CheckReadable(folder_.Write("b", ""), "file"), 0);
  const std::string pipe = folder_.Path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const std::pair<std::string, const char*> rows[] = {{missing_, ": No such file or directory"},
                                                      {folder_.Path(), ": Is a directory"},
                                                      {pipe, ": Not a regular file"}};
  for (const auto& [file, reason] : rows)
    EXPECT_EQ(Unreadable(file), "cannot read the file " + file + reason);
  EXPECT_EQ(RefusalOf([] { AbsolutePath("", "file"); }), "the file has no name");
  EXPECT_EQ(RefusalOf([] { AbsolutePath(std::string("a\0b", 3), "file"); }),
            std::string("cannot read the file a\0b: No such file or directory", 51));
}

TEST_F(LocalFiles, TargetDirectoryBecomesAbsolute) {
  std::filesystem::create_directory(folder_.Path("sub"));
  const CurrentDirectory inside(folder_.Path());
  const std::pair<const char*, std::string> rows[] = {
      {"", folder_.Path()}, {".", folder_.Path()}, {"sub//", folder_.Path("sub")}, {"/", "/"}};
  for (const auto& [given, target] : rows) EXPECT_EQ(CheckTargetDirectory(given), target) << given;
}

TEST_F(LocalFiles, UnusableTargetDirectoryIsRejected) {
  const std::string file = folder_.Write("file", "text");
  const std::string odd = folder_.Path("a\\b");
  std::filesystem::create_directory(odd);
  const std::pair<std::string, std::string> rows[] = {
      {missing_, "cannot save into " + missing_ + ": No such file or directory"},
      {file, "cannot save into " + file + ": Not a directory"},
      {odd, "cannot save into " + odd + ": its path holds '\\', which the library takes for '/'"},
      {folder_.Path("\xFF"), "the target directory's path is not valid UTF-8"},
  };
  for (const auto& [directory, message] : rows) EXPECT_EQ(UnusableTarget(directory), message);
  // The kernel's own directories take no files, not even from the superuser, but the reasons differ.
  EXPECT_TRUE(testing::StartsWith(UnusableTarget("/proc/self"), "cannot save into /proc/self: "));
}

}  // namespace
}  // namespace qv::cli
