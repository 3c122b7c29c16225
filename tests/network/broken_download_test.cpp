// DownloadFile when the way or the place of the file breaks: the words, nothing half done, and a next call
// that works.
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "fixtures/ordinary_user.h"
#include "qvscriptwells/native_path.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

namespace fs = std::filesystem;

constexpr char kReset[] = "0x80020009 Recv failure: Connection reset by peer";

std::string HeadFor(const std::string& name) {
  return "HTTP/1.1 200 OK\r\nContent-Disposition: attachment; filename=" + name + "\r\n";
}

class BrokenDownload : public TransferTest {
 protected:
  using Script = std::function<RawScript(const std::string& head)>;

  // Once where a file of the same name stands, once where there is none, and once with no directory given.
  void ExpectFails(const Script& script, const std::string& outcome) {
    files_.Write("target/old.txt", "old");
    for (const char* name : {"old.txt", "fresh.txt"}) {
      const Tree before = AllFiles();
      server_.Expect(script(HeadFor(name)));
      EXPECT_EQ(DownloadHere(), outcome) << name;
      EXPECT_EQ(AllFiles(), before) << name;
      ExpectNextDownloadWorks();
    }
    const Tree before = AllFiles();
    server_.Expect(script(HeadFor("fresh.txt")));
    EXPECT_EQ(Download(ServerUrl() + "/f", WideString()), outcome);
    EXPECT_EQ(AllFiles(), before);
    ExpectNextDownloadWorks();
    ExpectNoDescriptorLeft();
  }
  // The file cannot be put into `directory`.
  void ExpectNoPlace(const std::string& directory, const std::string& outcome) {
    const Tree before = AllFiles();
    server_.Expect(RawScript().ReadRequest().Write(HeadFor("f.txt") + "Content-Length: 3\r\n\r\nabc"));
    EXPECT_EQ(Download(ServerUrl() + "/f", Wide(directory)), outcome);
    EXPECT_EQ(AllFiles(), before);
    ExpectNextDownloadWorks();
    ExpectNoDescriptorLeft();
  }
  // The answer's own bytes, and what lands in the file.
  void ExpectArrives(const RawScript& script, const std::string& content) {
    Tree expected = AllFiles();
    expected["target/f.txt"] = "file " + content;
    server_.Expect(script);
    EXPECT_EQ(DownloadHere(), "ok");
    EXPECT_EQ(NativePath(downloaded_), Target() + "/f.txt");
    EXPECT_EQ(AllFiles(), expected);
  }
};

TEST_F(BrokenDownload, ResetInTheHeadFails) {
  ExpectFails([](const std::string&) { return RawScript().ReadRequest().Write("HTTP/1.1 200 O").Reset(); },
              kReset);
}

TEST_F(BrokenDownload, ResetInTheBodyFails) {
  ExpectFails(
      [](const std::string& head) {
        return RawScript().ReadRequest().Write(head + "Content-Length: 9\r\n\r\nabc").Pause(30).Reset();
      },
      kReset);
}

TEST_F(BrokenDownload, CloseBeforeTheHeadFails) {
  ExpectFails([](const std::string&) { return RawScript().ReadRequest().Close(); },
              "0x80020009 Empty reply from server");
}

TEST_F(BrokenDownload, CloseInTheHeadFails) {
  ExpectFails([](const std::string& head) { return RawScript().ReadRequest().Write(head).Close(); },
              "0x80020009 transfer closed in the head of the answer");
}

TEST_F(BrokenDownload, LengthThatIsTooLongFails) {
  ExpectFails(
      [](const std::string& head) {
        return RawScript().ReadRequest().Write(head + "Content-Length: 9\r\n\r\nabc").Close();
      },
      "0x80020009 transfer closed with 6 bytes remaining to read");
}

