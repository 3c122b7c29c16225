// Bodies from and into files.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "fixtures/ordinary_user.h"
#include "http_fixture.h"
#include "sync_calls.h"

namespace qv::test {
namespace {

namespace fs = std::filesystem;

class HttpFileTest : public HttpTest {
 protected:
  HttpFileTest() {
    char name[] = "/tmp/http_file_test.XXXXXX";
    directory_ = mkdtemp(name);
  }
  ~HttpFileTest() override { fs::remove_all(directory_); }

  std::string Path(const std::string& name) const { return directory_ + "/" + name; }
  void WriteFile(const std::string& name, const std::string& content) const {
    std::ofstream(Path(name), std::ios::binary) << content;
  }
  std::string ReadFile(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    std::ostringstream content;
    content << file.rdbuf();
    return content.str();
  }
  std::size_t FilesInDirectory() const {
    return static_cast<std::size_t>(
        std::distance(fs::directory_iterator(directory_), fs::directory_iterator()));
  }
  HRESULT SendFile(const std::string& path) {
    const IHttpRequestPtr request = NewRequest(OpenSession());
    EXPECT_EQ(request->SetHeader(u"Host", u"h"), S_OK);
    return request->SendFile(Wide(path));
  }

  std::string directory_;
};

TEST_F(HttpFileTest, FileGoesOutAsItIs) {
  const std::string content("a\0\r\n\xFF", 5);
  WriteFile("f", content);
  Answer(RawAnswerText("ok"));
  EXPECT_EQ(SendFile(Path("f")), S_OK) << ErrorWords();
  EXPECT_EQ(server_.AllReceived(), "POST /x HTTP/1.1\r\nHost: h\r\nContent-Length: 5\r\n\r\n" + content);
}

TEST_F(HttpFileTest, EmptyFileGoesOut) {
  WriteFile("f", "");
  Answer(RawAnswerText("ok"));
  EXPECT_EQ(SendFile(Path("f")), S_OK);
  EXPECT_EQ(server_.AllReceived(), "POST /x HTTP/1.1\r\nHost: h\r\nContent-Length: 0\r\n\r\n");
}

TEST_F(HttpFileTest, LargeFileGoesOutWhole) {
  std::string content;
  while (content.size() < 3'000'000) content += std::to_string(content.size()) + ",";
  WriteFile("f", content);
  Answer(RawAnswerText("ok"));
  EXPECT_EQ(SendFile(Path("f")), S_OK);
  const std::string all = server_.AllReceived();
  EXPECT_EQ(all.substr(all.find("\r\n\r\n") + 4), content);
}

TEST_F(HttpFileTest, BackslashesOfThePathAreSlashes) {
  WriteFile("f", "x");
  Answer(RawAnswerText("ok"));
  EXPECT_EQ(SendFile(directory_ + "\\f"), S_OK) << ErrorWords();
}

TEST_F(HttpFileTest, MissingFileFailsAndNothingIsSent) {
  server_.Expect(RawScript());
  EXPECT_EQ(SendFile(Path("none")), MakeResult(0x80070002));
  EXPECT_EQ(ErrorWords(), "Couldn't open file " + Path("none") + ": No such file or directory");
  EXPECT_EQ(server_.AllReceived(), "");
}

TEST_F(HttpFileTest, DirectoryPipeAndDeviceAreNoFilesToSend) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  for (const std::string& path : {directory_, Path("pipe"), std::string("/dev/zero")}) {
    server_.Expect(RawScript());
    EXPECT_EQ(SendFile(path), MakeResult(0x8007001E)) << path;
    EXPECT_EQ(ErrorWords(), "Couldn't open file " + path + ": Not a regular file");
  }
  EXPECT_EQ(server_.AllReceived(), "");
}

TEST_F(HttpFileTest, PathThatIsEmptyOrHoldsNulIsRefused) {
  server_.Expect(RawScript());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->SendFile(u""), E_INVALIDARG);
  EXPECT_EQ(request->SendFile(WideString(std::u16string_view(u"/etc/hostname\0x", 15))), E_INVALIDARG);
}

