// Files of no bytes, of one, and of very many: whole at the other end, in constant memory.
#include <sys/statvfs.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "bench/bulk_server.h"
#include "child_process.h"
#include "qvscriptwells/create_objects.h"
#include "transfer_fixture.h"

namespace qv::test {
namespace {

using bench::BulkServer;

#ifdef __SANITIZE_ADDRESS__
// The sanitizer keeps memory too, so that a bound says nothing.
constexpr bool kIsBound = false;
constexpr std::uint64_t kLarge = std::uint64_t{64} << 20;
constexpr char kMarks[] = "0=A 33554432=M 67108863=Z ";
#else
constexpr bool kIsBound = true;
constexpr std::uint64_t kLarge = std::uint64_t{1} << 30;
constexpr char kMarks[] = "0=A 536870912=M 1073741823=Z ";
#endif
constexpr long kMostKilobytes = 40L * 1024;
constexpr std::uint64_t kRoomWanted = std::uint64_t{3} << 30;
constexpr int kSeconds = 60;

class Sizes : public TransferTest {
 protected:
  struct Outcome {
    std::string words;
    long peakKilobytes = -1;
  };

  // A file without content on the disk, but for its marks.
  std::string SparseFile() const {
    std::string name = files_.Write("here/large.bin", "A");
    std::fstream file(name, std::ios::in | std::ios::out | std::ios::binary);
    file.seekp(static_cast<std::streamoff>(kLarge / 2)).put('M');
    file.seekp(static_cast<std::streamoff>(kLarge - 1)).put('Z');
    return name;
  }
  // The transfer in a new process.
  Outcome RunProgram(const Words& words) const {
    Words all{TRANSFER_PROGRAM};
    all.insert(all.end(), words.begin(), words.end());
    ChildProcess program(all, files_.Path("said"));
    EXPECT_EQ(program.Finish(kSeconds), 0) << files_.Read("said");
    std::istringstream said(files_.Read("said"));
    Outcome outcome;
    std::getline(said, outcome.words);
    said >> outcome.peakKilobytes;
    RecordProperty("peakKilobytes", std::to_string(outcome.peakKilobytes));
    return outcome;
  }
  static void ExpectConstantMemory(const Outcome& outcome) {
    EXPECT_GT(outcome.peakKilobytes, 0);
    if (kIsBound) {
      EXPECT_LT(outcome.peakKilobytes, kMostKilobytes);
    }
  }
  std::string MarksOfFile(const std::string& name) const {
    std::ifstream file(files_.Path(name), std::ios::binary);
    std::string piece(std::size_t{1} << 20, '\0');
    std::string marks;
    std::uint64_t offset = 0;
    while (file.read(piece.data(), static_cast<std::streamsize>(piece.size())) || file.gcount() > 0) {
      const auto got = static_cast<std::size_t>(file.gcount());
      marks += bench::Marks({piece.data(), got}, offset);
      offset += got;
    }
    return marks;
  }
};

TEST_F(Sizes, EmptyFileAndOneByteCome) {
  for (const std::string& content : {std::string(), std::string(1, '\0')}) {
    CloseKeptConnections();
    Reply(FileAnswer("f.bin", content));
    EXPECT_EQ(DownloadHere(), "ok");
    EXPECT_EQ(TreeOf(Target()), (Tree{{"f.bin", "file " + content}}));
  }
}

TEST_F(Sizes, EmptyFileAndOneByteGo) {
  for (const std::string content : {"", "\n"}) {
    CloseKeptConnections();
    server_.Expect(WholeUpload());
    EXPECT_EQ(RunWith(File(content)), "VT_BSTR arrived");
    const std::string sent = server_.Received().back();
    const std::size_t start = sent.find("POST /up?ticket=T1 HTTP/1.1\r\n");
    ASSERT_NE(start, std::string::npos);
    const std::size_t end = sent.find("POST /", start + 1);
    const std::size_t length = sent.find("Content-Length: ", start);
    EXPECT_EQ(sent.substr(length, end - length),
              "Content-Length: " + std::to_string(content.size()) + "\r\n\r\n" + content);
  }
}

TEST_F(Sizes, LargeFileComesInConstantMemory) {
  struct statvfs room {};
  ASSERT_EQ(statvfs(Target().c_str(), &room), 0);
  if (room.f_bavail * room.f_frsize < kRoomWanted) GTEST_SKIP() << "less than 3 GB free in " << Target();
  const BulkServer bulk(false);
  const Outcome outcome = RunProgram({"down", ServerUrl(), bulk.FileUrl(kLarge), Target()});
  EXPECT_EQ(outcome.words, "ok");
  EXPECT_EQ(MarksOfFile("target/bulk.bin"), kMarks);
  ExpectConstantMemory(outcome);
}

TEST_F(Sizes, LargeFileGoesInConstantMemory) {
  const BulkServer bulk(true);
  server_.Expect(
      RawScript().Reply(ScriptAnswer(bulk.Url() + "/up?ticket=T1")).Reply(ScriptAnswer("arrived")));
  const Outcome outcome = RunProgram({"up", ServerUrl(), SparseFile()});
  EXPECT_EQ(outcome.words, "ok");
  EXPECT_EQ(bulk.BytesTaken(), kLarge);
  EXPECT_EQ(bulk.MarksTaken(), kMarks);
  ExpectConstantMemory(outcome);
}

}  // namespace
}  // namespace qv::test
