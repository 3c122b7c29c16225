#include <sys/resource.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

using Clock = std::chrono::steady_clock;

// The service's files go to a temporary directory of the test's own.
class TransferLimits : public TransferTest {
 protected:
  void SetUp() override {
    const char* before = std::getenv("TMPDIR");
    if (before) before_ = before;
    setenv("TMPDIR", temporary_.Path().c_str(), 1);
  }
  void TearDown() override {
    service_.reset();
    before_ ? setenv("TMPDIR", before_->c_str(), 1) : unsetenv("TMPDIR");
  }
  void Start(const ServiceOptions& options) {
    StartWith(options);
    session_ = Login();
  }

  FreshDirectory temporary_;
  std::optional<std::string> before_;
};

// The greatest resident size so far, in KiB, counted anew from ResetPeak on.
std::size_t PeakKilobytes() {
  std::ifstream file("/proc/self/status");
  std::string line;
  while (std::getline(file, line)) {
    if (line.rfind("VmHWM:", 0) == 0) return std::stoul(line.substr(6));
  }
  return 0;
}

void ResetPeak() {
  std::ofstream("/proc/self/clear_refs") << "5";
}

TEST_F(TransferLimits, LargeFilesTakeNoMemory) {
  std::string piece;
  for (std::size_t i = 0; i < std::size_t{251} * 256; ++i) piece += PatternByte(i);
  const std::size_t size = 1050 * piece.size();  // 67 million bytes
  Start(TestOptions());
  const std::string url = NewUploadUrl();
  RawClient upload(service_->Port());
  ResetPeak();
  const std::size_t before = PeakKilobytes();
  ASSERT_GT(before, 0u);
  upload.Send(UploadHead(PathIn(url), session_, size));
  for (int i = 0; i < 1050; ++i) upload.Send(piece);
  ASSERT_EQ(StatusOf(upload.Receive()), "200");
  const std::string file =
      Text("publish('big', parameters.f)", ArrayOf(1, TicketParameter("f", TicketIn(url))));
  RawClient download(service_->Port());
  download.Send("GET " + PathIn(file) + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ + "\r\n\r\n");
  const DrainedAnswer answer = download.Drain();
  EXPECT_EQ(answer.bytes, size);
  EXPECT_TRUE(answer.asPattern);
  EXPECT_LT(PeakKilobytes(), before + 16384);
}

TEST_F(TransferLimits, TooLongUploadIsRefusedBeforeItIsRead) {
  ServiceOptions options = TestOptions();
  options.maxUploadBytes = 1000;
  Start(options);
  const std::string url = NewUploadUrl();
  EXPECT_EQ(StatusOf(Upload(url, std::string(1000, 'a'))), "200");
  EXPECT_EQ(StatusOf(Upload(url, std::string(1001, 'a'))), "413");
  RawClient huge(service_->Port());
  huge.Send(UploadHead(PathIn(url), session_, std::size_t{1} << 60));
  EXPECT_EQ(StatusOf(huge.Receive()), "413");
  RawClient absurd(service_->Port());
  absurd.Send("POST " + PathIn(url) + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ +
              "\r\nContent-Length: 99999999999999999999999\r\n\r\n");
  EXPECT_EQ(StatusOf(absurd.Receive()), "411");
  EXPECT_EQ(Stats()["uploadedBytes"], 1000);
}

TEST_F(TransferLimits, UploadsMayBeLongerThanRequests) {
  ServiceOptions options = TestOptions();
  options.maxRequestBytes = 10000;
  Start(options);
  EXPECT_EQ(StatusOf(Upload(NewUploadUrl(), std::string(500000, 'a'))), "200");
}

TEST_F(TransferLimits, TicketsAndFilesOfASessionAreLimited) {
  ServiceOptions options = TestOptions();
  options.maxTickets = 3;
  Start(options);
  NewUploadUrl();
  EXPECT_EQ(Fault("uploadUrl(); uploadUrl(); uploadUrl()"),
            "1018|The session has too many tickets. (line 1)|script, line 1");
  EXPECT_EQ(Text("uploadUrl(); uploadUrl(); 'two'"), "two");
  EXPECT_EQ(Fault("uploadUrl()").substr(0, 5), "1018|");
  EXPECT_EQ(Text("for (let i = 0; i < 3; ++i) publish('a', 'b'); 'three'"), "three");
  EXPECT_EQ(Fault("publish('a', 'b')"),
            "1018|The session has too many published files. (line 1)|script, line 1");
  session_ = Login();
  NewUploadUrl();
}

TEST_F(TransferLimits, ManyTicketsWork) {
  Start(TestOptions());
  const std::string urls =
      Text("const u = []; for (let i = 0; i < 1000; ++i) u.push(uploadUrl()); u.join(' ')");
  const std::size_t length = urls.find(' ');
  EXPECT_EQ(urls.size(), 1000 * (length + 1) - 1);
  EXPECT_EQ(StatusOf(Upload(urls.substr(0, length), "first")), "200");
  EXPECT_EQ(StatusOf(Upload(urls.substr(999 * (length + 1)), "last")), "200");
  EXPECT_EQ(Text("parameters.a.text() + parameters.b.text()",
                 ArrayOf(2, TicketParameter("a", TicketIn(urls.substr(0, length))) +
                                TicketParameter("b", TicketIn(urls.substr(999 * (length + 1)))))),
            "firstlast");
  EXPECT_EQ(Fault("uploadUrl()").substr(0, 5), "1018|");
}