// Cuts the file short once a part of it is sent.
class Cutter final : public IHttpProgress {
 public:
  explicit Cutter(const std::string& path) : path_(path) {}
  HRESULT QueryInterface(const Guid&, void**) noexcept override { return E_NOINTERFACE; }
  std::uint32_t AddRef() noexcept override { return 2; }
  std::uint32_t Release() noexcept override { return 1; }
  HRESULT OnProgress(bool, std::int64_t done, std::int64_t) noexcept override {
    return done > 1'000'000 && truncate(path_.c_str(), 500'000) != 0 ? E_FAIL : S_OK;
  }

 private:
  std::string path_;
};

TEST_F(HttpFileTest, FileThatShrinksFails) {
  WriteFile("f", std::string(5'000'000, 'x'));
  Cutter cutter(Path("f"));
  SetThreadHttpOptions(HttpOptions(), &cutter);
  Answer("");
  EXPECT_EQ(SendFile(Path("f")), MakeResult(0x8007001E));
  EXPECT_EQ(ErrorWords(), "Couldn't read file " + Path("f") + ": It has become shorter");
  SetThreadHttpOptions(HttpOptions(), nullptr);  // the listener ends here
}

TEST_F(HttpFileTest, BodyLandsInTheFile) {
  const std::string body("a\0\r\n\xFF", 5);
  Answer(RawAnswerText(body));
  std::int32_t count = 0;
  EXPECT_EQ(Sent()->ReadToFile(Wide(Path("f")), &count), S_OK) << ErrorWords();
  EXPECT_EQ(count, 5);
  EXPECT_EQ(ReadFile("f"), body);
  EXPECT_EQ(FilesInDirectory(), 1u);
}

TEST_F(HttpFileTest, EmptyBodyMakesAnEmptyFile) {
  Answer(RawAnswerText(""));
  std::int32_t count = 9;
  EXPECT_EQ(Sent()->ReadToFile(Wide(Path("f")), &count), S_OK);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(ReadFile("f"), "");
  EXPECT_EQ(FilesInDirectory(), 1u);
}

TEST_F(HttpFileTest, BodyWithoutLengthAndInChunksLandsInTheFileAndReuseHolds) {
  server_.Expect(
      RawScript()
          .ReadRequest()
          .WriteByteByByte(
              "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n3\r\nabc\r\n2\r\nde\r\n0\r\n\r\n")
          .ReadRequest()
          .Write("HTTP/1.1 200 OK\r\n\r\nto the end")
          .Close());
  std::int32_t count = 0;
  EXPECT_EQ(Sent()->ReadToFile(Wide(Path("f")), &count), S_OK);
  EXPECT_EQ(ReadFile("f"), "abcde");
  EXPECT_EQ(Sent()->ReadToFile(Wide(directory_ + "\\g"), &count), S_OK);
  EXPECT_EQ(ReadFile("g"), "to the end");
  EXPECT_EQ(count, 10);
  EXPECT_EQ(server_.Connections(), 1u);
}

TEST_F(HttpFileTest, FailedDownloadLeavesTheOldFileAndNoOther) {
  WriteFile("f", "old");
  server_.Expect(RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc").Close());
  std::int32_t count = 0;
  EXPECT_EQ(Sent()->ReadToFile(Wide(Path("f")), &count), MakeResult(0x80072EFE));
  EXPECT_EQ(ErrorWords(), "transfer closed with 6 bytes remaining to read");
  EXPECT_EQ(ReadFile("f"), "old");
  EXPECT_EQ(FilesInDirectory(), 1u);
  ExpectNextCallWorks();
}

TEST_F(HttpFileTest, LinkAtTheTargetIsReplacedAndNotFollowed) {
  WriteFile("victim", "untouched");
  ASSERT_EQ(symlink(Path("victim").c_str(), Path("f").c_str()), 0);
  Answer(RawAnswerText("new"));
  std::int32_t count = 0;
  EXPECT_EQ(Sent()->ReadToFile(Wide(Path("f")), &count), S_OK);
  EXPECT_EQ(ReadFile("victim"), "untouched");
  EXPECT_EQ(ReadFile("f"), "new");
  EXPECT_FALSE(fs::is_symlink(Path("f")));
}

TEST_F(HttpFileTest, TargetThatCannotBeWrittenFailsAndTheBodyStaysReadable) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = Sent();
  std::int32_t count = 0;
  EXPECT_EQ(request->ReadToFile(Wide(Path("no/where")), &count), MakeResult(0x80070002));
  EXPECT_EQ(request->ReadToFile(Wide(directory_), &count), MakeResult(0x80070005));
  EXPECT_EQ(request->ReadToFile(Wide(Path("pipe")), &count), MakeResult(0x8007001D));
  EXPECT_EQ(request->ReadToFile(u"", &count), E_INVALIDARG);
  EXPECT_EQ(request->ReadToFile(Wide(Path("f")), nullptr), E_POINTER);
  EXPECT_EQ(ReadText(request, 2), WideString(u"ok"));
}

TEST_F(HttpFileTest, DownloadIsNotBoundByTheLimitOfTexts) {
  HttpOptions options;
  options.maxBodyBytes = 3;
  SetLimits(options);
  Answer(RawAnswerText("more than three"));
  std::int32_t count = 0;
  EXPECT_EQ(Sent()->ReadToFile(Wide(Path("f")), &count), S_OK);
  EXPECT_EQ(ReadFile("f"), "more than three");
}

// A limit on the size of files stands in for a full disk.
TEST_F(HttpFileTest, WriteThatFailsLeavesNothing) {
  Answer(RawAnswerText(std::string(200'000, 'x')));
  const IHttpRequestPtr request = Sent();
  rlimit before{};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const rlimit small{100'000, before.rlim_max};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
  signal(SIGXFSZ, SIG_IGN);
  std::int32_t count = 0;
  const HRESULT code = request->ReadToFile(Wide(Path("f")), &count);
  signal(SIGXFSZ, SIG_DFL);
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &before), 0);
  EXPECT_EQ(code, MakeResult(0x8007001D));
  EXPECT_EQ(ErrorWords(), "Couldn't write file " + Path("f") + ": File too large");
  EXPECT_EQ(FilesInDirectory(), 0u);
}

class HttpFileSyncTest : public HttpFileTest {
 protected:
  // Receives "new" into a file of the directory.
  HRESULT Receive(const std::string& path) {
    CloseKeptConnections();
    Answer(RawAnswerText("new"));
    std::int32_t count = 0;
    return Sent()->ReadToFile(Wide(path), &count);
  }

  SyncCalls calls_;
};

TEST_F(HttpFileSyncTest, FileIsOnTheDiskBeforeItIsSeenAndItsNameBehindIt) {
  EXPECT_EQ(Receive(Path("f")), S_OK);
  EXPECT_EQ(calls_.Lines(), (std::vector<std::string>{"fsync file of 3", "rename", "fsync directory"}));
  EXPECT_EQ(ReadFile("f"), "new");
}

TEST_F(HttpFileSyncTest, FileThatDoesNotReachTheDiskLeavesTheOldOne) {
  WriteFile("f", "old");
  calls_.FailSync(EIO, 1);
  EXPECT_EQ(Receive(Path("f")), HTTP_E_WRITE_FAULT);
  EXPECT_EQ(ErrorWords(), "Couldn't write file " + Path("f") + ": Input/output error");
  EXPECT_EQ(ReadFile("f"), "old");
  EXPECT_EQ(FilesInDirectory(), 1u);
  EXPECT_EQ(calls_.Lines(), std::vector<std::string>{"fsync file of 3"});
}

TEST_F(HttpFileSyncTest, FullDiskIsToldAsSuch) {
  calls_.FailSync(ENOSPC, 1);
  EXPECT_EQ(Receive(Path("f")), HTTP_E_DISK_FULL);
  EXPECT_EQ(FilesInDirectory(), 0u);
}

TEST_F(HttpFileSyncTest, SignalsAndFileSystemsWithoutSyncDoNoHarm) {
  calls_.FailSync(EINTR, 3);
  EXPECT_EQ(Receive(Path("f")), S_OK);
  calls_.FailSync(EINVAL, 2);
  EXPECT_EQ(Receive(Path("g")), S_OK);
  EXPECT_EQ(ReadFile("g"), "new");
}

TEST_F(HttpFileSyncTest, DirectoryThatMayNotBeReadGetsItsFile) {
  ASSERT_EQ(mkdir(Path("d").c_str(), 0300), 0);
  {
    const OrdinaryUser nobody(directory_);
    EXPECT_EQ(Receive(Path("d/f")), S_OK);
  }
  EXPECT_EQ(chmod(Path("d").c_str(), 0700), 0);
  EXPECT_EQ(ReadFile("d/f"), "new");
}

}  // namespace
}  // namespace qv::test
