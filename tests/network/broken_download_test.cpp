// DownloadFile when the connection or the place of the file breaks: the message, no half file, and a next
// call that works.
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "fixtures/ordinary_user.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

namespace fs = std::filesystem;

class BrokenDownload : public TransferTest {
 protected:
  using Script = std::function<RawScript(const std::string& head)>;

  // Once where a file of the same name is, once where there is none, and once with no directory given.
  // `script` is given the start of a head that names a file.
  void ExpectFails(const Script& script, const std::string& outcome) {
    files_.Write("target/old.txt", "old");
    for (const char* name : {"old.txt", "fresh.txt", ""}) {
      SCOPED_TRACE(name);
      const bool here = *name != '\0';
      server_.Expect(script(OkText(FileHeader(here ? name : "fresh.txt"))));
      ExpectNoDownload(ServerUrl() + "/f", here ? Wide(Target()) : WideString(), "0x80020009 " + outcome);
      ExpectNextDownloadWorks();
    }
    ExpectNoDescriptorLeft();
  }
  // The server's last step is `end`, after these bytes.
  void ExpectFails(const std::string& rest, RawScript& (RawScript::*end)(), const std::string& outcome) {
    ExpectFails(
        [&](const std::string& head) {
          RawScript script = RawScript().Reply(head + rest).Pause(30);
          return (script.*end)();
        },
        outcome);
  }
  // The file "f.txt" cannot be put into `directory`.
  void ExpectNoPlace(const std::string& directory, const std::string& reason, std::size_t size = 3) {
    Reply(FileAnswer("f.txt", std::string(size, 'x')));
    ExpectNoDownload(ServerUrl() + "/f", Wide(directory),
                     "0x80020009 Couldn't write file " + directory + "/f.txt: " + reason);
    ExpectDownloadsLeaveNothing();
  }
  // The answer's own bytes, and what arrives in the file.
  void ExpectArrives(const RawScript& script, const std::string& content) {
    server_.Expect(script);
    ExpectDownload("f.txt", content);
  }
};

TEST_F(BrokenDownload, ConnectionThatBreaksFails) {
  const char* const reset = "Recv failure: Connection reset by peer";
  ExpectFails([](const std::string&) { return RawScript().Reply("HTTP/1.1 200 O").Reset(); }, reset);
  ExpectFails("Content-Length: 9\r\n\r\nabc", &RawScript::Reset, reset);
  ExpectFails([](const std::string&) { return RawScript().ReadRequest().Close(); },
              "Empty reply from server");
  ExpectFails("", &RawScript::Close, "transfer closed in the head of the answer");
  ExpectFails("Content-Length: 9\r\n\r\nabc", &RawScript::Close,
              "transfer closed with 6 bytes remaining to read");
  ExpectFails("Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n", &RawScript::Close,
              "transfer closed with outstanding read data remaining");
}

TEST_F(BrokenDownload, ServerThatStallsTimesOut) {
  const char* const timedOut = "Operation timed out after N milliseconds without a byte";
  SetIdleTimeout(100);
  ExpectFails([](const std::string&) { return RawScript().Reply("HTTP/1.1 20").Stall(); }, timedOut);
  ExpectFails("Content-Length: 9\r\n\r\nabc", &RawScript::Stall, timedOut);
}

TEST_F(BrokenDownload, LengthThatIsTooShortCutsTheFileAndEndsTheConnection) {
  ExpectArrives(RawScript().Reply(FileAnswer("f.txt", "abc") + "HTTP/1.1 200 OK\r\n\r\n"), "abc");
  ExpectDownloadsLeaveNothing();
}

TEST_F(BrokenDownload, BodyWithoutLengthLastsToTheEndOfTheConnection) {
  ExpectArrives(RawScript().Reply(OkText(FileHeader("f.txt") + "\r\nto the end")).Close(), "to the end");
  ExpectDownloadsLeaveNothing();
}

TEST_F(BrokenDownload, ChunkedBodyArrivesWithoutItsFraming) {
  const std::string chunks = "Transfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n";
  ExpectArrives(RawScript().ReadRequest().WriteByteByByte(OkText(FileHeader("f.txt") + chunks)), "abcde");
  ExpectNoDescriptorLeft();
}

TEST_F(BrokenDownload, OldFileIsReplaced) {
  files_.Write("target/f.txt", "old and longer");
  ExpectArrives(RawScript().Reply(FileAnswer("f.txt", "new")), "new");
}

TEST_F(BrokenDownload, LinkAtTheTargetIsReplacedAndNotFollowed) {
  files_.Write("here/victim.txt", "untouched");
  fs::create_symlink("../here/victim.txt", Target() + "/f.txt");
  ExpectArrives(RawScript().Reply(FileAnswer("f.txt", "new")), "new");
  EXPECT_EQ(files_.Read("here/victim.txt"), "untouched");
}

TEST_F(BrokenDownload, LinkAtTheTargetSurvivesAFailure) {
  files_.Write("here/victim.txt", "untouched");
  fs::create_symlink("../here/victim.txt", Target() + "/fresh.txt");
  ExpectFails("Content-Length: 9\r\n\r\nabc", &RawScript::Close,
              "transfer closed with 6 bytes remaining to read");
}

TEST_F(BrokenDownload, PlaceThatCannotTakeTheFileFails) {
  fs::create_directories(Target() + "/d/f.txt");
  files_.Write("target/file", "a file");
  ExpectNoPlace(Target() + "/none", "No such file or directory");
  ExpectNoPlace(Target() + "/file", "Not a directory");
  ExpectNoPlace(Target() + "/d", "Is a directory");
}

TEST_F(BrokenDownload, PipeInPlaceOfTheFileFails) {
  ASSERT_EQ(mkfifo((Target() + "/f.txt").c_str(), 0600), 0);
  Reply(FileAnswer("f.txt", "abc"));
  EXPECT_EQ(DownloadHere(), "0x80020009 Couldn't write file " + Target() + "/f.txt: Not a regular file");
  EXPECT_TRUE(fs::is_fifo(Target() + "/f.txt"));
  ExpectDownloadsLeaveNothing();
}

TEST_F(BrokenDownload, DirectoryThatMayNotBeWrittenFails) {
  fs::create_directory(files_.Path("locked"));
  fs::permissions(files_.Path("locked"), fs::perms::owner_read | fs::perms::owner_exec);
  const OrdinaryUser nobody(files_.Path());
  ExpectNoPlace(files_.Path("locked"), "Permission denied");
}

TEST_F(BrokenDownload, MissingTemporaryDirectoryIsAnHttpProblem) {
  temporary_.Set(files_.Path("none").c_str());
  Reply(FileAnswer("f.txt", "abc"));
  ExpectNoDownload(ServerUrl() + "/f", u"", "0x80020009 Unknown Http problem.");
  ExpectDownloadsLeaveNothing();
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
    static_cast<void>(std::signal(SIGXFSZ, handler_));
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;

 private:
  rlimit before_{};
  void (*handler_)(int);
};

TEST_F(BrokenDownload, FileThatMayNotGrowFails) {
  const FileSizeLimit limit(100'000);
  ExpectNoPlace(Target(), "File too large", 300'000);
}

// A small file system, seen by this thread alone. Needs root.
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
  ExpectNoPlace(Target(), "No space left on device", 300'000);
}

}  // namespace
}  // namespace qv::test
