#include "tools/reporting_http.h"

#include <gtest/gtest.h>

#include "fixtures/fake_http.h"
#include "qvscriptwells/com_call.h"
#include "qvscriptwells/error_info.h"

namespace qv::cli {
namespace {

// The component as the library makes it: with this program's class in front of a fake one.
class ReportingHttpTest : public ::testing::Test {
 protected:
  IHttpSessionPtr MakeSession() {
    void* object = nullptr;
    EXPECT_EQ(CoCreateInstance(CLSID_HttpComponent, nullptr, CLSCTX_ALL, IUnknown::kIid, &object), S_OK);
    const IUnknownPtr component(static_cast<IUnknown*>(object), false);
    EXPECT_EQ(OleRun(component.get()), S_OK);
    return As<IHttpSession>(component);
  }
  static HRESULT Open(const IHttpSessionPtr& session, const WideString& proxy = u"") {
    return session->Open(u"http", u"srv", 8080, nullptr, nullptr, proxy);
  }
  static IHttpRequestPtr MakeRequest(const IHttpSessionPtr& session) {
    IHttpRequest* request = nullptr;
    EXPECT_EQ(session->OpenRequest(u"POST", u"/p", u"text/xml", 0, &request), S_OK);
    return IHttpRequestPtr(request, false);
  }

  FakeHttp fake_;
  ReportingHttp http_{"px:3128"};
};

TEST_F(ReportingHttpTest, EveryCallReachesTheComponentBehind) {
  fake_.Answer(u"body");
  const IHttpSessionPtr session = MakeSession();
  EXPECT_EQ(Open(session), S_OK);
  const IHttpRequestPtr request = MakeRequest(session);
  EXPECT_EQ(request->SetHeader(u"Host", u"srv"), S_OK);
  EXPECT_EQ(request->Send(u"sent", u""), S_OK);
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(4, &text, &count), S_OK);
  EXPECT_EQ(text, WideString(u"body"));
  EXPECT_EQ(request->Close(), S_OK);
  EXPECT_EQ(session->Close(), S_OK);
  EXPECT_EQ(fake_.Bodies(), std::vector<std::string>{"sent"});
  EXPECT_TRUE(http_.Note().connected);
  EXPECT_FALSE(http_.Note().failure.has_value());
  EXPECT_FALSE(http_.Note().holdsFault);
  EXPECT_EQ(http_.Note().server, "http://srv:8080");
}

TEST_F(ReportingHttpTest, FailureIsNotedAndItsRecordStaysForTheCaller) {
  fake_.Fail(HttpStep::kOpen, MakeResult(0x80072EFD), u"nobody there");
  EXPECT_EQ(Open(MakeSession()), MakeResult(0x80072EFD));
  EXPECT_FALSE(http_.Note().connected);
  EXPECT_EQ(http_.Note().failure, MakeResult(0x80072EFD));
  EXPECT_EQ(http_.Note().words, "nobody there");
  ErrorInfo info;
  ASSERT_TRUE(GetErrorInfo(&info));
  EXPECT_EQ(info.description, WideString(u"nobody there"));
}

TEST_F(ReportingHttpTest, CallersSeeThatRecordsAreLeft) {
  const IHttpSessionPtr session = MakeSession();
  const ISupportErrorInfoPtr support = As<ISupportErrorInfo>(session);
  ASSERT_TRUE(support);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IHttpSession::kIid), S_OK);
  EXPECT_EQ(support->InterfaceSupportsErrorInfo(IHttpOptions::kIid), S_FALSE);
}

TEST_F(ReportingHttpTest, FirstFailureIsKept) {
  fake_.Fail(HttpStep::kSend, MakeResult(0x80072EE2), u"silence");
  fake_.Fail(HttpStep::kGetHeader, E_UNEXPECTED, u"no answer yet");
  const IHttpSessionPtr session = MakeSession();
  Open(session);
  const IHttpRequestPtr request = MakeRequest(session);
  EXPECT_EQ(request->Send(u"", u""), MakeResult(0x80072EE2));
  WideString value;
  EXPECT_EQ(request->GetHeader(u"X", &value), E_UNEXPECTED);
  EXPECT_EQ(http_.Note().failure, MakeResult(0x80072EE2));
  EXPECT_EQ(http_.Note().words, "silence");
}

TEST_F(ReportingHttpTest, FaultElementInTheAnswerIsNoted) {
  fake_.Answer(u"<soap:Envelope><soap:Fault/></soap:Envelope>");
  const IHttpSessionPtr session = MakeSession();
  Open(session);
  const IHttpRequestPtr request = MakeRequest(session);
  request->Send(u"", u"");
  WideString text;
  std::int32_t count = 0;
  request->Read(44, &text, &count);
  EXPECT_TRUE(http_.Note().holdsFault);
}

