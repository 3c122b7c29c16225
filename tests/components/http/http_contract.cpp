#include "http_contract.h"

#include "fixtures/shown_text.h"
#include "http_fixture.h"
#include "qvscriptwells/class_registry.h"

namespace qv::test {

IHttpSessionPtr HttpContract::NewSession() {
  void* object = nullptr;
  EXPECT_EQ(CoCreateInstance(CLSID_HttpComponent, nullptr, CLSCTX_ALL, IUnknown::kIid, &object), S_OK);
  const IUnknownPtr unknown(static_cast<IUnknown*>(object), false);
  EXPECT_EQ(OleRun(unknown.get()), S_OK);
  EXPECT_EQ(unknown->QueryInterface(IHttpSession::kIid, &object), S_OK);
  return IHttpSessionPtr(static_cast<IHttpSession*>(object), false);
}

IHttpSessionPtr HttpContract::OpenSession() {
  IHttpSessionPtr session = NewSession();
  EXPECT_EQ(session->Open(u"http", u"127.0.0.1", side_->Port(), u"", u"", u""), S_OK);
  return session;
}

IHttpRequestPtr HttpContract::NewRequest(const IHttpSessionPtr& session) {
  IHttpRequest* request = nullptr;
  EXPECT_EQ(session->OpenRequest(u"POST", u"/x", u"text/xml", 0, &request), S_OK);
  return IHttpRequestPtr(request, false);
}

std::string HttpContract::Header(const IHttpRequestPtr& request, const WideString& name) {
  WideString value(u"unset");
  EXPECT_EQ(request->GetHeader(name, &value), S_OK);
  return Shown(value);
}

TEST_P(HttpContract, BodyGoesOutAndTheAnswerComesBack) {
  side_->WillAnswer(200, "answer");
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr request = NewRequest(session);
  EXPECT_EQ(request->SetHeader(u"Content-Type", u"text/xml"), S_OK);
  EXPECT_EQ(request->Send(u"question", u""), S_OK);
  EXPECT_EQ(Header(request, u"StatusCode"), "200");
  EXPECT_EQ(Header(request, u"Content-Length"), "6");
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(6, &text, &count), S_OK);
  EXPECT_EQ(text, WideString(u"answer"));
  EXPECT_EQ(count, 6);
  EXPECT_EQ(request->Close(), S_OK);
  EXPECT_EQ(session->Close(), S_OK);
  EXPECT_EQ(side_->BodiesSent(), "question");
}

TEST_P(HttpContract, StatusIsNoFailure) {
  side_->WillAnswer(500, "fault");
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(u"q", u""), S_OK);
  EXPECT_EQ(Header(request, u"StatusCode"), "500");
  EXPECT_EQ(Header(request, u"Content-Length"), "5");
}

TEST_P(HttpContract, MissingLengthIsANullText) {
  side_->WillAnswerWithoutLength();
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(u"q", u""), S_OK);
  EXPECT_EQ(Header(request, u"Content-Length"), "<null>");
}

TEST_P(HttpContract, PartOfTheBodyCanBeRead) {
  side_->WillAnswer(200, "abcdef");
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(u"q", u""), S_OK);
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(2, &text, &count), S_OK);
  EXPECT_EQ(text, WideString(u"ab"));
  EXPECT_EQ(count, 2);
}

TEST_P(HttpContract, ReadingMoreThanTheBodyFails) {
  side_->WillAnswer(200, "abc");
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(u"q", u""), S_OK);
  WideString text;
  std::int32_t count = 0;
  EXPECT_LT(request->Read(4, &text, &count), 0);
}

TEST_P(HttpContract, FailedSendLeavesItsWordsAndTheNextCallWorks) {
  side_->WillFail();
  const IHttpRequestPtr failed = NewRequest(OpenSession());
  EXPECT_LT(failed->Send(u"q", u""), 0);
  EXPECT_NE(ErrorWords(), "<none>");
  EXPECT_EQ(failed->Close(), S_OK);
  side_->WillAnswer(200, "fine");
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(u"q", u""), S_OK);
  EXPECT_EQ(Header(request, u"StatusCode"), "200");
}

TEST_P(HttpContract, ObjectsSayThatTheyLeaveRecords) {
  const auto leavesRecords = [](IUnknown* object, const Guid& iid) {
    void* found = nullptr;
    if (object->QueryInterface(ISupportErrorInfo::kIid, &found) != S_OK) return false;
    const ISupportErrorInfoPtr support(static_cast<ISupportErrorInfo*>(found), false);
    return support->InterfaceSupportsErrorInfo(iid) == S_OK;
  };
  side_->WillAnswer(200, "x");
  const IHttpSessionPtr session = OpenSession();
  EXPECT_TRUE(leavesRecords(session.get(), IHttpSession::kIid));
  EXPECT_TRUE(leavesRecords(NewRequest(session).get(), IHttpRequest::kIid));
}

}  // namespace qv::test
