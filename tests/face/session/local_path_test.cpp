// Files and directories that are checked before a call.
#include "face/session/local_path.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "face/session/refusal.h"
#include "fixtures/current_directory.h"
#include "fixtures/temporary_directory.h"

namespace scriptwells {
namespace {

class LocalPath : public ::testing::Test {
 protected:
  std::string Document(const std::string& name) const { return DocumentUrl(folder_.Write(name, "<a/>")); }
  static std::string Unreadable(const std::string& file) {
    return test::RefusalOf(Phase::kLocalFile, [&] { ReadablePath(file, "file"); });
  }
  static std::string UnusableTarget(const std::string& directory) {
    return test::RefusalOf(Phase::kLocalFile, [&] { TargetDirectory(directory); });
  }
  static std::string UnusableDocument(const std::string& file) {
    return test::RefusalOf(Phase::kLocalFile, [&] { DocumentUrl(file); });
  }

  qv::TemporaryDirectory folder_;
  std::string missing_ = folder_.Path("missing");
};

TEST_F(LocalPath, DocumentIsAFileUrl) {
  const std::pair<const char*, const char*> rows[] = {{"a-b_c.1~Z.xml", "a-b_c.1~Z.xml"},
                                                      {"a b#c?.xml", "a%20b%23c%3F.xml"},
                                                      {"100%41.xml", "100%2541.xml"},
                                                      {"a\\b:c", "a%5Cb%3Ac"},
                                                      {"\xC3\xA9\xFF\x01", "%C3%A9%FF%01"}};
  for (const auto& [name, encoded] : rows)
    EXPECT_EQ(Document(name), "file://" + folder_.Path() + "/" + encoded);
  folder_.Write("a:b.xml", "<a/>");  // a relative name becomes absolute
  const qv::CurrentDirectory inside(folder_.Path());
  EXPECT_EQ(DocumentUrl("a:b.xml"), "file://" + folder_.Path() + "/a%3Ab.xml");
}

TEST_F(LocalPath, EmptyAndLongDocumentsAreRefused) {
  const std::string path = folder_.Write("a.xml", "<a/>");
  std::filesystem::resize_file(path, 0);
  EXPECT_EQ(UnusableDocument(path), "the script document " + path + " is empty");
  std::filesystem::resize_file(path, (std::uintmax_t{64} << 20) + 1);
  EXPECT_EQ(UnusableDocument(path), "the script document " + path + " is longer than 64 MB");
}

TEST_F(LocalPath, FilesThatCannotBeReadAreRefused) {
  const std::string pipe = folder_.Path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const std::string odd = folder_.Write("a\\b", "text");
  const std::pair<std::string, std::string> rows[] = {
      {missing_, "cannot read the file " + missing_ + ": No such file or directory"},
      {folder_.Path(), "cannot read the file " + folder_.Path() + ": Is a directory"},
      {pipe, "cannot read the file " + pipe + ": Not a regular file"},
      {"", "the file has no name"},
      {std::string("a\0b", 3), std::string("cannot read the file a\0b: No such file or directory", 51)},
      {odd, "the path " + odd + " holds '\\', which the library takes for '/'; rename or copy the file"}};
  for (const auto& [file, message] : rows) EXPECT_EQ(Unreadable(file), message);
}

TEST_F(LocalPath, TargetDirectoryBecomesAbsolute) {
  std::filesystem::create_directory(folder_.Path("sub"));
  const qv::CurrentDirectory inside(folder_.Path());
  const std::pair<const char*, std::string> rows[] = {
      {"", folder_.Path()}, {".", folder_.Path()}, {"sub//", folder_.Path("sub")}, {"/", "/"}};
  for (const auto& [given, target] : rows) EXPECT_EQ(TargetDirectory(given), target) << given;
}

TEST_F(LocalPath, UnusableTargetDirectoryIsRefused) {
  const std::string file = folder_.Write("file", "text");
  const std::string odd = folder_.Path("a\\b");
  std::filesystem::create_directory(odd);
  const std::pair<std::string, std::string> rows[] = {
      {missing_, "cannot save into " + missing_ + ": No such file or directory"},
      {file, "cannot save into " + file + ": Not a directory"},
      {odd, "cannot save into " + odd + ": its path holds '\\', which the library takes for '/'"},
      {folder_.Path("\xFF"), "the target directory's path is not valid UTF-8"}};
  for (const auto& [directory, message] : rows) EXPECT_EQ(UnusableTarget(directory), message);
}

}  // namespace
}  // namespace scriptwells
