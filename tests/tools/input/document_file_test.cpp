// Script documents: files that are rejected, and scripts that look like one.
#include "tools/input/document_file.h"

#include <sys/stat.h>

#include <filesystem>

#include "fixtures/ordinary_user.h"
#include "fixtures/temporary_directory.h"
#include "tests/tools/refusal.h"

namespace qv::cli {
namespace {

std::string Refusal(const std::string& file) {
  return testing::RefusalOf([&] { CheckDocument(file); });
}

class DocumentFile : public ::testing::Test {
 protected:
  std::string Write(const std::string& name) const { return folder_.Write(name, "<a/>"); }

  TemporaryDirectory folder_;
};

TEST_F(DocumentFile, UnreadableFileIsRejected) {
  const std::string pipe = folder_.Path("pipe");
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  const std::pair<std::string, const char*> rows[] = {
      {folder_.Path("missing.xml"), "No such file or directory"},
      {folder_.Path(), "Is a directory"},
      {Write("a.xml") + "/b.xml", "Not a directory"},
      {"/dev/null", "Not a regular file"},
      {pipe, "Not a regular file"}};
  for (const auto& [file, reason] : rows)
    EXPECT_EQ(Refusal(file), "cannot read the script document " + file + ": " + reason);
  const std::string path = Write("secret.xml");
  ASSERT_EQ(::chmod(path.c_str(), 0), 0);
  const OrdinaryUser user(folder_.Path());
  EXPECT_EQ(Refusal(path), "cannot read the script document " + path + ": Permission denied");
}

TEST_F(DocumentFile, EmptyAndLongFilesAreRejected) {
  const std::string path = Write("a.xml");
  std::filesystem::resize_file(path, 0);
  EXPECT_EQ(Refusal(path), "the script document " + path + " is empty");
  std::filesystem::resize_file(path, (std::uintmax_t{64} << 20) + 1);
  EXPECT_EQ(Refusal(path), "the script document " + path + " is longer than 64 MB");
  std::filesystem::resize_file(path, std::uintmax_t{64} << 20);
  EXPECT_EQ(Refusal(path), "accepted");
}

TEST(LooksLikeDocument, IfItBeginsWithTheRootElement) {
  for (const char* text :
       {"<Scriptwell>", " \r\n\t<Scriptwell Language=\"x\">", "<?xml version=\"1.0\"?><Scriptwell/>",
        "<?xml version=\"1.0\"?>\n\n<Scriptwell xmlns=\"a\">",
        "<?xml version=\"1.0\"?>\n<!-- a -->\n<!-- b --><!DOCTYPE Scriptwell [", "<!----><Scriptwell>"})
    EXPECT_TRUE(LooksLikeDocument(text)) << text;
  for (const char* text :
       {"", " ", "1", "<a/>", "'<Scriptwell'", "// x\n<Scriptwell>", "<?xml version=\"1.0\"?>", "<?xml ",
        "<?xml ?> ", "<scriptwell>", "<!-- <Scriptwell>", "<!DOCTYPE a>"})
    EXPECT_FALSE(LooksLikeDocument(text)) << text;
}

}  // namespace
}  // namespace qv::cli