TEST_F(BrokenDownload, ChunksWithoutTheirEndFail) {
  ExpectFails(
      [](const std::string& head) {
        return RawScript()
            .ReadRequest()
            .Write(head + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n")
            .Close();
      },
      "0x80020009 transfer closed with outstanding read data remaining");
}

TEST_F(BrokenDownload, StallInTheHeadTimesOut) {
  SetIdleTimeout(100);
  ExpectFails([](const std::string&) { return RawScript().ReadRequest().Write("HTTP/1.1 20").Stall(); },
              "0x80020009 Operation timed out after N milliseconds without a byte");
}

TEST_F(BrokenDownload, StallInTheBodyTimesOut) {
  SetIdleTimeout(100);
  ExpectFails(
      [](const std::string& head) {
        return RawScript().ReadRequest().Write(head + "Content-Length: 9\r\n\r\nabc").Stall();
      },
      "0x80020009 Operation timed out after N milliseconds without a byte");
}

TEST_F(BrokenDownload, LengthThatIsTooShortCutsTheFileAndEndsTheConnection) {
  ExpectArrives(RawScript().ReadRequest().Write(HeadFor("f.txt") +
                                                "Content-Length: 3\r\n\r\nabcHTTP/1.1 200 OK\r\n\r\n"),
                "abc");
  ExpectNextDownloadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(BrokenDownload, BodyWithoutLengthLastsToTheEndOfTheConnection) {
  ExpectArrives(RawScript().ReadRequest().Write(HeadFor("f.txt") + "\r\nto the end").Close(), "to the end");
  ExpectNextDownloadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(BrokenDownload, ChunkedBodyArrivesWithoutItsFraming) {
  ExpectArrives(RawScript().ReadRequest().WriteByteByByte(
                    HeadFor("f.txt") + "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n"),
                "abcde");
  ExpectNoDescriptorLeft();
}

TEST_F(BrokenDownload, OldFileIsReplaced) {
  files_.Write("target/f.txt", "old and longer");
  ExpectArrives(RawScript().ReadRequest().Write(HeadFor("f.txt") + "Content-Length: 3\r\n\r\nnew"), "new");
}

TEST_F(BrokenDownload, LinkAtTheTargetIsReplacedAndNotFollowed) {
  files_.Write("here/victim.txt", "untouched");
  fs::create_symlink("../here/victim.txt", Target() + "/f.txt");
  ExpectArrives(RawScript().ReadRequest().Write(HeadFor("f.txt") + "Content-Length: 3\r\n\r\nnew"), "new");
  EXPECT_EQ(files_.Read("here/victim.txt"), "untouched");
}

TEST_F(BrokenDownload, LinkAtTheTargetSurvivesAFailure) {
  files_.Write("here/victim.txt", "untouched");
  fs::create_symlink("../here/victim.txt", Target() + "/fresh.txt");
  ExpectFails(
      [](const std::string& head) {
        return RawScript().ReadRequest().Write(head + "Content-Length: 9\r\n\r\nabc").Close();
      },
      "0x80020009 transfer closed with 6 bytes remaining to read");
}

TEST_F(BrokenDownload, MissingDirectoryFails) {
  ExpectNoPlace(Target() + "/none",
                "0x80020009 Couldn't write file " + Target() + "/none/f.txt: No such file or directory");
}

TEST_F(BrokenDownload, FileInPlaceOfTheDirectoryFails) {
  const std::string file = files_.Write("target/file", "a file");
  ExpectNoPlace(file, "0x80020009 Couldn't write file " + file + "/f.txt: Not a directory");
}

TEST_F(BrokenDownload, DirectoryInPlaceOfTheFileFails) {
  fs::create_directory(Target() + "/f.txt");
  ExpectNoPlace(Target(), "0x80020009 Couldn't write file " + Target() + "/f.txt: Is a directory");
}

TEST_F(BrokenDownload, PipeInPlaceOfTheFileFails) {
  ASSERT_EQ(mkfifo((Target() + "/f.txt").c_str(), 0600), 0);
  server_.Expect(RawScript().ReadRequest().Write(HeadFor("f.txt") + "Content-Length: 3\r\n\r\nabc"));
  EXPECT_EQ(DownloadHere(), "0x80020009 Couldn't write file " + Target() + "/f.txt: Not a regular file");
  EXPECT_TRUE(fs::is_fifo(Target() + "/f.txt"));
  ExpectNextDownloadWorks();
  ExpectNoDescriptorLeft();
}

TEST_F(BrokenDownload, DirectoryThatMayNotBeWrittenFails) {
  fs::create_directory(files_.Path("locked"));
  fs::permissions(files_.Path("locked"), fs::perms::owner_read | fs::perms::owner_exec);
  const OrdinaryUser nobody(files_.Path());
  ExpectNoPlace(files_.Path("locked"),
                "0x80020009 Couldn't write file " + files_.Path("locked") + "/f.txt: Permission denied");
}

TEST_F(BrokenDownload, MissingTemporaryDirectoryIsAnHttpProblem) {
  temporary_.Set(files_.Path("none").c_str());
  ExpectNoPlace("", "0x80020009 Unknown Http problem.");
}

// For the life of one object files of this process may not grow beyond `bytes`.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &before_);
    const rlimit limit{bytes, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST_F(BrokenDownload, FileThatMayNotGrowFails) {
  const Tree before = AllFiles();
  server_.Expect(RawScript().ReadRequest().Write(HeadFor("f.txt") + "Content-Length: 300000\r\n\r\n" +
                                                 std::string(300'000, 'x')));
  {
    const FileSizeLimit limit(100'000);
    EXPECT_EQ(DownloadHere(), "0x80020009 Couldn't write file " + Target() + "/f.txt: File too large");
  }
  EXPECT_EQ(AllFiles(), before);
  ExpectNextDownloadWorks();
  ExpectNoDescriptorLeft();
}

// A file system of its own, seen by this thread alone. Needs root.
class SmallDisk {
 public:
  explicit SmallDisk(const std::string& path) : path_(path) {
    ready_ = unshare(CLONE_NEWNS) == 0 && mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
             mount("none", path.c_str(), "tmpfs", 0, "size=64k") == 0;
  }
  ~SmallDisk() {
    if (ready_) umount2(path_.c_str(), MNT_DETACH);
  }
  SmallDisk(const SmallDisk&) = delete;
  SmallDisk& operator=(const SmallDisk&) = delete;
  bool IsReady() const { return ready_; }

 private:
  std::string path_;
  bool ready_ = false;
};

TEST_F(BrokenDownload, FullDiskLeavesTheOldFile) {
  const SmallDisk disk(Target());
  if (!disk.IsReady()) GTEST_SKIP() << "no file system may be mounted here";
  files_.Write("target/f.txt", "old");
  const Tree before = AllFiles();
  server_.Expect(RawScript().ReadRequest().Write(HeadFor("f.txt") + "Content-Length: 300000\r\n\r\n" +
                                                 std::string(300'000, 'x')));
  EXPECT_EQ(DownloadHere(), "0x80020009 Couldn't write file " + Target() + "/f.txt: No space left on device");
  EXPECT_EQ(AllFiles(), before);
  ExpectNextDownloadWorks();
  ExpectNoDescriptorLeft();
}

}  // namespace
}  // namespace qv::test
