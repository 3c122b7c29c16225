// Uploads that fail, at each operation in turn.
#include <string>

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
    EXPECT_EQ(file->References(), 1u);
    EXPECT_EQ(file->Log(), log);
  }
  FakeAttachedFilePtr fake_{new FakeAttachedFile(&http_, u"/a")};
};

// One row for each operation of the nested call and of the transfer. The map has a cookie, so each of the two
// requests has a header for it.
TEST_F(UploadFailure, EachStepFailsLikeThis) {
  const struct {
    const char* name;
    HttpStep step;
    int nth;
    const char* thrown;  // null: an exception with the component's message
    const char* closes;
    const char* ticket;
  } rows[] = {
      {"create", HttpStep::kCreate, 1, kNoSoapCall, "", kBefore},
      {"run", HttpStep::kRun, 1, kNoSoapCall, "", kBefore},
      {"query session", HttpStep::kQuerySession, 1, kNoSoapCall, "", kBefore},
      {"open", HttpStep::kOpen, 1, kNoSoapCall, "", kBefore},
      {"open request", HttpStep::kOpenRequest, 1, kNoSoapCall, "", kBefore},
      {"host header", HttpStep::kSetHeader, 1, nullptr, "RS", kBefore},
      {"type header", HttpStep::kSetHeader, 2, nullptr, "RS", kBefore},
      {"action header", HttpStep::kSetHeader, 3, nullptr, "RS", kBefore},
      {"cookie header", HttpStep::kSetHeader, 4, nullptr, "RS", kBefore},
      {"send", HttpStep::kSend, 1, nullptr, "RS", kBefore},
      {"status", HttpStep::kGetHeader, 1, nullptr, "RS", kBefore},
      {"length", HttpStep::kGetHeader, 2, nullptr, "RS", kBefore},
      {"read", HttpStep::kRead, 1, nullptr, "RS", kBefore},
      {"close request", HttpStep::kCloseRequest, 1, nullptr, "RRS", kBefore},
      {"close session", HttpStep::kCloseSession, 1, nullptr, "RSRS", kBefore},
      {"transfer: create", HttpStep::kCreate, 2, kUnknownProblem, "RS", kAfter},
      {"transfer: run", HttpStep::kRun, 2, kUnknownProblem, "RS", kAfter},
      {"transfer: query session", HttpStep::kQuerySession, 2, kUnknownProblem, "RS", kAfter},
      {"transfer: open", HttpStep::kOpen, 2, kUnknownProblem, "RS", kAfter},
      {"transfer: open request", HttpStep::kOpenRequest, 2, kUnknownProblem, "RS", kAfter},
      {"transfer: cache header", HttpStep::kSetHeader, 5, nullptr, "RSRS", kAfter},
      {"transfer: session header", HttpStep::kSetHeader, 6, nullptr, "RSRS", kAfter},
      {"transfer: cookie header", HttpStep::kSetHeader, 7, nullptr, "RSRS", kAfter},
      {"transfer: send file", HttpStep::kSendFile, 1, nullptr, "RSRS", kAfter},
      {"transfer: status", HttpStep::kGetHeader, 3, nullptr, "RSRS", kAfter},
      {"transfer: close request", HttpStep::kCloseRequest, 2, nullptr, "RSRRS", kAfter},
      {"transfer: close session", HttpStep::kCloseSession, 2, nullptr, "RSRSRS", kAfter},
  };
  map_[u"CookieHandle"] = Variant::FromString(u"k=v");
  for (const auto& row : rows) {
    for (const char* message : {"line cut", ""}) {
      SCOPED_TRACE(row.name);
      FakeHttp http;
      http.Answer(UrlAnswer(u"http://files:81/up?ticket=t1"));
      http.AnswerFile();
      http.Fail(row.step, *message == 0 ? E_INVALIDARG : E_FAIL,
                *message == 0 ? WideString() : FromUtf8(message), row.nth);
      const IAttachedFilePtr file = CreateAttachedFile(u"/a");
      EXPECT_EQ(UploadThrows(file.get()), row.thrown == nullptr ? Refused(message) : row.thrown);
      EXPECT_EQ(http.Closes(), row.closes);
      EXPECT_EQ(http.LiveObjects(), 0);
      EXPECT_EQ(TicketOf(file), row.ticket);
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
