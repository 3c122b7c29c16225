// Bodies from and into files.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <string>

#include "file_fixture.h"
#include "fixtures/ordinary_user.h"
#include "fixtures/progress_listener.h"
#include "system_calls.h"

namespace qv::test {
namespace {

const std::string kOddBytes("a\0\r\n\xFF", 5);

TEST_F(HttpFileTest, FileIsSentAsItIs) {
  std::string large;
  std::string received;
  while (large.size() < 3'000'000) large += std::to_string(large.size()) + ",";
  for (const std::string& content : {kOddBytes, std::string(), large}) {
    files_.Write("f", content);
    StartAnew();
    Answer("ok");
    EXPECT_EQ(SendFile(Path("f")), S_OK) << ErrorWords();
    received += "POST /x HTTP/1.1\r\nHost: h\r\nContent-Length: " + std::to_string(content.size()) +
                "\r\n\r\n" + content;
    EXPECT_EQ(server_.AllReceived(), received);
  }
}

TEST_F(HttpFileTest, BackslashesOfThePathAreSlashes) {
  files_.Write("f", "x");
  Answer("ok");
  EXPECT_EQ(SendFile(files_.Path() + "\\f"), S_OK) << ErrorWords();
}

TEST_F(HttpFileTest, PathWithoutARegularFileFailsAndNothingIsSent) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  const struct {
    std::string path;
    std::uint32_t code;
    const char* reason;
  } rows[] = {{Path("none"), 0x80070002, "No such file or directory"},
              {files_.Path(), 0x8007001E, "Not a regular file"},
              {Path("pipe"), 0x8007001E, "Not a regular file"},
              {"/dev/zero", 0x8007001E, "Not a regular file"}};
  for (const auto& row : rows) {
    server_.Expect(RawScript());
    EXPECT_EQ(SendFile(row.path), MakeResult(row.code)) << row.path;
    EXPECT_EQ(ErrorWords(), "Couldn't open file " + row.path + ": " + row.reason);
  }
  EXPECT_EQ(server_.AllReceived(), "");
}

TEST_F(HttpFileTest, PathThatIsEmptyOrHoldsNulIsRefused) {
  server_.Expect(RawScript());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->SendFile(u""), E_INVALIDARG);
  EXPECT_EQ(request->SendFile(Wide(std::string("/etc/hostname\0x", 15))), E_INVALIDARG);
}

TEST_F(HttpFileTest, FileThatShrinksFails) {
  const std::string path = files_.Write("f", std::string(5'000'000, 'x'));
  ProgressListener cutter([&](bool, std::int64_t done, std::int64_t) {
    return done > 1'000'000 && truncate(path.c_str(), 500'000) != 0 ? E_FAIL : S_OK;
  });
  SetThreadHttpOptions(HttpOptions(), &cutter);
  Reply("");
  EXPECT_EQ(SendFile(path), MakeResult(0x8007001E));
  EXPECT_EQ(ErrorWords(), "Couldn't read file " + path + ": It has become shorter");
  SetLimits(HttpOptions());  // the listener ends here
}

TEST_F(HttpFileTest, BodyArrivesInTheFile) {
  for (const std::string& body : {kOddBytes, std::string()}) {
    StartAnew();
    Answer(body);
    std::int32_t count = 9;
    EXPECT_EQ(Sent()->ReadToFile(Wide(Path("f")), &count), S_OK) << ErrorWords();
    EXPECT_EQ(count, static_cast<std::int32_t>(body.size()));
    ExpectOnly(body);
  }
}

TEST_F(HttpFileTest, BodyWithoutLengthAndInChunksArrivesInTheFileAndReuseHolds) {
  server_.Expect(RawScript()
                     .ReadRequest()
                     .WriteByteByByte(ChunkedText("3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n"))
                     .Reply(OkText("\r\nto the end"))
                     .Close());
  EXPECT_EQ(Receive(Path("f")), S_OK);
  ExpectContent("f", "abcde");
  std::int32_t count = 0;
  EXPECT_EQ(Sent()->ReadToFile(Wide(files_.Path() + "\\g"), &count), S_OK);
  ExpectContent("g", "to the end");
  EXPECT_EQ(count, 10);
  EXPECT_EQ(server_.Connections(), 1U);
}

TEST_F(HttpFileTest, FailedDownloadLeavesTheOldFileAndNoOther) {
  files_.Write("f", "old");
  ReplyAndClose(SizedText(9, "abc"));
  EXPECT_EQ(Receive(Path("f")), kCutOff);
  EXPECT_EQ(ErrorWords(), "transfer closed with 6 bytes remaining to read");
  ExpectOnly("old");
  ExpectNextCallWorks();
}

TEST_F(HttpFileTest, LinkAtTheTargetIsReplacedAndNotFollowed) {
  files_.Write("victim", "untouched");
  ASSERT_EQ(symlink(Path("victim").c_str(), Path("f").c_str()), 0);
  Answer("new");
  EXPECT_EQ(Receive(Path("f")), S_OK);
  ExpectContent("victim", "untouched");
  ExpectContent("f", "new");
  EXPECT_FALSE(std::filesystem::is_symlink(Path("f")));
}

TEST_F(HttpFileTest, TargetThatCannotBeWrittenFailsAndTheBodyStaysReadable) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  Answer("ok");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(ReadToFile(request, Path("no/where")), MakeResult(0x80070002));
  EXPECT_EQ(ReadToFile(request, files_.Path()), MakeResult(0x80070005));
  EXPECT_EQ(ReadToFile(request, Path("pipe")), MakeResult(0x8007001D));
  EXPECT_EQ(ReadToFile(request, ""), E_INVALIDARG);
  EXPECT_EQ(request->ReadToFile(Wide(Path("f")), nullptr), E_POINTER);
  EXPECT_EQ(ReadText(request, 2), "ok");
}

