// The HTTP component as the library creates it: observed by this program, and passed on to a fake one.
#include "tools/transfer/reporting_http.h"

#include <gtest/gtest.h>

#include "fixtures/fake_http.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/error_info.h"

namespace qv::cli {
namespace {

class ReportingHttpTest : public ::testing::Test {
 protected:
  static IHttpSessionPtr MakeSession() {
    void* object = nullptr;
    EXPECT_EQ(CoCreateInstance(CLSID_HttpComponent, nullptr, CLSCTX_ALL, IUnknown::kIid, &object), S_OK);
    const IUnknownPtr component(static_cast<IUnknown*>(object), false);
    EXPECT_EQ(OleRun(component.get()), S_OK);
    return As<IHttpSession>(component);
  }
  HRESULT Open(const WideString& proxy = u"") {
    session_ = MakeSession();
    return session_->Open(u"http", u"srv", 8080, nullptr, nullptr, proxy);
  }
  // A request of the open session.
  IHttpRequestPtr MakeRequest() {
    IHttpRequest* request = nullptr;
    EXPECT_EQ(session_->OpenRequest(u"POST", u"/p", u"text/xml", 0, &request), S_OK);
    return IHttpRequestPtr(request, false);
  }
  // A request of a new session that has been sent.
  IHttpRequestPtr Sent() {
    EXPECT_EQ(Open(), S_OK);
    IHttpRequestPtr request = MakeRequest();
    EXPECT_EQ(request->Send(u"sent", u""), S_OK);
    return request;
  }
  // A whole exchange with this answer.
  void Exchange(std::u16string_view body) {
    fake_.Answer(body);
    WideString text;
    std::int32_t count = 0;
    EXPECT_EQ(Sent()->Read(static_cast<std::int32_t>(body.size()), &text, &count), S_OK);
    EXPECT_EQ(text.view(), body);
  }
  HRESULT ReadToFile() {
    std::int32_t count = 0;
    return Sent()->ReadToFile(u"/x", &count);
  }
  void SendFile(const WideString& status) {
    fake_.AnswerFile(status);
    EXPECT_EQ(MakeRequest()->SendFile(u"/tmp\\a.txt"), S_OK);
  }
  const ExchangeNote& Note() const { return http_.Note(); }

  FakeHttp fake_;
  ReportingHttp http_{"px:3128"};
  IHttpSessionPtr session_;
};

TEST_F(ReportingHttpTest, EveryCallReachesTheComponent) {
  fake_.Answer(u"body");
  EXPECT_EQ(Open(), S_OK);
  const IHttpRequestPtr request = MakeRequest();
  EXPECT_EQ(request->SetHeader(u"Host", u"srv"), S_OK);
  EXPECT_EQ(request->Send(u"sent", u""), S_OK);
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(4, &text, &count), S_OK);
  EXPECT_EQ(text, WideString(u"body"));
  EXPECT_EQ(request->Close(), S_OK);
  EXPECT_EQ(session_->Close(), S_OK);
  EXPECT_EQ(fake_.Bodies(), std::vector<std::string>{"sent"});
  EXPECT_TRUE(Note().connected);
  EXPECT_FALSE(Note().failure.has_value());
  EXPECT_FALSE(Note().holdsFault);
  EXPECT_EQ(Note().server, "http://srv:8080");
}

TEST_F(ReportingHttpTest, FailureIsNotedAndTheRecordStaysForTheCaller) {
  fake_.Fail(HttpStep::kOpen, MakeResult(0x80072EFD), u"nobody there");
  EXPECT_EQ(Open(), MakeResult(0x80072EFD));
  EXPECT_FALSE(Note().connected);
  EXPECT_EQ(Note().failure, MakeResult(0x80072EFD));
  EXPECT_EQ(Note().message, "nobody there");
  ErrorInfo info;
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_EQ(info.description, WideString(u"nobody there"));
  // The next exchange starts a new note.
  EXPECT_EQ(Open(), S_OK);
  EXPECT_FALSE(Note().failure.has_value());
  EXPECT_EQ(Note().message, "");
}

TEST_F(ReportingHttpTest, FirstFailureIsKept) {
  fake_.Fail(HttpStep::kSend, MakeResult(0x80072EE2), u"silence");
  fake_.Fail(HttpStep::kGetHeader, E_UNEXPECTED, u"no answer yet");
  Open();
  const IHttpRequestPtr request = MakeRequest();
  EXPECT_EQ(request->Send(u"", u""), MakeResult(0x80072EE2));
  WideString value;
  EXPECT_EQ(request->GetHeader(u"X", &value), E_UNEXPECTED);
  EXPECT_EQ(Note().failure, MakeResult(0x80072EE2));
  EXPECT_EQ(Note().message, "silence");
}

TEST_F(ReportingHttpTest, ObjectsSayThatTheyLeaveErrorRecords) {
  const ISupportErrorInfoPtr support = As<ISupportErrorInfo>(MakeSession());
  ASSERT_TRUE(support);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IHttpSession::kIid), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IHttpOptions::kIid), S_FALSE);
}

