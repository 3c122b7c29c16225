// Downloads that fail, at each operation in turn.
#include <set>
#include <string>

#include "fixtures/scarce_memory.h"
#include "fixtures/transfer_calls.h"
#include "script/download_fixture.h"

namespace qv {
namespace {

using namespace std::literals::string_view_literals;

class DownloadFailure : public DownloadFixture {
 protected:
  // The header is refused: both are closed, and no file or directory is made.
  void ExpectRefused(const WideString& header) {
    for (const char16_t* target : {u"c:\\tmp", u""}) {
      FakeHttp http;
      http.AnswerDownload(header);
      EXPECT_EQ(DownloadThrows(u"http://files/f", target), kUnknownProblem) << Shown(header);
      EXPECT_EQ(http.Closes(), "RS") << Shown(header);
      EXPECT_TRUE(http.CallsNamed("ReadToFile").empty()) << Shown(header);
      EXPECT_EQ(files_.Count(), 0) << Shown(header);
    }
  }
};

// The target is empty, so that a directory is made on the way.
TEST_F(DownloadFailure, EachFailedCallEndsTheDownload) {
  cookie_ = u"k=v";
  http_.AnswerNamed(u"a.txt");
  EXPECT_EQ(DownloadThrows(u"http://files/f", u""), "nothing");
  const Lines calls = http_.Calls();
  ASSERT_EQ(calls.size(), 12U);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    for (const WideString& message : {WideString(u"line cut"), WideString()}) {
      FakeHttp http;
      http.AnswerNamed(u"a.txt");
      http.FailCall(i, E_INVALIDARG, message);
      EXPECT_EQ(DownloadThrows(u"http://files/f", u""),
                i < kOpeningCalls ? kNoPointer : Refused(ToUtf8(message.view())))
          << calls[i];
      EXPECT_EQ(http.Closes(), ClosesAfterFailure(calls, i)) << calls[i];
      EXPECT_EQ(http.LiveObjects(), 0) << calls[i];
    }
  }
}

TEST_F(DownloadFailure, HeaderWithoutANameIsAnUnknownProblem) {
  for (const WideString& header :
       {WideString(), WideString(u""), WideString(u"attachment"), WideString(u"=a.txt")})
    ExpectRefused(header);
}

TEST_F(DownloadFailure, NameThatLeavesTheDirectoryIsAnUnknownProblem) {
  for (const std::u16string_view name :
       {u""sv, u"."sv, u".."sv, u"../a.txt"sv, u"..\\a.txt"sv, u"/etc/passwd"sv, u"a/b"sv, u"a\\"sv,
        u"a.txt\0"sv, u"a/b/c/"sv, u"\0/a"sv})
    ExpectRefused(u"attachment; filename=" + std::u16string(name));
}

// The path is made of whatever comes, and the file is refused.
TEST_F(DownloadFailure, PathOfARefusedFileIsReported) {
  http_.AnswerNamed(u"../a.txt");
  WideString target = u"c:\\tmp";
  EXPECT_EQ(Thrown([&] { PathInto(u"http://files/f", target); }), kUnknownProblem);
  EXPECT_EQ(Shown(target), "c:\\tmp\\../a.txt");
}

TEST_F(DownloadFailure, NullRequestIsAMissingReference) {
  http_.GiveNullRequest();
  EXPECT_EQ(DownloadThrows(), kNoPointer);
  EXPECT_EQ(http_.Calls().size(), 5U);
}

TEST_F(DownloadFailure, TextThatIsNotAUrlIsAMissingReference) {
  for (const char16_t* url : {u"files", u"files/f", u"://files/f", u"http://files", u"http://files?f"}) {
    EXPECT_EQ(DownloadThrows(url, u"/t"), kNoPointer) << Shown(WideString(url));
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
            std::set<std::string>{kNoPointer});
  RegisterClassCreator(CLSID_HttpComponent, fake);
}

TEST_F(DownloadFailure, EmptyUrlIsForTheComponentToRefuse) {
  http_.Fail(HttpStep::kOpen, E_INVALIDARG, u"no host");
  EXPECT_EQ(DownloadThrows(u"", u"/t"), kNoPointer);
  EXPECT_EQ(http_.Opens(), Lines{"Open(, , 65535, , , )"});
}

// A failure of the clean-up takes the place of the first one.
TEST_F(DownloadFailure, FailureOfTheCleanUpIsThrownAsItIs) {
  http_.Fail(HttpStep::kSend, E_FAIL, u"first");
  http_.Fail(HttpStep::kCloseRequest, E_INVALIDARG, u"second");
  EXPECT_EQ(DownloadThrows(), "_com_error 0x80070057 second");
  EXPECT_EQ(http_.Closes(), "R");
}

TEST_F(DownloadFailure, SessionThatCannotBeClosedInTheCleanUpIsThrownAsItIs) {
  http_.AnswerDownload(WideString());
  http_.Fail(HttpStep::kCloseSession, E_INVALIDARG, u"second");
  EXPECT_EQ(DownloadThrows(), "_com_error 0x80070057 second");
  EXPECT_EQ(http_.Closes(), "RS");
}

TEST_F(DownloadFailure, NoTemporaryDirectoryIsAnUnknownProblem) {
  for (int i = 0; i < 3; ++i) http_.AnswerNamed(u"a.txt");
  temp_.Set(nullptr);
  EXPECT_EQ(DownloadThrows(u"http://files/f", u""), kUnknownProblem);
  temp_.Set("");
  tmp_.Set("");
  EXPECT_EQ(DownloadThrows(u"http://files/f", WideString()), kUnknownProblem);
  temp_.Set(files_.Path("missing").c_str());
  EXPECT_EQ(DownloadThrows(u"http://files/f", u""), kUnknownProblem);
  EXPECT_EQ(http_.Closes(), "RSRSRS");
  EXPECT_TRUE(http_.CallsNamed("ReadToFile").empty());
}

TEST_F(DownloadFailure, NoFileOrNewDirectoryStays) {
  for (const WideString& target : {WideString(u""), FromUtf8(files_.Path())}) {
    FakeHttp http;
    http.AnswerNamed(u"a.txt");
    http.Fail(HttpStep::kReadToFile, HTTP_E_CUT_OFF, u"cut off");
    EXPECT_EQ(DownloadThrows(u"http://files/f", target), Refused("cut off"));
    EXPECT_EQ(http.CallsNamed("ReadToFile").size(), 1U);
    EXPECT_EQ(files_.Count(), 0);
  }
}

TEST_F(DownloadFailure, NextDownloadWorks) {
  http_.AnswerDownload(WideString());
  http_.AnswerNamed(u"a.txt");
  EXPECT_EQ(DownloadThrows(), kUnknownProblem);
  EXPECT_EQ(DownloadThrows(), "nothing");
}

}  // namespace
}  // namespace qv
