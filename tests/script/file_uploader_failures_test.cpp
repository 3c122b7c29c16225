// Uploads that fail, at each operation in turn.
#include <gtest/gtest.h>

#include <ostream>
#include <string>

#include "script/fake_attached_file.h"
#include "script/upload_fixture.h"

namespace qv {
namespace {

constexpr char16_t kUploadUrl[] = u"http://files:81/up?ticket=t1";
constexpr char kComponent[] = "the component's";
constexpr char kNoCall[] = "Cannot create a soap call.";
constexpr char kUnknown[] = "Unknown Http problem.";
constexpr char kBefore[] = "<null>, 0";
constexpr char kAfter[] = "t1, -1";

// One operation that fails. The map has a cookie, so each of the two requests has a header for it.
struct Row {
  const char* name;
  HttpStep step;
  int nth;
  const char* words;  // of the exception; its code is always 0
  const char* closes;
  const char* ticket;
};
void PrintTo(const Row& row, std::ostream* out) {
  *out << row.name;
}

class UploadFails : public UploadFixture, public testing::WithParamInterface<Row> {
 protected:
  void SetUp() override {
    map_[u"CookieHandle"] = Variant::FromString(u"k=v");
    AnswerUpload(kUploadUrl);
  }
  void ExpectFailure(const std::string& componentsWords) {
    const std::string words =
        GetParam().words == std::string(kComponent) ? componentsWords : GetParam().words;
    EXPECT_EQ(UploadThrows(), "EQvException 0x00000000 " + words);
    EXPECT_EQ(Closes(), GetParam().closes);
    EXPECT_EQ(http_.LiveObjects(), 0);
    EXPECT_EQ(TicketOf(file_.get()), GetParam().ticket);
  }
};

TEST_P(UploadFails, WithTheComponentsWords) {
  http_.Fail(GetParam().step, E_FAIL, u"line cut", GetParam().nth);
  ExpectFailure("line cut");
}

TEST_P(UploadFails, WithoutWords) {
  http_.Fail(GetParam().step, E_INVALIDARG, WideString(), GetParam().nth);
  ExpectFailure("");
}

constexpr Row kNestedRows[] = {
    {"Create", HttpStep::kCreate, 1, kNoCall, "", kBefore},
    {"Run", HttpStep::kRun, 1, kNoCall, "", kBefore},
    {"QuerySession", HttpStep::kQuerySession, 1, kNoCall, "", kBefore},
    {"Open", HttpStep::kOpen, 1, kNoCall, "", kBefore},
    {"OpenRequest", HttpStep::kOpenRequest, 1, kNoCall, "", kBefore},
    {"HostHeader", HttpStep::kSetHeader, 1, kComponent, "RS", kBefore},
    {"TypeHeader", HttpStep::kSetHeader, 2, kComponent, "RS", kBefore},
    {"ActionHeader", HttpStep::kSetHeader, 3, kComponent, "RS", kBefore},
    {"CookieHeader", HttpStep::kSetHeader, 4, kComponent, "RS", kBefore},
    {"Send", HttpStep::kSend, 1, kComponent, "RS", kBefore},
    {"Status", HttpStep::kGetHeader, 1, kComponent, "RS", kBefore},
    {"Length", HttpStep::kGetHeader, 2, kComponent, "RS", kBefore},
    {"Read", HttpStep::kRead, 1, kComponent, "RS", kBefore},
    {"CloseRequest", HttpStep::kCloseRequest, 1, kComponent, "RRS", kBefore},
    {"CloseSession", HttpStep::kCloseSession, 1, kComponent, "RSRS", kBefore},
};

constexpr Row kPostRows[] = {
    {"Create", HttpStep::kCreate, 2, kUnknown, "RS", kAfter},
    {"Run", HttpStep::kRun, 2, kUnknown, "RS", kAfter},
    {"QuerySession", HttpStep::kQuerySession, 2, kUnknown, "RS", kAfter},
    {"Open", HttpStep::kOpen, 2, kUnknown, "RS", kAfter},
    {"OpenRequest", HttpStep::kOpenRequest, 2, kUnknown, "RS", kAfter},
    {"CacheHeader", HttpStep::kSetHeader, 5, kComponent, "RSRS", kAfter},
    {"SessionHeader", HttpStep::kSetHeader, 6, kComponent, "RSRS", kAfter},
    {"CookieHeader", HttpStep::kSetHeader, 7, kComponent, "RSRS", kAfter},
    {"SendFile", HttpStep::kSendFile, 1, kComponent, "RSRS", kAfter},
    {"Status", HttpStep::kGetHeader, 3, kComponent, "RSRS", kAfter},
    {"CloseRequest", HttpStep::kCloseRequest, 2, kComponent, "RSRRS", kAfter},
    {"CloseSession", HttpStep::kCloseSession, 2, kComponent, "RSRSRS", kAfter},
};

std::string NameOf(const testing::TestParamInfo<Row>& row) {
  return row.param.name;
}
INSTANTIATE_TEST_SUITE_P(Nested, UploadFails, testing::ValuesIn(kNestedRows), NameOf);
INSTANTIATE_TEST_SUITE_P(Post, UploadFails, testing::ValuesIn(kPostRows), NameOf);

class UploadFailure : public UploadFixture {
 protected:
  // What the upload with this fake file raises; nothing may have gone out by then.
  void ExpectUnsent(FakeAttachedFile* file, const std::string& thrown) {
    EXPECT_EQ(UploadThrows(file), thrown);
    EXPECT_TRUE(http_.Calls().empty());
    EXPECT_EQ(file->References(), 1u);
  }
  FakeAttachedFilePtr fake_{new FakeAttachedFile(&http_, u"/a")};
};

// A second failure, in the clean-up, takes the place of the first.
TEST_F(UploadFailure, CleanUpOfThePostThatFailsIsAnUnknownProblem) {
  AnswerUpload(kUploadUrl);
  http_.Fail(HttpStep::kSendFile, E_FAIL, u"first");
  http_.Fail(HttpStep::kCloseRequest, E_FAIL, u"second", 2);
  EXPECT_EQ(UploadThrows(), kUnknownProblem);
  EXPECT_EQ(Closes(), "RSR");
  EXPECT_EQ(TicketOf(file_.get()), kAfter);
}

TEST_F(UploadFailure, SessionThatCannotBeClosedInTheCleanUpIsAnUnknownProblem) {
  AnswerUpload(kUploadUrl);
  http_.Fail(HttpStep::kSendFile, E_FAIL, u"first");
  http_.Fail(HttpStep::kCloseSession, E_FAIL, u"second", 2);
  EXPECT_EQ(UploadThrows(), kUnknownProblem);
  EXPECT_EQ(Closes(), "RSRS");
}

TEST_F(UploadFailure, CleanUpOfTheNestedCallThatFailsIsNoCall) {
  http_.Answer(UrlAnswer(kUploadUrl));
  http_.Fail(HttpStep::kSend, E_FAIL, u"first");
  http_.Fail(HttpStep::kCloseRequest, E_FAIL, u"second");
  EXPECT_EQ(UploadThrows(), "EQvException 0x00000000 Cannot create a soap call.");
  EXPECT_EQ(Closes(), "R");
}

TEST_F(UploadFailure, RequestThatIsNullEndsTheNestedCall) {
  http_.GiveNullRequest();
  EXPECT_EQ(UploadThrows(), "EQvException 0x00000000 Cannot create a soap call.");
  EXPECT_EQ(Closes(), "");
}

TEST_F(UploadFailure, AnswerOfTheScriptWithoutALengthIsAnUnknownProblem) {
  http_.AnswerAs({u"200", WideString(), UrlAnswer(kUploadUrl)});
  EXPECT_EQ(UploadThrows(), kUnknownProblem);
  EXPECT_EQ(Closes(), "RS");
  EXPECT_EQ(TicketOf(file_.get()), kBefore);
}

TEST_F(UploadFailure, FailedScriptLeavesTheOldTicketWithoutItsFlag) {
  EXPECT_EQ(file_->put_TicketId(u"t0"), S_OK);
  http_.Fail(HttpStep::kOpen, E_FAIL, u"no route");
  EXPECT_EQ(UploadThrows(), "EQvException 0x00000000 Cannot create a soap call.");
  EXPECT_EQ(TicketOf(file_.get()), "t0, 0");
}

TEST_F(UploadFailure, FailedTransferLeavesTheNewTicketInPlaceOfTheOld) {
  EXPECT_EQ(file_->put_TicketId(u"t0"), S_OK);
  AnswerUpload(kUploadUrl);
  http_.Fail(HttpStep::kSendFile, E_FAIL, u"no such file");
  EXPECT_EQ(UploadThrows(), "EQvException 0x00000000 no such file");
  EXPECT_EQ(TicketOf(file_.get()), "t1, -1");
}

TEST_F(UploadFailure, UploadAfterAFailedTransferIsUnderTheNewTicket) {
  AnswerUpload(kUploadUrl);
  http_.Fail(HttpStep::kGetHeader, E_FAIL, u"cut", 3);
  EXPECT_EQ(UploadThrows(), "EQvException 0x00000000 cut");
  AnswerUpload(kUploadUrl);
  EXPECT_EQ(UploadThrows(), "nothing");
  EXPECT_EQ(http_.Bodies(), (Lines{FreshRequest(), AgainRequest("t1")}));
}

TEST_F(UploadFailure, NoFileIsAnUnknownProblem) {
  EXPECT_EQ(UploadThrows(nullptr), kUnknownProblem);
  EXPECT_TRUE(http_.Calls().empty());
}

TEST_F(UploadFailure, ServiceUrlIsParsedBeforeTheFileIsLookedAt) {
  EXPECT_EQ(Thrown([this] { CFileUploader(u"srv", u"").Upload(fake_.get(), map_); }), kNotParsed);
  EXPECT_EQ(Thrown([this] { CFileUploader(u"srv", u"").Upload(nullptr, map_); }), kNotParsed);
  EXPECT_TRUE(fake_->Log().empty());
}

TEST_F(UploadFailure, FileThatRefusesItsNameIsAnUnknownProblem) {
  fake_->Fail("get_Filename", E_FAIL);
  ExpectUnsent(fake_.get(), kUnknownProblem);
  EXPECT_EQ(fake_->Log(), Lines{"get_Filename after 0"});
}

TEST_F(UploadFailure, FileThatRefusesItsFlagIsAnUnknownProblem) {
  fake_->Fail("IsTicketId", E_OUTOFMEMORY);
  ExpectUnsent(fake_.get(), kUnknownProblem);
  EXPECT_EQ(fake_->Log(), (Lines{"get_Filename after 0", "IsTicketId after 0"}));
}

TEST_F(UploadFailure, FileThatRefusesItsTicketIsAnUnknownProblem) {
  fake_->Hold(u"t0");
  fake_->Fail("get_TicketId", E_FAIL);
  ExpectUnsent(fake_.get(), kUnknownProblem);
  EXPECT_EQ(fake_->Log(), (Lines{"get_Filename after 0", "IsTicketId after 0", "get_TicketId after 0"}));
}

TEST_F(UploadFailure, FileThatRefusesTheNewTicketIsNotSent) {
  fake_->Fail("put_TicketId", E_FAIL);
  AnswerUpload(kUploadUrl);
  EXPECT_EQ(UploadThrows(fake_.get()), kUnknownProblem);
  EXPECT_EQ(Closes(), "RS");
  EXPECT_TRUE(http_.CallsNamed("SendFile").empty());
  EXPECT_EQ(fake_->Flag(), VARIANT_FALSE);
}

}  // namespace
}  // namespace qv