TEST_F(ReportingHttpTest, EnvelopeInTheAnswerIsNoted) {
  const std::pair<const char16_t*, Envelope> answers[] = {
      {u"<soap:Envelope/>", Envelope::kKnown},        {u"<SOAP:Envelope/>", Envelope::kKnown},
      {u"<SOAP-ENV:Envelope/>", Envelope::kForeign},  {u"<Envelope xmlns='x'/>", Envelope::kForeign},
      {u"<html>An Envelope</html>", Envelope::kNone},
  };
  const IHttpSessionPtr session = MakeSession();
  for (const auto& [text, expected] : answers) {
    fake_.Answer(text);
    Open(session);
    const IHttpRequestPtr request = MakeRequest(session);
    request->Send(u"", u"");
    WideString read;
    std::int32_t count = 0;
    request->Read(static_cast<std::int32_t>(std::u16string_view(text).size()), &read, &count);
    EXPECT_EQ(http_.Note().envelope, expected) << ToUtf8(text);
  }
}

TEST_F(ReportingHttpTest, ProxyGetsItsPortBack) {
  EXPECT_EQ(Open(MakeSession(), u"px"), S_OK);
  const std::vector<std::string> opens = fake_.CallsNamed("Open");
  ASSERT_EQ(opens.size(), 1u);
  EXPECT_NE(opens[0].find("px:3128"), std::string::npos) << opens[0];
  EXPECT_EQ(http_.Note().proxy, "px:3128");
}

TEST_F(ReportingHttpTest, CallWithoutProxyStaysWithoutOne) {
  EXPECT_EQ(Open(MakeSession(), u""), S_OK);
  EXPECT_EQ(fake_.CallsNamed("Open")[0].find("px"), std::string::npos);
}

TEST_F(ReportingHttpTest, NextExchangeStartsANewNote) {
  fake_.Fail(HttpStep::kOpen, MakeResult(0x80072EFD), u"nobody there");
  Open(MakeSession());
  EXPECT_EQ(Open(MakeSession()), S_OK);
  EXPECT_FALSE(http_.Note().failure.has_value());
  EXPECT_EQ(http_.Note().words, "");
}

// A file goes out, and the answer is this status.
void SendFileFor(FakeHttp& fake, const IHttpRequestPtr& request, const WideString& status) {
  fake.AnswerFile(status);
  EXPECT_EQ(request->SendFile(u"/tmp\\a.txt"), S_OK);
}

TEST_F(ReportingHttpTest, RefusedUploadsAreKept) {
  const IHttpSessionPtr session = MakeSession();
  Open(session);
  SendFileFor(fake_, MakeRequest(session), u"204");
  EXPECT_TRUE(http_.RefusedUploads().empty());
  SendFileFor(fake_, MakeRequest(session), u"403");
  Open(MakeSession());
  http_.Forget();
  ASSERT_EQ(http_.RefusedUploads().size(), 1u);
  EXPECT_EQ(http_.RefusedUploads()[0].server, "http://srv:8080");
  EXPECT_EQ(http_.RefusedUploads()[0].path, "/tmp/a.txt");
  EXPECT_EQ(http_.RefusedUploads()[0].status, "403");
}

TEST_F(ReportingHttpTest, FileOfASuccessIsSaved) {
  fake_.Answer(u"body");
  const IHttpSessionPtr session = MakeSession();
  Open(session);
  const IHttpRequestPtr request = MakeRequest(session);
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  std::int32_t count = 0;
  EXPECT_EQ(request->ReadToFile(u"/x", &count), S_OK);
  EXPECT_EQ(fake_.CallsNamed("ReadToFile").size(), 1u);
}

TEST_F(ReportingHttpTest, ErrorPageIsNotSaved) {
  fake_.AnswerAs({u"404", nullptr, u"page"});
  const IHttpSessionPtr session = MakeSession();
  Open(session);
  const IHttpRequestPtr request = MakeRequest(session);
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  std::int32_t count = 0;
  EXPECT_EQ(request->ReadToFile(u"/x", &count), E_FAIL);
  EXPECT_TRUE(fake_.CallsNamed("ReadToFile").empty());
  EXPECT_EQ(http_.Note().httpStatus, "404");
  EXPECT_FALSE(http_.Note().failure.has_value());
}

TEST_F(ReportingHttpTest, NameOfTheFileIsNoted) {
  HttpAnswer answer;
  answer.headers[u"Content-Disposition"] = u"attachment; filename=a.txt";
  fake_.AnswerAs(answer);
  const IHttpSessionPtr session = MakeSession();
  Open(session);
  const IHttpRequestPtr request = MakeRequest(session);
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  WideString header;
  EXPECT_EQ(request->GetHeader(u"Content-Disposition", &header), S_OK);
  EXPECT_EQ(http_.Note().fileHeader, "attachment; filename=a.txt");
}

TEST_F(ReportingHttpTest, NothingIsLeftBehind) {
  {
    const IHttpSessionPtr session = MakeSession();
    Open(session);
    const IHttpRequestPtr request = MakeRequest(session);
    EXPECT_EQ(fake_.LiveObjects(), 2);
  }
  EXPECT_EQ(fake_.LiveObjects(), 0);
}

TEST(ReportingHttpScope, FormerClassComesBack) {
  const FakeHttp fake;
  { const ReportingHttp http(""); }
  void* object = nullptr;
  ASSERT_EQ(CoCreateInstance(CLSID_HttpComponent, nullptr, CLSCTX_ALL, IUnknown::kIid, &object), S_OK);
  EXPECT_EQ(fake.LiveObjects(), 1);
  static_cast<IUnknown*>(object)->Release();
}

}  // namespace
}  // namespace qv::cli