TEST_F(HttpFileTest, DownloadIsNotBoundByTheLimitOfTexts) {
  Limit(&HttpOptions::maxBodyBytes, 3);
  Answer("more than three");
  EXPECT_EQ(Receive(Path("f")), S_OK);
  ExpectContent("f", "more than three");
}

// A limit on the size of files acts like a full disk.
TEST_F(HttpFileTest, WriteThatFailsLeavesNothing) {
  Answer(std::string(200'000, 'x'));
  const IHttpRequestPtr request = Sent();
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{100'000, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  static_cast<void>(signal(SIGXFSZ, SIG_IGN));
  const HRESULT code = ReadToFile(request, Path("f"));
  static_cast<void>(signal(SIGXFSZ, SIG_DFL));
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  EXPECT_EQ(code, MakeResult(0x8007001D));
  ExpectWriteFailure("File too large");
  EXPECT_EQ(files_.Count(), 0);
}

class HttpFileSyncTest : public HttpFileTest {
 protected:
  // Receives "new" on a new connection.
  HRESULT ReceiveNew(const std::string& name) {
    CloseKeptConnections();
    Answer("new");
    return Receive(Path(name));
  }

  SystemCalls calls_;
};

TEST_F(HttpFileSyncTest, FileIsOnTheDiskBeforeItIsSeenAndItsNameAfterwards) {
  EXPECT_EQ(ReceiveNew("f"), S_OK);
  EXPECT_EQ(calls_.Lines(), (std::vector<std::string>{"fsync file of 3", "rename", "fsync directory"}));
  ExpectContent("f", "new");
}

TEST_F(HttpFileSyncTest, FileThatDoesNotReachTheDiskLeavesTheOldOne) {
  files_.Write("f", "old");
  calls_.Fail("fsync", EIO, 1);
  EXPECT_EQ(ReceiveNew("f"), HTTP_E_WRITE_FAULT);
  ExpectWriteFailure("Input/output error");
  ExpectOnly("old");
  EXPECT_EQ(calls_.Lines(), std::vector<std::string>{"fsync file of 3"});
}

TEST_F(HttpFileSyncTest, FullDiskHasItsOwnCode) {
  calls_.Fail("fsync", ENOSPC, 1);
  EXPECT_EQ(ReceiveNew("f"), HTTP_E_DISK_FULL);
  EXPECT_EQ(files_.Count(), 0);
}

TEST_F(HttpFileSyncTest, SignalsAndFileSystemsWithoutSyncDoNoHarm) {
  calls_.Fail("fsync", EINTR, 3);
  EXPECT_EQ(ReceiveNew("f"), S_OK);
  calls_.Fail("fsync", EINVAL, 2);
  EXPECT_EQ(ReceiveNew("g"), S_OK);
  ExpectContent("g", "new");
}

TEST_F(HttpFileSyncTest, DirectoryThatMayNotBeReadGetsItsFile) {
  ASSERT_EQ(mkdir(Path("d").c_str(), 0300), 0);
  {
    const OrdinaryUser nobody(files_.Path());
    EXPECT_EQ(ReceiveNew("d/f"), S_OK);
  }
  EXPECT_EQ(chmod(Path("d").c_str(), 0700), 0);
  ExpectContent("d/f", "new");
}

}  // namespace
}  // namespace qv::test
