// Downloads that fail, at each operation in turn.
#include <gtest/gtest.h>

#include <ostream>
#include <set>
#include <string>

#include "fixtures/scarce_memory.h"
#include "script/download_fixture.h"

namespace qv {
namespace {

using std::literals::string_view_literals::operator""sv;

constexpr char kNoRequest[] = "_com_error 0x80004003 <null>";

// One operation that fails. There is a cookie, so it has a header.
struct Row {
  const char* name;
  HttpStep step;
  int nth;
  bool early;  // there was nothing to close yet
  const char* closes;
};
void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

class DownloadFails : public DownloadFixture, public testing::WithParamInterface<Row> {
 protected:
  void SetUp() override {
    cookie_ = u"k=v";
    AnswerNamed(u"a.txt");
  }
  // With an empty target, so that a directory is made on the way.
  void ExpectFailure(const std::string& words) {
    EXPECT_EQ(DownloadThrows(u"http://files/f", u""),
              GetParam().early ? kNoRequest : "EQvException 0x00000000 " + words);
    EXPECT_EQ(Closes(), GetParam().closes);
    EXPECT_EQ(http_.LiveObjects(), 0);
  }
};

TEST_P(DownloadFails, WithTheComponentsWords) {
  http_.Fail(GetParam().step, E_FAIL, u"line cut", GetParam().nth);
  ExpectFailure("line cut");
}

TEST_P(DownloadFails, WithoutWords) {
  http_.Fail(GetParam().step, E_INVALIDARG, WideString(), GetParam().nth);
  ExpectFailure("");
}

constexpr Row kRows[] = {
    {"Create", HttpStep::kCreate, 1, true, ""},
    {"Run", HttpStep::kRun, 1, true, ""},
    {"QuerySession", HttpStep::kQuerySession, 1, true, ""},
    {"Open", HttpStep::kOpen, 1, true, ""},
    {"OpenRequest", HttpStep::kOpenRequest, 1, true, ""},
    {"SessionHeader", HttpStep::kSetHeader, 1, false, "RS"},
    {"CookieHeader", HttpStep::kSetHeader, 2, false, "RS"},
    {"Send", HttpStep::kSend, 1, false, "RS"},
    {"Disposition", HttpStep::kGetHeader, 1, false, "RS"},
    {"ReadToFile", HttpStep::kReadToFile, 1, false, "RS"},
    {"CloseRequest", HttpStep::kCloseRequest, 1, false, "RRS"},
    {"CloseSession", HttpStep::kCloseSession, 1, false, "RSRS"},
};

INSTANTIATE_TEST_SUITE_P(Steps, DownloadFails, testing::ValuesIn(kRows),
                         [](const testing::TestParamInfo<Row>& row) { return std::string(row.param.name); });

class DownloadFailure : public DownloadFixture {
 protected:
  // The header is refused: both are closed, and no file or directory is made.
  void ExpectRefused(const WideString& header) {
    for (const char16_t* target : {u"c:\\tmp", u""}) {
      FakeHttp http;
      HttpAnswer answer{u"200", u"3", u"abc"};
      if (!header.IsNull()) answer.headers[u"Content-Disposition"] = header;
      http.AnswerAs(answer);
      EXPECT_EQ(DownloadThrows(u"http://files/f", target), kUnknownProblem) << Shown(header);
      EXPECT_EQ(http.CallsNamed("Close "), (Lines{"Close request", "Close session"})) << Shown(header);
      EXPECT_TRUE(http.CallsNamed("ReadToFile").empty()) << Shown(header);
      EXPECT_EQ(files_.Count(), 0) << Shown(header);
    }
  }
};

TEST_F(DownloadFailure, HeaderWithoutANameIsAnUnknownProblem) {
  ExpectRefused(WideString());
  ExpectRefused(u"");
  ExpectRefused(u"attachment");
  ExpectRefused(u"=a.txt");
}

TEST_F(DownloadFailure, NameThatLeavesTheDirectoryIsAnUnknownProblem) {
  ExpectRefused(u"attachment; filename=");
  ExpectRefused(u"attachment; filename=.");
  ExpectRefused(u"attachment; filename=..");
  ExpectRefused(u"attachment; filename=../a.txt");
  ExpectRefused(u"attachment; filename=..\\a.txt");
  ExpectRefused(u"attachment; filename=/etc/passwd");
  ExpectRefused(u"attachment; filename=a/b");
  ExpectRefused(u"attachment; filename=a\\");
  ExpectRefused(u"attachment; filename=a.txt\0"sv);
  ExpectRefused(u"attachment; filename=a/b/c/");
  ExpectRefused(u"attachment; filename=\0/a"sv);
}

// The path is made of whatever comes, and the file is refused.
TEST_F(DownloadFailure, PathOfARefusedFileIsTold) {
  AnswerNamed(u"../a.txt");
  WideString target = u"c:\\tmp";
  EXPECT_EQ(Thrown([&] { Download(u"http://files/f", target); }), kUnknownProblem);
  EXPECT_EQ(Shown(target), "c:\\tmp\\../a.txt");
}

TEST_F(DownloadFailure, NullRequestIsAMissingReference) {
  http_.GiveNullRequest();
  EXPECT_EQ(DownloadThrows(), kNoRequest);
  EXPECT_EQ(http_.Calls().size(), 5u);
}

TEST_F(DownloadFailure, TextThatIsNoUrlIsAMissingReference) {
  for (const char16_t* url : {u"files", u"files/f", u"://files/f", u"http://files", u"http://files?f"}) {
    EXPECT_EQ(DownloadThrows(url, u"/t"), kNoRequest) << Shown(WideString(url));
    EXPECT_TRUE(http_.Calls().empty());
  }
}

// Whatever failed first, there is no request to close.
TEST_F(DownloadFailure, NoMemoryBeforeTheRequestIsAMissingReference) {
  const ClassCreator fake = RegisterClassCreator(CLSID_HttpComponent, nullptr);
  const WideString session(u"u1");
  CFileDownloader downloader(u"http://server.example:8080/file", u"proxy.example", 3128, u"");
  WideString target(u"c:\\tmp");
  EXPECT_EQ(ThrownWithout(Memory::kBoth, [&] { downloader.Download(session, target); }),
            std::set<std::string>{kNoRequest});
  RegisterClassCreator(CLSID_HttpComponent, fake);
}

TEST_F(DownloadFailure, EmptyUrlIsForTheComponentToRefuse) {
  http_.Fail(HttpStep::kOpen, E_INVALIDARG, u"no host");
  EXPECT_EQ(DownloadThrows(u"", u"/t"), kNoRequest);
  EXPECT_EQ(Opens(), Lines{"Open(, , 65535, , , )"});
}

// A second failure, in the clean-up, takes the place of the first.
TEST_F(DownloadFailure, FailureOfTheCleanUpGoesOutAsItIs) {
  http_.Fail(HttpStep::kSend, E_FAIL, u"first");
  http_.Fail(HttpStep::kCloseRequest, E_INVALIDARG, u"second");
  EXPECT_EQ(DownloadThrows(), "_com_error 0x80070057 second");
  EXPECT_EQ(Closes(), "R");
}

TEST_F(DownloadFailure, SessionThatCannotBeClosedInTheCleanUpGoesOutAsItIs) {
  AnswerWith(WideString());
  http_.Fail(HttpStep::kCloseSession, E_INVALIDARG, u"second");
  EXPECT_EQ(DownloadThrows(), "_com_error 0x80070057 second");
  EXPECT_EQ(Closes(), "RS");
}

TEST_F(DownloadFailure, NoTemporaryDirectoryIsAnUnknownProblem) {
  temp_.Set(nullptr);
  AnswerNamed(u"a.txt");
  AnswerNamed(u"a.txt");
  AnswerNamed(u"a.txt");
  EXPECT_EQ(DownloadThrows(u"http://files/f", u""), kUnknownProblem);
  temp_.Set("");
  tmp_.Set("");
  EXPECT_EQ(DownloadThrows(u"http://files/f", WideString()), kUnknownProblem);
  temp_.Set(files_.Path("missing").c_str());
  EXPECT_EQ(DownloadThrows(u"http://files/f", u""), kUnknownProblem);
  EXPECT_EQ(Closes(), "RSRSRS");
  EXPECT_TRUE(http_.CallsNamed("ReadToFile").empty());
}

TEST_F(DownloadFailure, NewDirectoryGoesWithItsDownload) {
  AnswerNamed(u"a.txt");
  http_.Fail(HttpStep::kReadToFile, HTTP_E_CUT_OFF, u"cut off");
  EXPECT_EQ(DownloadThrows(u"http://files/f", u""), "EQvException 0x00000000 cut off");
  EXPECT_EQ(http_.CallsNamed("ReadToFile").size(), 1u);
  EXPECT_EQ(files_.Count(), 0);
}

TEST_F(DownloadFailure, DirectoryOfTheHostStays) {
  AnswerNamed(u"a.txt");
  http_.Fail(HttpStep::kReadToFile, HTTP_E_CUT_OFF, u"cut off");
  EXPECT_EQ(DownloadThrows(u"http://files/f", FromUtf8(files_.Path())), "EQvException 0x00000000 cut off");
  EXPECT_EQ(files_.Count(), 0);
}

TEST_F(DownloadFailure, NextDownloadWorks) {
  AnswerWith(WideString());
  AnswerNamed(u"a.txt");
  EXPECT_EQ(DownloadThrows(), kUnknownProblem);
  EXPECT_EQ(DownloadThrows(), "nothing");
}

}  // namespace
}  // namespace qv