TEST_F(ReportingHttpTest, FaultAndEnvelopeOfTheAnswerAreNoted) {
  struct Row {
    const char16_t* answer;
    Envelope envelope;
    bool holdsFault;
  };
  const Row rows[] = {{u"<soap:Envelope/>", Envelope::kKnown, false},
                      {u"<SOAP:Envelope/>", Envelope::kKnown, false},
                      {u"<SOAP-ENV:Envelope/>", Envelope::kForeign, false},
                      {u"<Envelope xmlns='x'/>", Envelope::kForeign, false},
                      {u"<html>An Envelope</html>", Envelope::kNone, false},
                      {u"<soap:Envelope><soap:Fault/></soap:Envelope>", Envelope::kKnown, true}};
  for (const Row& row : rows) {
    Exchange(row.answer);
    EXPECT_EQ(Note().envelope, row.envelope) << ToUtf8(row.answer);
    EXPECT_EQ(Note().holdsFault, row.holdsFault) << ToUtf8(row.answer);
  }
}

TEST_F(ReportingHttpTest, ProxyGetsItsPort) {
  EXPECT_EQ(Open(u"px"), S_OK);
  const std::vector<std::string> opens = fake_.CallsNamed("Open");
  ASSERT_EQ(opens.size(), 1U);
  EXPECT_NE(opens[0].find("px:3128"), std::string::npos) << opens[0];
  EXPECT_EQ(Note().proxy, "px:3128");
  EXPECT_EQ(Open(), S_OK);
  EXPECT_EQ(fake_.CallsNamed("Open")[1].find("px"), std::string::npos);
}

TEST_F(ReportingHttpTest, RefusedUploadsAreKept) {
  Open();
  SendFile(u"204");
  EXPECT_TRUE(http_.RefusedUploads().empty());
  SendFile(u"403");
  Open();
  http_.Forget();
  ASSERT_EQ(http_.RefusedUploads().size(), 1U);
  EXPECT_EQ(http_.RefusedUploads()[0].server, "http://srv:8080");
  EXPECT_EQ(http_.RefusedUploads()[0].path, "/tmp/a.txt");
  EXPECT_EQ(http_.RefusedUploads()[0].status, "403");
}

TEST_F(ReportingHttpTest, FileIsSavedIfTheStatusIsASuccess) {
  fake_.Answer(u"body");
  EXPECT_EQ(ReadToFile(), S_OK);
  EXPECT_EQ(fake_.CallsNamed("ReadToFile").size(), 1U);
  HttpAnswer answer;
  answer.headers[u"Content-Disposition"] = u"attachment; filename=a.txt";
  fake_.AnswerAs(answer);
  WideString header;
  EXPECT_EQ(Sent()->GetHeader(u"Content-Disposition", &header), S_OK);
  EXPECT_EQ(Note().fileHeader, "attachment; filename=a.txt");
}

TEST_F(ReportingHttpTest, ErrorPageIsNotSaved) {
  fake_.AnswerAs({u"404", nullptr, u"page"});
  EXPECT_EQ(ReadToFile(), E_FAIL);
  EXPECT_TRUE(fake_.CallsNamed("ReadToFile").empty());
  EXPECT_EQ(Note().httpStatus, "404");
  EXPECT_FALSE(Note().failure.has_value());
}

TEST_F(ReportingHttpTest, NothingIsLeft) {
  Open();
  IHttpRequestPtr request = MakeRequest();
  EXPECT_EQ(fake_.LiveObjects(), 2);
  request.reset();
  session_.reset();
  EXPECT_EQ(fake_.LiveObjects(), 0);
}

TEST(ReportingHttpScope, FormerClassIsRestored) {
  const FakeHttp fake;
  { const ReportingHttp http(""); }
  void* object = nullptr;
  ASSERT_EQ(CoCreateInstance(CLSID_HttpComponent, nullptr, CLSCTX_ALL, IUnknown::kIid, &object), S_OK);
  EXPECT_EQ(fake.LiveObjects(), 1);
  static_cast<IUnknown*>(object)->Release();
}

}  // namespace
}  // namespace qv::cli
