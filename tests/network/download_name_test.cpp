// The name of a downloaded file comes from the server: it may be odd, but it may not lead out of the
// directory.
#include <sys/stat.h>

#include "qvscriptwells/native_path.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

class DownloadName : public TransferTest {
 protected:
  // Each with a directory given and without one.
  void ExpectRefused(const std::string& header,
                     const std::string& outcome = "0x80020009 Unknown Http problem.") {
    SCOPED_TRACE(header);
    for (const WideString& directory : {Wide(Target()), WideString()}) {
      Reply(RawAnswerText("evil", header));
      ExpectNoDownload(ServerUrl() + "/f", directory, outcome);
      ExpectNextDownloadWorks();
    }
    ExpectNoDescriptorLeft();
  }
};

TEST_F(DownloadName, NamesThatLeadElsewhereAreRefused) {
  for (const char* name : {"a/b", "../evil", "/tmp/evil", "../../here/evil", "a\\b", "..\\evil", "\\evil",
                           "/", "\\", "../", R"(..\..\here\evil)", ".", "..", ""})
    ExpectRefused(FileHeader(name));
}

TEST_F(DownloadName, AnswerThatNamesNoFileIsRefused) {
  for (const char* header :
       {"", "Content-Disposition: attachment\r\n", "Content-Disposition:\r\n", "Content-Disposition: =\r\n"})
    ExpectRefused(header);
  ExpectRefused(FileHeader(std::string("a\0b", 3)), "0x80020009 Nul byte in header");
}

TEST_F(DownloadName, NameThatIsTooLongFailsAndLeavesNoNewDirectory) {
  const std::string name(300, 'n');
  Reply(FileAnswer(name, "evil"));
  ExpectNoDownload(ServerUrl() + "/f", Wide(Target()),
                   "0x80020009 Couldn't write file " + Target() + "/" + name + ": File name too long");
  ExpectDownloadsLeaveNothing();
  Reply(FileAnswer(name, "evil"));
  const Tree before = AllFiles();
  EXPECT_NE(Download(ServerUrl() + "/f", u"").find(": File name too long"), std::string::npos);
  EXPECT_EQ(AllFiles(), before);
}

TEST_F(DownloadName, OddNamesThatStayInTheDirectoryAreKept) {
  const std::string longest(255, 'n');
  const struct {
    std::string given;
    std::string name;
  } rows[] = {{longest, longest},
              {"\"a b.txt\"", "\"a b.txt\""},
              {"...", "..."},
              {"-rf", "-rf"},
              {"~", "~"},
              {"$(id)", "$(id)"},
              {"..%2Fevil", "..%2Fevil"},
              {"c:evil", "c:evil"},
              {"a.txt; size=4", "4"}};  // what follows the last equals sign
  for (const auto& row : rows) {
    SCOPED_TRACE(row.given);
    Reply(FileAnswer(row.given, "good"));
    ExpectDownload(row.name, "good");
    CloseKeptConnections();
    ExpectDownloadsLeaveNothing();
  }
}

TEST_F(DownloadName, NameBeyondAsciiIsWrittenInUtf8) {
  Reply(FileAnswer("gr\xC3\xBC\xC3\x9F.txt", "good"));
  EXPECT_EQ(DownloadHere(), "ok");
  EXPECT_EQ(NativePath(downloaded_), Target() + "/gr\xC3\xBC\xC3\x9F.txt");
  EXPECT_EQ(files_.Read("target/gr\xC3\xBC\xC3\x9F.txt"), "good");
}

TEST_F(DownloadName, NewDirectoryIsOnlyTheUsers) {
  Reply(FileAnswer("a.txt", "good"));
  EXPECT_EQ(Download(ServerUrl() + "/f", u""), "ok");
  const std::string path = NativePath(downloaded_);
  EXPECT_EQ(path.rfind(files_.Path("temp") + "/", 0), 0U) << path;
  EXPECT_EQ(path.substr(path.size() - 6), "/a.txt");
  struct stat facts {};
  ASSERT_EQ(stat(path.substr(0, path.size() - 6).c_str(), &facts), 0);
  EXPECT_EQ(facts.st_mode & 0777U, 0700U);
}

}  // namespace
}  // namespace qv::test
