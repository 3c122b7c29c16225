#include "http_contract.h"

#include "fixtures/shown_text.h"
#include "http_fixture.h"
#include "qvscriptwells/class_registry.h"
#include "qvscriptwells/com_call.h"

namespace qv::test {

IHttpSessionPtr HttpContract::OpenSession() {
  IUnknownPtr unknown;
  EXPECT_EQ(CoCreateInstance(CLSID_HttpComponent, nullptr, CLSCTX_ALL, IUnknown::kIid, Put(unknown)), S_OK);
  EXPECT_EQ(OleRun(unknown.get()), S_OK);
  IHttpSessionPtr session;
  EXPECT_EQ(unknown->QueryInterface(IHttpSession::kIid, Put(session)), S_OK);
  EXPECT_EQ(session->Open(u"http", u"127.0.0.1", side_->Port(), u"", u"", u""), S_OK);
  return session;
}

IHttpRequestPtr HttpContract::NewRequest(const IHttpSessionPtr& session) {
  IHttpRequestPtr request;
  EXPECT_EQ(session->OpenRequest(u"POST", u"/x", u"text/xml", 0, Put(request)), S_OK);
  return request;
}

IHttpRequestPtr HttpContract::Sent() {
  IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(u"q", u""), S_OK);
  return request;
}

std::string HttpContract::Header(const IHttpRequestPtr& request, const WideString& name) {
  WideString value(u"unset");
  EXPECT_EQ(request->GetHeader(name, &value), S_OK);
  return Shown(value);
}

void HttpContract::ExpectRead(const IHttpRequestPtr& request, const char16_t* text, std::int32_t length) {
  WideString read;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(length, &read, &count), S_OK);
  EXPECT_EQ(read, WideString(text));
  EXPECT_EQ(count, length);
}

TEST_P(HttpContract, BodyIsSentAndTheAnswerComesBack) {
  side_->WillAnswer(200, "answer");
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr request = NewRequest(session);
  EXPECT_EQ(request->SetHeader(u"Content-Type", u"text/xml"), S_OK);
  EXPECT_EQ(request->Send(u"question", u""), S_OK);
  EXPECT_EQ(Header(request, u"StatusCode"), "200");
  EXPECT_EQ(Header(request, u"Content-Length"), "6");
  ExpectRead(request, u"answer", 6);
  EXPECT_EQ(request->Close(), S_OK);
  EXPECT_EQ(session->Close(), S_OK);
  EXPECT_EQ(side_->BodiesSent(), "question");
}

TEST_P(HttpContract, StatusIsNoFailure) {
  side_->WillAnswer(500, "fault");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, u"StatusCode"), "500");
  EXPECT_EQ(Header(request, u"Content-Length"), "5");
}

TEST_P(HttpContract, MissingLengthIsANullText) {
  side_->WillAnswerWithoutLength();
  EXPECT_EQ(Header(Sent(), u"Content-Length"), "<null>");
}

TEST_P(HttpContract, PartOfTheBodyCanBeRead) {
  side_->WillAnswer(200, "abcdef");
  ExpectRead(Sent(), u"ab", 2);
}

TEST_P(HttpContract, ReadingMoreThanTheBodyFails) {
  side_->WillAnswer(200, "abc");
  WideString text;
  std::int32_t count = 0;
  EXPECT_LT(Sent()->Read(4, &text, &count), 0);
}

TEST_P(HttpContract, FailedSendLeavesItsMessageAndTheNextCallWorks) {
  side_->WillFail();
  const IHttpRequestPtr failed = NewRequest(OpenSession());
  EXPECT_LT(failed->Send(u"q", u""), 0);
  EXPECT_NE(ErrorWords(), "<none>");
  EXPECT_EQ(failed->Close(), S_OK);
  side_->WillAnswer(200, "fine");
  EXPECT_EQ(Header(Sent(), u"StatusCode"), "200");
}

TEST_P(HttpContract, ObjectsSayThatTheyLeaveRecords) {
  const auto leavesRecords = [](IUnknown* object, const Guid& iid) {
    const ISupportErrorInfoPtr support = As<ISupportErrorInfo>(object);
    return support != nullptr && support->InterfaceSupportsErrorInfo(iid) == S_OK;
  };
  side_->WillAnswer(200, "x");
  const IHttpSessionPtr session = OpenSession();
  EXPECT_TRUE(leavesRecords(session.get(), IHttpSession::kIid));
  EXPECT_TRUE(leavesRecords(NewRequest(session).get(), IHttpRequest::kIid));
}

}  // namespace qv::test
