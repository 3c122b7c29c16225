// The two legs of an upload, each by itself.
#include <gtest/gtest.h>

#include <string>

#include "script/upload_fixture.h"

namespace qv {
namespace {

constexpr char kNoRequest[] = "_com_error 0x80004003 <null>";

class PostFile : public UploadFixture {
 protected:
  std::string PostThrows(const CQvUrl& url, const WideString& proxy = u"") {
    return Thrown([&] { CFileUploader(u"http://srv/svc", u"").PostFile(url, proxy, u"u1", u"/a.txt"); });
  }
  std::string PostThrows() { return PostThrows(CQvUrl(u"http://files/up")); }
};

TEST_F(PostFile, MakesTheseCallsInThisOrder) {
  http_.AnswerFile();
  EXPECT_EQ(PostThrows(CQvUrl(u"https://files:8443/up/x?a=b&c=d"), u"proxy"), "nothing");
  EXPECT_EQ(Calls(), (Lines{"CoCreate IUnknown", "Run", "Query IHttpSession",
                            "Open(https, files, 8443, , , proxy)", "OpenRequest(POST, /up/x?a=b&c=d, */*, 0)",
                            "SetHeader(Cache-Control, no-cache)", "SetHeader(usid, u1)", "SendFile(/a.txt)",
                            "GetHeader(StatusCode)", "Close request", "Close session"}));
}

TEST_F(PostFile, SpareTextsChangePlaces) {
  CQvUrl url(u"http://files/up");
  url.firstSpareText = u"one";
  url.secondSpareText = u"two";
  http_.AnswerFile();
  EXPECT_EQ(PostThrows(url), "nothing");
  EXPECT_EQ(Opens(), Lines{"Open(http, files, 80, two, one, )"});
}

TEST_F(PostFile, PortIsCutTo16Bits) {
  http_.AnswerFile();
  EXPECT_EQ(PostThrows(CQvUrl(u"http://files:70000/up")), "nothing");
  EXPECT_EQ(Opens(), Lines{"Open(http, files, 4464, , , )"});
}

TEST_F(PostFile, FailureBeforeTheRequestIsAMissingReference) {
  int failures = 0;
  for (const HttpStep step : {HttpStep::kCreate, HttpStep::kRun, HttpStep::kQuerySession, HttpStep::kOpen,
                              HttpStep::kOpenRequest}) {
    FakeHttp http;
    http.Fail(step, E_FAIL, u"words");
    EXPECT_EQ(PostThrows(), kNoRequest) << failures;
    EXPECT_TRUE(http.CallsNamed("Close").empty()) << failures;
    EXPECT_EQ(http.LiveObjects(), 0) << failures++;
  }
}

TEST_F(PostFile, NullRequestIsAMissingReference) {
  http_.GiveNullRequest();
  EXPECT_EQ(PostThrows(), kNoRequest);
  EXPECT_EQ(http_.Calls().size(), 5u);
}

TEST_F(PostFile, RequestThatComesWithAFailureIsNoRequest) {
  http_.Fail(HttpStep::kOpenRequest, E_FAIL, u"its words");
  http_.GiveRequestWithTheFailure();
  EXPECT_EQ(PostThrows(), kNoRequest);
  EXPECT_EQ(Closes(), "");
}

TEST_F(PostFile, LaterFailureHasTheComponentsWords) {
  http_.Fail(HttpStep::kSendFile, HTTP_E_FILE_NOT_FOUND, u"no such file");
  EXPECT_EQ(PostThrows(), "EQvException 0x00000000 no such file");
  EXPECT_EQ(Closes(), "RS");
}

TEST_F(PostFile, FailureWithoutWordsHasEmptyOnes) {
  http_.Fail(HttpStep::kSetHeader, E_FAIL);
  EXPECT_EQ(PostThrows(), "EQvException 0x00000000 ");
  EXPECT_EQ(Closes(), "RS");
}

TEST_F(PostFile, FailureOfTheCleanUpGoesOutAsItIs) {
  http_.Fail(HttpStep::kSendFile, E_FAIL, u"first");
  http_.Fail(HttpStep::kCloseRequest, E_INVALIDARG, u"second");
  EXPECT_EQ(PostThrows(), "_com_error 0x80070057 second");
  EXPECT_EQ(Closes(), "R");
}

class ObtainUploadUrl : public UploadFixture {
 protected:
  WideString Obtain(const std::u16string& value) {
    http_.Answer(ValueAnswer(value));
    return CFileUploader(u"http://other/x", u"")
        .ObtainUploadUrl(file_.get(), u"u1", CQvUrl(u"http://srv/svc"));
  }
};

TEST_F(ObtainUploadUrl, GoesToTheUrlOfItsArgument) {
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"xsd:string\">http://f/u?t=1</r>")), "http://f/u?t=1");
  EXPECT_EQ(Opens(), Lines{"Open(http, srv, 80, , , )"});
  EXPECT_EQ(http_.Bodies(), Lines{FreshRequest()});
  EXPECT_EQ(TicketOf(file_.get()), "<null>, 0");
}

TEST_F(ObtainUploadUrl, ValueThatIsNoTextBecomesOne) {
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"xsd:int\">-42</r>")), "-42");
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"xsd:short\">7</r>")), "7");
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"xsd:byte\">7</r>")), "0");
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"xsd:boolean\">true</r>")), "-1");
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"xsd:boolean\">false</r>")), "0");
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"xsd:double\">1.5</r>")), "1.5");
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"float\">0.25</r>")), "0.25");
}

TEST_F(ObtainUploadUrl, EmptyValueBecomesTheEmptyText) {
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"xsd:string\"/>")), "");
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"xsd:long\">7</r>")), "");
  EXPECT_EQ(Shown(Obtain(u"<r xsi:type=\"xsd:decimal\">7</r>")), "");
}

TEST_F(ObtainUploadUrl, ObjectIsAnUnknownProblem) {
  EXPECT_EQ(Thrown([this] { Obtain(u"<r xsi:type=\"xsd:duration\">P1D</r>"); }), kUnknownProblem);
}

TEST_F(ObtainUploadUrl, NoFileIsAnUnknownProblem) {
  file_.reset();
  EXPECT_EQ(Thrown([this] { Obtain(u""); }), kUnknownProblem);
  EXPECT_TRUE(http_.Calls().empty());
}

}  // namespace
}  // namespace qv
