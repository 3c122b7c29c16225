// The name of a downloaded file comes from the server: it may be odd, but it may not lead out of the
// directory.
#include <sys/stat.h>

#include "qvscriptwells/native_path.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

constexpr char kProblem[] = "0x80020009 Unknown Http problem.";

class DownloadName : public TransferTest {
 protected:
  // Each with a directory given and without one.
  void ExpectRefused(const std::string& header, const std::string& outcome = kProblem) {
    for (const WideString& directory : {Wide(Target()), WideString()}) {
      const Tree before = AllFiles();
      server_.Expect(RawScript().ReadRequest().Write(RawAnswerText("evil", header)));
      EXPECT_EQ(Download(ServerUrl() + "/f", directory), outcome) << header;
      EXPECT_EQ(AllFiles(), before) << header;
      ExpectNextDownloadWorks();
    }
    ExpectNoDescriptorLeft();
  }
  void ExpectRefusedName(const std::string& name) {
    ExpectRefused("Content-Disposition: attachment; filename=" + name + "\r\n");
  }
  // The file lands under `name`.
  void ExpectLands(const std::string& disposition, const std::string& name) {
    Tree expected = AllFiles();
    expected["target/" + name] = "file good";
    server_.Expect(RawScript().ReadRequest().Write(
        RawAnswerText("good", "Content-Disposition: " + disposition + "\r\n")));
    EXPECT_EQ(DownloadHere(), "ok");
    EXPECT_EQ(downloaded_, Wide(Target() + "\\" + name));
    EXPECT_EQ(AllFiles(), expected);
    CloseKeptConnections();
    ExpectNextDownloadWorks();
    ExpectNoDescriptorLeft();
  }
};

TEST_F(DownloadName, SeparatorsAreRefused) {
  for (const char* name : {"a/b", "../evil", "/tmp/evil", "../../here/evil", "a\\b", "..\\evil", "\\evil",
                           "/", "\\", "../", "..\\..\\here\\evil"})
    ExpectRefusedName(name);
}

TEST_F(DownloadName, NamesOfDirectoriesAreRefused) {
  ExpectRefusedName(".");
  ExpectRefusedName("..");
}

TEST_F(DownloadName, EmptyNameIsRefused) {
  ExpectRefusedName("");
}

TEST_F(DownloadName, AnswerThatNamesNoFileIsRefused) {
  ExpectRefused("");
  ExpectRefused("Content-Disposition: attachment\r\n");
  ExpectRefused("Content-Disposition:\r\n");
  ExpectRefused("Content-Disposition: =\r\n");
}

TEST_F(DownloadName, NulInTheHeadIsNoHttp) {
  ExpectRefused(std::string("Content-Disposition: attachment; filename=a\0b\r\n", 47),
                "0x80020009 Nul byte in header");
}

TEST_F(DownloadName, NameThatIsTooLongFails) {
  const std::string name(300, 'n');
  server_.Expect(RawScript().ReadRequest().Write(
      RawAnswerText("evil", "Content-Disposition: attachment; filename=" + name + "\r\n")));
  const Tree before = AllFiles();
  EXPECT_EQ(DownloadHere(),
            "0x80020009 Couldn't write file " + Target() + "/" + name + ": File name too long");
  EXPECT_EQ(AllFiles(), before);
  ExpectNextDownloadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(DownloadName, NameThatIsTooLongLeavesNoNewDirectory) {
  server_.Expect(RawScript().ReadRequest().Write(
      RawAnswerText("evil", "Content-Disposition: attachment; filename=" + std::string(300, 'n') + "\r\n")));
  const Tree before = AllFiles();
  EXPECT_NE(Download(ServerUrl() + "/f", WideString()).find(": File name too long"), std::string::npos);
  EXPECT_EQ(AllFiles(), before);
}

TEST_F(DownloadName, LongestNameOfTheSystemLands) {
  const std::string name(255, 'n');
  ExpectLands("attachment; filename=" + name, name);
}

TEST_F(DownloadName, QuotesAreKept) {
  ExpectLands("attachment; filename=\"a b.txt\"", "\"a b.txt\"");
}

TEST_F(DownloadName, OddNamesThatStayInTheDirectoryLand) {
  ExpectLands("attachment; filename=...", "...");
  ExpectLands("attachment; filename=-rf", "-rf");
  ExpectLands("attachment; filename=~", "~");
  ExpectLands("attachment; filename=$(id)", "$(id)");
  ExpectLands("attachment; filename=..%2Fevil", "..%2Fevil");
  ExpectLands("attachment; filename=c:evil", "c:evil");
}

TEST_F(DownloadName, TextBehindTheLastEqualsSignIsTheName) {
  ExpectLands("attachment; filename=a.txt; size=4", "4");
}

TEST_F(DownloadName, NameBeyondAsciiLandsInUtf8) {
  server_.Expect(RawScript().ReadRequest().Write(
      RawAnswerText("good", "Content-Disposition: attachment; filename=gr\xC3\xBC\xC3\x9F.txt\r\n")));
  EXPECT_EQ(DownloadHere(), "ok");
  EXPECT_EQ(NativePath(downloaded_), Target() + "/gr\xC3\xBC\xC3\x9F.txt");
  EXPECT_EQ(files_.Read("target/gr\xC3\xBC\xC3\x9F.txt"), "good");
}

TEST_F(DownloadName, NewDirectoryIsOnlyTheUsers) {
  server_.Expect(RawScript().ReadRequest().Write(
      RawAnswerText("good", "Content-Disposition: attachment; filename=a.txt\r\n")));
  EXPECT_EQ(Download(ServerUrl() + "/f", WideString()), "ok");
  const std::string path = NativePath(downloaded_);
  EXPECT_EQ(path.rfind(files_.Path("temp") + "/", 0), 0u) << path;
  EXPECT_EQ(path.substr(path.size() - 6), "/a.txt");
  struct stat facts {};
  ASSERT_EQ(stat(path.substr(0, path.size() - 6).c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777u, 0700u);
}

}  // namespace
}  // namespace qv::test
