// The two halves of an upload, each alone: the call that asks for the URL, and the transfer.
#include <string>

#include "fixtures/transfer_calls.h"
#include "script/upload_fixture.h"

namespace qv {
namespace {

class PostFile : public UploadFixture {
 protected:
  static std::string PostThrows(const CQvUrl& url = CQvUrl(u"http://files/up"),
                                const WideString& proxy = u"") {
    return Thrown([&] { CFileUploader(u"http://srv/svc", u"").PostFile(url, proxy, u"u1", u"/a.txt"); });
  }
};

TEST_F(PostFile, MakesTheseCallsInThisOrder) {
  http_.AnswerFile();
  EXPECT_EQ(PostThrows(CQvUrl(u"https://files:8443/up/x?a=b&c=d"), u"proxy"), "nothing");
  EXPECT_EQ(http_.PlainCalls(), TransferCalls("https, files, 8443, , , proxy", "POST, /up/x?a=b&c=d, */*, 0",
                                              {"SetHeader(Cache-Control, no-cache)", "SetHeader(usid, u1)",
                                               "SendFile(/a.txt)", "GetHeader(StatusCode)"}));
}

TEST_F(PostFile, SpareTextsChangePlacesAndThePortIsCutTo16Bits) {
  CQvUrl url(u"http://files:70000/up");
  url.firstSpareText = u"one";
  url.secondSpareText = u"two";
  http_.AnswerFile();
  EXPECT_EQ(PostThrows(url), "nothing");
  EXPECT_EQ(http_.Opens(), Lines{"Open(http, files, 4464, two, one, )"});
}

TEST_F(PostFile, FailureBeforeTheRequestIsAMissingReference) {
  int failures = 0;
  for (const HttpStep step : {HttpStep::kCreate, HttpStep::kRun, HttpStep::kQuerySession, HttpStep::kOpen,
                              HttpStep::kOpenRequest}) {
    FakeHttp http;
    http.Fail(step, E_FAIL, u"words");
    EXPECT_EQ(PostThrows(), kNoPointer) << failures;
    EXPECT_TRUE(http.CallsNamed("Close").empty()) << failures;
    EXPECT_EQ(http.LiveObjects(), 0) << failures++;
  }
}

TEST_F(PostFile, NullRequestIsAMissingReference) {
  http_.GiveNullRequest();
  EXPECT_EQ(PostThrows(), kNoPointer);
  EXPECT_EQ(http_.Calls().size(), 5U);
}

TEST_F(PostFile, RequestThatComesWithAFailureIsNotUsed) {
  http_.Fail(HttpStep::kOpenRequest, E_FAIL, u"its words");
  http_.GiveRequestWithTheFailure();
  EXPECT_EQ(PostThrows(), kNoPointer);
  EXPECT_EQ(http_.Closes(), "");
}

TEST_F(PostFile, LaterFailureHasTheMessageOfTheComponent) {
  http_.Fail(HttpStep::kSendFile, HTTP_E_FILE_NOT_FOUND, u"no such file");
  EXPECT_EQ(PostThrows(), Refused("no such file"));
  http_.Fail(HttpStep::kSetHeader, E_FAIL, WideString(), 3);
  EXPECT_EQ(PostThrows(), Refused(""));
  EXPECT_EQ(http_.Closes(), "RSRS");
  http_.Fail(HttpStep::kSendFile, E_FAIL, u"first", 2);
  http_.Fail(HttpStep::kCloseRequest, E_INVALIDARG, u"second", 3);
  EXPECT_EQ(PostThrows(), "_com_error 0x80070057 second");
  EXPECT_EQ(http_.Closes(), "RSRSR");
}

class ObtainUploadUrl : public UploadFixture {
 protected:
  std::string Obtained(const std::u16string& value) {
    http_.Answer(ExecuteAnswer(value));
    return Shown(
        CFileUploader(u"http://other/x", u"").ObtainUploadUrl(file_.get(), u"u1", CQvUrl(u"http://srv/svc")));
  }
};

TEST_F(ObtainUploadUrl, AsksTheUrlOfItsArgument) {
  EXPECT_EQ(Obtained(ValueElement(u"xsd:string", u"http://f/u?t=1")), "http://f/u?t=1");
  EXPECT_EQ(http_.Opens(), Lines{"Open(http, srv, 80, , , )"});
  EXPECT_EQ(http_.Bodies(), Lines{FreshRequest()});
  EXPECT_EQ(TicketOf(file_), "<null>, 0");
}

TEST_F(ObtainUploadUrl, AnyOtherValueBecomesAText) {
  const struct {
    const char16_t* type;
    const char16_t* content;
    const char* text;
  } rows[] = {{u"xsd:int", u"-42", "-42"},     {u"xsd:short", u"7", "7"},
              {u"xsd:byte", u"7", "0"},        {u"xsd:boolean", u"true", "-1"},
              {u"xsd:boolean", u"false", "0"}, {u"xsd:double", u"1.5", "1.5"},
              {u"float", u"0.25", "0.25"},     {u"xsd:string", u"", ""},
              {u"xsd:long", u"7", ""},         {u"xsd:decimal", u"7", ""}};
  for (const auto& row : rows)
    EXPECT_EQ(Obtained(ValueElement(row.type, row.content)), row.text) << Shown(row.type);
}

TEST_F(ObtainUploadUrl, ObjectOrNoFileIsAnUnknownProblem) {
  EXPECT_EQ(Thrown([this] { Obtained(ValueElement(u"xsd:duration", u"P1D")); }), kUnknownProblem);
  const std::size_t calls = http_.Calls().size();
  file_.reset();
  EXPECT_EQ(Thrown([this] { Obtained(u""); }), kUnknownProblem);
  EXPECT_EQ(http_.Calls().size(), calls);
}

}  // namespace
}  // namespace qv
