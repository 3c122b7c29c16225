// Uploads that fail, at each operation in turn.
#include <string>

#include "fixtures/transfer_calls.h"
#include "script/fake_attached_file.h"
#include "script/upload_fixture.h"

namespace qv {
namespace {

constexpr char kBefore[] = "<null>, 0";
constexpr char kAfter[] = "t1, -1";

class UploadFailure : public UploadFixture {
 protected:
  // What the upload with this fake file throws; nothing was sent by then.
  void ExpectUnsent(FakeAttachedFile* file, const Lines& log) {
    EXPECT_EQ(UploadThrows(file), kUnknownProblem);
    EXPECT_TRUE(http_.Calls().empty());
    EXPECT_EQ(file->References(), 1U);
    EXPECT_EQ(file->Log(), log);
  }
  FakeAttachedFilePtr fake_{new FakeAttachedFile(&http_, u"/a")};
};

// The map has a cookie, so each of the two requests has a header for it.
TEST_F(UploadFailure, EachFailedCallEndsTheUpload) {
  map_[u"CookieHandle"] = Text(u"k=v");
  EXPECT_EQ(Ticket(), "t1");
  const Lines calls = http_.Calls();
  const std::size_t nested = 15;
  ASSERT_EQ(calls.size(), nested + 12);
  const Lines transfer(calls.begin() + nested, calls.end());
  for (std::size_t i = 0; i < calls.size(); ++i) {
    for (const WideString& message : {WideString(u"line cut"), WideString()}) {
      SCOPED_TRACE(std::to_string(i) + " " + calls[i]);
      FakeHttp http;
      http.Answer(UrlAnswer(u"http://files:81/up?ticket=t1"));
      http.AnswerFile();
      http.FailCall(i, E_INVALIDARG, message);
      const IAttachedFilePtr file = CreateAttachedFile(u"/a");
      const bool isNested = i < nested;
      const bool isOpening = (isNested ? i : i - nested) < kOpeningCalls;
      EXPECT_EQ(UploadThrows(file.get()), !isOpening ? Refused(ToUtf8(message.view()))
                                          : isNested ? kNoSoapCall
                                                     : kUnknownProblem);
      EXPECT_EQ(http.Closes(),
                isNested ? ClosesAfterFailure(calls, i) : "RS" + ClosesAfterFailure(transfer, i - nested));
      EXPECT_EQ(http.LiveObjects(), 0);
      EXPECT_EQ(TicketOf(file), isNested ? kBefore : kAfter);
    }
  }
}

// A failure of the clean-up takes the place of the first one.
TEST_F(UploadFailure, CleanUpThatFailsHidesTheFirstFailure) {
  const struct {
    HttpStep first;
    HttpStep second;
    int nth;
    const char* thrown;
    const char* closes;
    const char* ticket;
  } rows[] = {{HttpStep::kSendFile, HttpStep::kCloseRequest, 2, kUnknownProblem, "RSR", kAfter},
              {HttpStep::kSendFile, HttpStep::kCloseSession, 2, kUnknownProblem, "RSRS", kAfter},
              {HttpStep::kSend, HttpStep::kCloseRequest, 1, kNoSoapCall, "R", kBefore}};
  for (const auto& row : rows) {
    FakeHttp http;
    http.Answer(UrlAnswer(u"http://files:81/up?ticket=t1"));
    http.AnswerFile();
    http.Fail(row.first, E_FAIL, u"first");
    http.Fail(row.second, E_FAIL, u"second", row.nth);
    const IAttachedFilePtr file = CreateAttachedFile(u"/a");
    EXPECT_EQ(UploadThrows(file.get()), row.thrown) << row.closes;
    EXPECT_EQ(http.Closes(), row.closes);
    EXPECT_EQ(TicketOf(file), row.ticket) << row.closes;
  }
}

TEST_F(UploadFailure, NullRequestEndsTheNestedCall) {
  http_.GiveNullRequest();
  EXPECT_EQ(UploadThrows(), kNoSoapCall);
  EXPECT_EQ(http_.Closes(), "");
}

TEST_F(UploadFailure, AnswerOfTheScriptWithoutALengthIsAnUnknownProblem) {
  http_.AnswerAs({u"200", WideString(), UrlAnswer(u"http://files:81/up?ticket=t1")});
  EXPECT_EQ(UploadThrows(), kUnknownProblem);
  EXPECT_EQ(http_.Closes(), "RS");
  EXPECT_EQ(TicketOf(file_), kBefore);
}

TEST_F(UploadFailure, FailedScriptLeavesTheOldTicketWithoutItsFlag) {
  EXPECT_EQ(file_->put_TicketId(u"t0"), S_OK);
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route");
  EXPECT_EQ(UploadThrows(), kNoSoapCall);
  EXPECT_EQ(TicketOf(file_), "t0, 0");
}

TEST_F(UploadFailure, FailedTransferLeavesTheNewTicketInPlaceOfTheOld) {
  EXPECT_EQ(file_->put_TicketId(u"t0"), S_OK);
  AnswerUpload();
  http_.Fail(HttpStep::kSendFile, E_FAIL, u"no such file");
  EXPECT_EQ(UploadThrows(), Refused("no such file"));
  EXPECT_EQ(TicketOf(file_), "t1, -1");
}

TEST_F(UploadFailure, UploadAfterAFailedTransferIsUnderTheNewTicket) {
  AnswerUpload();
  http_.Fail(HttpStep::kGetHeader, E_FAIL, u"cut", 3);
  EXPECT_EQ(UploadThrows(), Refused("cut"));
  AnswerUpload();
  EXPECT_EQ(UploadThrows(), "nothing");
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), AgainRequest("t1")}));
}

TEST_F(UploadFailure, NoFileIsAnUnknownProblem) {
  EXPECT_EQ(UploadThrows(nullptr), kUnknownProblem);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(UploadFailure, ServiceUrlIsParsedBeforeTheFileIsLookedAt) {
  EXPECT_EQ(Thrown([this] { CFileUploader(u"srv", u"").Upload(fake_.get(), map_); }), kNoUrl);
  EXPECT_EQ(Thrown([this] { CFileUploader(u"srv", u"").Upload(nullptr, map_); }), kNoUrl);
  EXPECT_TRUE(fake_->Log().empty());
}

TEST_F(UploadFailure, FileThatRefusesAPropertyIsAnUnknownProblem) {
  Lines log;
  for (const char* property : {"get_Filename", "IsTicketId", "get_TicketId"}) {
    const FakeAttachedFilePtr file(new FakeAttachedFile(&http_, u"/a"));
    file->Hold(u"t0");
    file->Fail(property, E_OUTOFMEMORY);
    log.push_back(std::string(property) + " after 0");
    ExpectUnsent(file.get(), log);
  }
}

TEST_F(UploadFailure, FileThatRefusesTheNewTicketIsNotSent) {
  fake_->Fail("put_TicketId", E_FAIL);
  AnswerUpload();
  EXPECT_EQ(UploadThrows(fake_.get()), kUnknownProblem);
  EXPECT_EQ(http_.Closes(), "RS");
  EXPECT_TRUE(http_.CallsNamed("SendFile").empty());
  EXPECT_EQ(fake_->Flag(), VARIANT_FALSE);
}

}  // namespace
}  // namespace qv