TEST_F(TransferLimits, FullDiskIsToldAndLeavesNothing) {
  Start(TestOptions());
  const std::string url = NewUploadUrl();
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{100000, limit.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  const RawAnswer answer = Upload(url, std::string(500000, 'a'));
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(StatusOf(answer), "507");
  EXPECT_EQ(answer.body, "There is no room for the file.\n");
  EXPECT_EQ(temporary_.CountFiles(), 0u);
  EXPECT_EQ(StatusOf(Upload(url, "again")), "200");
}

TEST_F(TransferLimits, FilesAreDeletedWhenNobodyNeedsThem) {
  Start(TestOptions());
  const std::string url = NewUploadUrl();
  EXPECT_EQ(temporary_.CountFiles(), 0u);
  Upload(url, "first");
  Upload(url, "second");
  EXPECT_EQ(temporary_.CountFiles(), 1u);
  Text("publish('a', 'b'); publish('c', 'd')");
  Text("publish('a', parameters.f)", ArrayOf(1, TicketParameter("f", TicketIn(url))));
  EXPECT_EQ(temporary_.CountFiles(), 3u);
  Fault("publish('a', 'b'); publish('c', 'd'); throw 'x'");
  EXPECT_EQ(temporary_.CountFiles(), 3u);
  Post("", "CloseUserSession", CloseEnvelope(session_));
  EXPECT_EQ(temporary_.CountFiles(), 0u);
}

TEST_F(TransferLimits, FilesOfAKilledScriptAreDeleted) {
  ServiceOptions options = TestOptions();
  options.scriptTimeLimit = std::chrono::milliseconds(700);
  Start(options);
  EXPECT_EQ(Fault("publish('a', 'b'); publish('c', 'd'); while (true);").substr(0, 5), "1013|");
  EXPECT_EQ(temporary_.CountFiles(), 0u);
}

TEST_F(TransferLimits, DirectoryIsPrivateAndGoesWithTheService) {
  namespace fs = std::filesystem;
  Start(TestOptions());
  ASSERT_NE(fs::directory_iterator(temporary_.Path()), fs::directory_iterator());
  const fs::directory_entry spool = *fs::directory_iterator(temporary_.Path());
  EXPECT_EQ(spool.status().permissions(), fs::perms::owner_all);
  UploadNew("abc");
  Text("publish('a', 'b')");
  service_->Stop();
  EXPECT_TRUE(fs::is_empty(temporary_.Path()));
}

TEST_F(TransferLimits, DirectoryOfAKilledServiceGoesWithTheNext) {
  namespace fs = std::filesystem;
  const std::string abandoned = temporary_.Path() + "/scriptwells-files-abcdef";
  const std::string other = temporary_.Path() + "/scriptwells-other";
  fs::create_directory(abandoned);
  std::ofstream(abandoned + "/1") << "x";
  fs::create_directory(other);
  Start(TestOptions());
  UploadNew("abc");
  EXPECT_FALSE(fs::exists(abandoned));
  EXPECT_TRUE(fs::exists(other));
  Service second(TestOptions());
  second.Start();
  EXPECT_EQ(temporary_.CountFiles(), 1u) << "the files of a running service";
}

TEST_F(TransferLimits, NoDirectoryIsAFailureOfStart) {
  setenv("TMPDIR", "/proc", 1);
  try {
    StartWith(TestOptions());
    FAIL() << "started";
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(std::string(error.what()).substr(0, 42), "Cannot make a directory for files, \"/proc/");
  }
}

TEST_F(TransferLimits, StopEndsTransfersAtOnce) {
  Start(TestOptions());
  const std::string url = NewUploadUrl();
  const std::string file = Text("publish('big', new Uint8Array(30 << 20))");
  RawClient upload(service_->Port());
  upload.Send(UploadHead(PathIn(url), session_, 1000000) + std::string(500000, 'a'));
  RawClient download(service_->Port());
  download.Send("GET " + PathIn(file) + " HTTP/1.1\r\nHost: localhost\r\nusid: " + session_ + "\r\n\r\n");
  RawClient refused(service_->Port());
  refused.Send(UploadHead("/WebEditor/FileManagerUpload.aspx", session_, 1000000));
  EXPECT_EQ(StatusOf(refused.Receive()), "404");
  const auto start = Clock::now();
  service_->Stop();
  EXPECT_LT(Clock::now() - start, std::chrono::seconds(3));
  EXPECT_TRUE(std::filesystem::is_empty(temporary_.Path()));
}

TEST_F(TransferLimits, SessionsThatMakeRoomLoseTheirFiles) {
  ServiceOptions options = TestOptions();
  options.maxSessions = 1;
  Start(options);
  UploadNew("abc");
  EXPECT_EQ(temporary_.CountFiles(), 1u);
  Login();
  EXPECT_EQ(temporary_.CountFiles(), 0u);
}

}  // namespace
}  // namespace qv::devservice::testing
