// Limits of transfers, and the files that the service keeps on disk.
#include <sys/resource.h>

#include <csignal>

#include "fixtures/environment.h"
#include "fixtures/temporary_directory.h"
#include "transfer_fixture.h"

namespace qv::devservice::testing {
namespace {

namespace fs = std::filesystem;
// The service's files go to the test's own temporary directory.
class TransferLimits : public TransferTest {
 protected:
  void TearDown() override { service_.reset(); }

  TemporaryDirectory temporary_;
  EnvironmentVariable variable_{"TMPDIR", temporary_.Path().c_str()};
};

// The greatest resident size since ResetPeak, in KiB.
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

// A byte of a large body that is never kept as a whole.
char PatternByte(std::size_t position) {
  return static_cast<char>(position % 251);
}

TEST_F(TransferLimits, LargeFilesTakeNoMemory) {
  std::string piece;
  for (std::size_t i = 0; i < std::size_t{251} * 256; ++i) piece += PatternByte(i);
  const std::size_t size = 1050 * piece.size();  // 67 million bytes
  const std::string url = NewUploadUrl();
  RawClient upload(Port());
  ResetPeak();
  const std::size_t before = PeakKilobytes();
  ASSERT_GT(before, 0U);
  upload.Send(UploadHead(PathIn(url), size));
  for (int i = 0; i < 1050; ++i) upload.Send(piece);
  ASSERT_EQ(StatusOf(upload.Receive()), "200");
  RawClient download(
      Port(), FileRequest("GET " + PathIn(Text("publish('big', parameters.f)", OneTicket(TicketIn(url))))));
  std::size_t received = 0;
  bool asPattern = true;
  download.Receive(std::chrono::minutes(2), [&](std::string_view bytes) {
    for (const char byte : bytes) asPattern &= byte == PatternByte(received++);
  });
  EXPECT_EQ(received, size);
  EXPECT_TRUE(asPattern);
  EXPECT_LT(PeakKilobytes(), before + 16384);
}

TEST_F(TransferLimits, TooLongUploadIsRefusedBeforeItIsRead) {
  StartWith([](ServiceOptions& options) { options.maxUploadBytes = 1000; });
  const std::string url = NewUploadUrl();
  EXPECT_EQ(StatusOf(Upload(url, std::string(1000, 'a'))), "200");
  EXPECT_EQ(StatusOf(Upload(url, std::string(1001, 'a'))), "413");
  EXPECT_EQ(StatusOf(Ask(UploadHead(PathIn(url), std::size_t{1} << 60))), "413");
  EXPECT_EQ(StatusOf(Ask(FileRequest("POST " + PathIn(url), "Content-Length: 99999999999999999999999\r\n"))),
            "411");
  EXPECT_EQ(Stats()["uploadedBytes"], 1000);
}

TEST_F(TransferLimits, UploadsMayBeLongerThanRequests) {
  StartWith([](ServiceOptions& options) { options.maxRequestBytes = 10000; });
  EXPECT_EQ(StatusOf(Upload(NewUploadUrl(), std::string(500000, 'a'))), "200");
}

TEST_F(TransferLimits, TicketsAndFilesOfASessionAreLimited) {
  StartWith([](ServiceOptions& options) { options.maxTickets = 3; });
  NewUploadUrl();
  EXPECT_EQ(Fault("uploadUrl(); uploadUrl(); uploadUrl()"),
            "1018|The session has too many tickets. (line 1)|script, line 1");
  EXPECT_EQ(Text("uploadUrl(); uploadUrl(); 'two'"), "two");
  EXPECT_EQ(FaultCode("uploadUrl()"), "1018");
  EXPECT_EQ(Text("for (let i = 0; i < 3; ++i) publish('a', 'b'); 'three'"), "three");
  EXPECT_EQ(Fault("publish('a', 'b')"),
            "1018|The session has too many published files. (line 1)|script, line 1");
  session_ = Login();
  NewUploadUrl();
}

TEST_F(TransferLimits, ManyTicketsWork) {
  const std::string urls =
      Text("const u = []; for (let i = 0; i < 1000; ++i) u.push(uploadUrl()); u.join(' ')");
  const std::size_t length = urls.find(' ');
  EXPECT_EQ(urls.size(), 1000 * (length + 1) - 1);
  const std::string first = urls.substr(0, length);
  const std::string last = urls.substr(999 * (length + 1));
  EXPECT_EQ(StatusOf(Upload(first, "first")), "200");
  EXPECT_EQ(StatusOf(Upload(last, "last")), "200");
  EXPECT_EQ(Text("parameters.a.text() + parameters.b.text()",
                 ArrayOf(2, TicketParameter("a", TicketIn(first)) + TicketParameter("b", TicketIn(last)))),
            "firstlast");
  EXPECT_EQ(FaultCode("uploadUrl()"), "1018");
}

TEST_F(TransferLimits, FullDiskIsReportedAndLeavesNothing) {
  const std::string url = NewUploadUrl();
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small{100000, limit.rlim_max};
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  const RawAnswer answer = Upload(url, std::string(500000, 'a'));
  setrlimit(RLIMIT_FSIZE, &limit);
  static_cast<void>(std::signal(SIGXFSZ, handler));
  EXPECT_EQ(StatusOf(answer), "507");
  EXPECT_EQ(answer.body, "There is no room for the file.\n");
  EXPECT_EQ(temporary_.CountFiles(), 0);
  EXPECT_EQ(StatusOf(Upload(url, "again")), "200");
}

TEST_F(TransferLimits, UnusedFilesAreDeleted) {
  const std::string url = NewUploadUrl();
  EXPECT_EQ(temporary_.CountFiles(), 0);
  Upload(url, "first");
  Upload(url, "second");
  EXPECT_EQ(temporary_.CountFiles(), 1);
  Text("publish('a', 'b'); publish('c', 'd')");
  Text("publish('a', parameters.f)", OneTicket(TicketIn(url)));
  EXPECT_EQ(temporary_.CountFiles(), 3);
  Fault("publish('a', 'b'); publish('c', 'd'); throw 'x'");
  EXPECT_EQ(temporary_.CountFiles(), 3);
  Post("", "CloseUserSession", CloseEnvelope(Session()));
  EXPECT_EQ(temporary_.CountFiles(), 0);
}

TEST_F(TransferLimits, FilesOfAKilledScriptAreDeleted) {
  StartWith([](ServiceOptions& options) { options.scriptTimeLimit = std::chrono::milliseconds(700); });
  EXPECT_EQ(FaultCode("publish('a', 'b'); publish('c', 'd'); while (true);"), "1013");
  EXPECT_EQ(temporary_.CountFiles(), 0);
}

TEST_F(TransferLimits, SessionsThatMakeRoomLoseTheirFiles) {
  StartWith([](ServiceOptions& options) { options.maxSessions = 1; });
  UploadNew("abc");
  EXPECT_EQ(temporary_.CountFiles(), 1);
  Login();
  EXPECT_EQ(temporary_.CountFiles(), 0);
}

TEST_F(TransferLimits, DirectoryIsPrivateAndEndsWithTheService) {
  UploadNew("abc");
  Text("publish('a', 'b')");
  ASSERT_NE(fs::directory_iterator(temporary_.Path()), fs::directory_iterator());
  const fs::directory_entry spool = *fs::directory_iterator(temporary_.Path());
  EXPECT_EQ(spool.status().permissions(), fs::perms::owner_all);
  service_->Stop();
  EXPECT_TRUE(fs::is_empty(temporary_.Path()));
}

TEST_F(TransferLimits, DirectoryOfAKilledServiceIsRemovedByTheNext) {
  temporary_.Write("scriptwells-files-abcdef/1", "x");
  fs::create_directory(temporary_.Path("scriptwells-other"));
  UploadNew("abc");
  EXPECT_FALSE(fs::exists(temporary_.Path("scriptwells-files-abcdef")));
  EXPECT_TRUE(fs::exists(temporary_.Path("scriptwells-other")));
  Service second(TestOptions());
  second.Start();
  EXPECT_EQ(temporary_.CountFiles(), 1) << "the files of a running service";
}

TEST_F(TransferLimits, NoDirectoryIsAFailureOfStart) {
  variable_.Set("/proc");
  try {
    StartWith(TestOptions());
    FAIL() << "started";
  } catch (const std::runtime_error& error) {
    EXPECT_EQ(std::string(error.what()).substr(0, 42), "Cannot make a directory for files, \"/proc/");
  }
}

TEST_F(TransferLimits, StopEndsTransfersAtOnce) {
  const std::string url = NewUploadUrl();
  const std::string file = Text("publish('big', new Uint8Array(30 << 20))");
  RawClient upload(Port(), UploadHead(PathIn(url), 1000000) + std::string(500000, 'a'));
  RawClient download(Port(), FileRequest("GET " + PathIn(file)));
  EXPECT_EQ(StatusOf(Ask(UploadHead("/WebEditor/FileManagerUpload.aspx", 1000000))), "404");
  StopAtOnce();
  EXPECT_TRUE(fs::is_empty(temporary_.Path()));
}

}  // namespace
}  // namespace qv::devservice::testing
