#include "tools/document_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

#include "tests/tools/fresh_directory.h"
#include "tools/failure.h"

namespace qv::cli {
namespace {

std::string Refusal(const std::string& file) {
  try {
    return "accepted as " + CheckDocument(file);
  } catch (const Failure& failure) {
    EXPECT_EQ(failure.Status(), ExitStatus::kLocal);
    return failure.Message();
  }
}

class DocumentFile : public ::testing::Test {
 protected:
  std::string Write(const std::string& name) {
    const std::string path = folder_.Path() + "/" + name;
    std::ofstream(path) << "<a/>";
    return path;
  }
  testing::FreshDirectory folder_;
};

TEST_F(DocumentFile, NameBecomesAFileUrlOfItsPath) {
  const std::string start = "file://" + folder_.Path() + "/";
  EXPECT_EQ(CheckDocument(Write("a-b_c.1~Z.xml")), start + "a-b_c.1~Z.xml");
  EXPECT_EQ(CheckDocument(Write("a b#c?.xml")), start + "a%20b%23c%3F.xml");
  EXPECT_EQ(CheckDocument(Write("100%41.xml")), start + "100%2541.xml");
  EXPECT_EQ(CheckDocument(Write("a\\b:c")), start + "a%5Cb%3Ac");
  EXPECT_EQ(CheckDocument(Write("\xC3\xA9\xFF\x01")), start + "%C3%A9%FF%01");
}

TEST_F(DocumentFile, RelativeNameBecomesAbsolute) {
  Write("a:b.xml");
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_.Path());
  const std::string name = CheckDocument("a:b.xml");
  std::filesystem::current_path(before);
  EXPECT_EQ(name, "file://" + folder_.Path() + "/a%3Ab.xml");
}

TEST_F(DocumentFile, FilesThatCannotBeReadAreRefused) {
  const std::string missing = folder_.Path() + "/missing.xml";
  EXPECT_EQ(Refusal(missing), "cannot read the script document " + missing + ": No such file or directory");
  EXPECT_EQ(Refusal(folder_.Path()),
            "cannot read the script document " + folder_.Path() + ": Is a directory");
  const std::string below = Write("a.xml") + "/b.xml";
  EXPECT_EQ(Refusal(below), "cannot read the script document " + below + ": Not a directory");
  EXPECT_EQ(Refusal("/dev/null"), "cannot read the script document /dev/null: Not a regular file");
}

TEST_F(DocumentFile, PipeIsRefusedAndNotWaitedFor) {
  const std::string pipe = folder_.Path() + "/pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_EQ(Refusal(pipe), "cannot read the script document " + pipe + ": Not a regular file");
}

TEST_F(DocumentFile, FileWithoutTheRightToReadIsRefused) {
  const std::string path = Write("secret.xml");
  ASSERT_EQ(::chmod(path.c_str(), 0), 0);
  const bool root = ::geteuid() == 0;  // who reads every file
  if (root) {
    ASSERT_EQ(::seteuid(65534), 0);
  }
  const std::string refusal = Refusal(path);
  if (root) {
    ASSERT_EQ(::seteuid(0), 0);
  }
  EXPECT_EQ(refusal, "cannot read the script document " + path + ": Permission denied");
}

TEST_F(DocumentFile, SizesBeyondReasonAreRefused) {
  const std::string path = Write("a.xml");
  std::filesystem::resize_file(path, 0);
  EXPECT_EQ(Refusal(path), "the script document " + path + " is empty");
  std::filesystem::resize_file(path, (std::uintmax_t{64} << 20) + 1);
  EXPECT_EQ(Refusal(path), "the script document " + path + " is longer than 64 MB");
  std::filesystem::resize_file(path, std::uintmax_t{64} << 20);
  EXPECT_EQ(CheckDocument(path), "file://" + path);
}

TEST(LooksLikeDocument, BeginsWithItsRootElement) {
  for (const char* text :
       {"<Scriptwell>", " \r\n\t<Scriptwell Language=\"x\">", "<?xml version=\"1.0\"?><Scriptwell/>",
        "<?xml version=\"1.0\"?>\n\n<Scriptwell xmlns=\"a\">"})
    EXPECT_TRUE(LooksLikeDocument(text)) << text;
  for (const char* text : {"", " ", "1", "<a/>", "'<Scriptwell'", "// x\n<Scriptwell>",
                           "<?xml version=\"1.0\"?>", "<?xml ", "<?xml ?> ", "<scriptwell>"})
    EXPECT_FALSE(LooksLikeDocument(text)) << text;
}

}  // namespace
}  // namespace qv::cli
