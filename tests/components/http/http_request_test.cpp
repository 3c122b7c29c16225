// What goes out on the wire, what is refused before anything goes out, and the order of calls.
#include "http_fixture.h"

#include <string>

namespace qv::test {
namespace {

using HttpRequestTest = HttpTest;

TEST_F(HttpRequestTest, HeadersGoOutInOrderOfCallsAndLengthLast) {
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = NewRequest(OpenSession(), "POST", "/a/b?c=d");
  EXPECT_EQ(request->SetHeader(u"Host", u"srv:80"), S_OK);
  EXPECT_EQ(request->SetHeader(u"Content-Type", u"text/xml"), S_OK);
  EXPECT_EQ(request->SetHeader(u"SOAPAction", u"http://q.example/ns#Execute"), S_OK);
  EXPECT_EQ(request->SetHeader(u"Cookie", u""), S_OK);
  EXPECT_EQ(request->Send(u"<a/>", u""), S_OK);
  EXPECT_EQ(server_.AllReceived(),
            "POST /a/b?c=d HTTP/1.1\r\n"
            "Host: srv:80\r\n"
            "Content-Type: text/xml\r\n"
            "SOAPAction: http://q.example/ns#Execute\r\n"
            "Cookie: \r\n"
            "Content-Length: 4\r\n\r\n"
            "<a/>");
}

TEST_F(HttpRequestTest, HostIsAddedFirstWhenTheCallerSetsNone) {
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = NewRequest(OpenSession(), "GET", "/f");
  EXPECT_EQ(request->SetHeader(u"usid", u"7"), S_OK);
  EXPECT_EQ(request->Send(WideString(), WideString()), S_OK);
  EXPECT_EQ(server_.AllReceived(), "GET /f HTTP/1.1\r\nHost: 127.0.0.1:" + std::to_string(server_.Port()) +
                                       "\r\nusid: 7\r\nContent-Length: 0\r\n\r\n");
}

TEST_F(HttpRequestTest, BodyGoesOutAsUtf8WithItsLengthInBytes) {
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->SetHeader(u"Host", u"h"), S_OK);
  const char16_t units[] = {u'a', 0xE9, 0x20AC, 0xD83D, 0xDE00, 0xD800, u'z', 0};
  EXPECT_EQ(request->Send(units, u"+\u00E9"), S_OK);
  EXPECT_EQ(server_.AllReceived(),
            "POST /x HTTP/1.1\r\nHost: h\r\nContent-Length: 17\r\n\r\n"
            "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBDz+\xC3\xA9");
}

TEST_F(HttpRequestTest, PathBeyondAsciiIsPercentEncodedUtf8) {
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = NewRequest(OpenSession(), "POST", "/\xE9\\%20");
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  EXPECT_EQ(server_.AllReceived().substr(0, 27), "POST /%C3%A9\\%20 HTTP/1.1\r\n");
}

TEST_F(HttpRequestTest, EmptyPathIsTheRoot) {
  Answer(RawAnswerText("ok"));
  EXPECT_EQ(NewRequest(OpenSession(), "POST", "")->Send(u"", u""), S_OK);
  EXPECT_EQ(server_.AllReceived().substr(0, 17), "POST / HTTP/1.1\r\n");
}

TEST_F(HttpRequestTest, LargeBodyArrivesWhole) {
  Answer(RawAnswerText("ok"));
  const std::string body(5'000'000, 'b');
  const IHttpRequestPtr request = Sent(body);
  const std::string all = server_.AllReceived();
  EXPECT_EQ(all.substr(all.find("\r\n\r\n") + 4), body);
  EXPECT_NE(all.find("\r\nContent-Length: 5000000\r\n"), std::string::npos);
}

TEST_F(HttpRequestTest, EmbeddedNullGoesOut) {
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(WideString(std::u16string_view(u"a\0b", 3)), u""), S_OK);
  const std::string all = server_.AllReceived();
  EXPECT_EQ(all.substr(all.size() - 3), std::string("a\0b", 3));
}

struct BadHeader {
  const char* name;
  std::string header;
  std::string value;
};

class HttpRequestBadHeader : public HttpTest, public ::testing::WithParamInterface<BadHeader> {};

TEST_P(HttpRequestBadHeader, IsRefusedAndNothingIsSent) {
  server_.Expect(RawScript());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->SetHeader(Wide(GetParam().header), Wide(GetParam().value)), E_INVALIDARG);
  EXPECT_NE(ErrorWords(), "<none>");
  EXPECT_EQ(server_.AllReceived(), "");
}

INSTANTIATE_TEST_SUITE_P(
    , HttpRequestBadHeader,
    ::testing::Values(BadHeader{"LineFeedInValue", "X", "a\nInjected: 1"},
                      BadHeader{"ReturnInValue", "X", "a\rb"},
                      BadHeader{"NulInValue", "X", std::string("a\0b", 3)}, BadHeader{"EmptyName", "", "a"},
                      BadHeader{"BlankInName", "X Y", "a"}, BadHeader{"ColonInName", "X:", "a"},
                      BadHeader{"LineFeedInName", "X\n", "a"}, BadHeader{"NameBeyondAscii", "\xE9", "a"},
                      BadHeader{"OwnLength", "Content-Length", "5"},
                      BadHeader{"OwnCoding", "transfer-encoding", "chunked"}),
    [](const ::testing::TestParamInfo<BadHeader>& row) { return row.param.name; });

struct BadRequestLine {
  const char* name;
  std::string verb;
  std::string path;
};

class HttpRequestBadLine : public HttpTest, public ::testing::WithParamInterface<BadRequestLine> {};

TEST_P(HttpRequestBadLine, IsRefused) {
  server_.Expect(RawScript());
  const IHttpSessionPtr session = OpenSession();
  IHttpRequest* request = nullptr;
  EXPECT_EQ(session->OpenRequest(Wide(GetParam().verb), Wide(GetParam().path), u"", 0, &request),
            E_INVALIDARG);
  EXPECT_EQ(request, nullptr);
  EXPECT_NE(ErrorWords(), "<none>");
}

INSTANTIATE_TEST_SUITE_P(, HttpRequestBadLine,
                         ::testing::Values(BadRequestLine{"BlankInPath", "GET", "/a b"},
                                           BadRequestLine{"LineFeedInPath", "GET", "/a\nb"},
                                           BadRequestLine{"NulInPath", "GET", std::string("/a\0b", 4)},
                                           BadRequestLine{"DeleteInPath", "GET", "/a\x7F"},
                                           BadRequestLine{"PathWithoutSlash", "GET", "a"},
                                           BadRequestLine{"AuthorityInPath", "GET", "@evil.example/"},
                                           BadRequestLine{"EmptyVerb", "", "/"},
                                           BadRequestLine{"BlankInVerb", "GET /x", "/"},
                                           BadRequestLine{"LineFeedInVerb", "GET\n", "/"},
                                           BadRequestLine{"TunnelVerb", "CONNECT", "/"}),
                         [](const ::testing::TestParamInfo<BadRequestLine>& row) { return row.param.name; });

struct BadEndpoint {
  const char* name;
  std::string protocol;
  std::string host;
  std::string proxy;
};

class HttpSessionBadEndpoint : public HttpTest, public ::testing::WithParamInterface<BadEndpoint> {};

TEST_P(HttpSessionBadEndpoint, IsRefusedWithoutAConnection) {
  const IHttpSessionPtr session = NewSession();
  EXPECT_EQ(session->Open(Wide(GetParam().protocol), Wide(GetParam().host), server_.Port(), u"", u"",
                          Wide(GetParam().proxy)),
            E_INVALIDARG);
  const std::string words = ErrorWords();
  EXPECT_NE(words, "<none>");
  EXPECT_EQ(words.find("secret"), std::string::npos);
  EXPECT_EQ(server_.Connections(), 0u);
}

INSTANTIATE_TEST_SUITE_P(
    , HttpSessionBadEndpoint,
    ::testing::Values(BadEndpoint{"OtherProtocol", "ftp", "127.0.0.1", ""},
                      BadEndpoint{"EmptyProtocol", "", "127.0.0.1", ""},
                      BadEndpoint{"FileProtocol", "file", "127.0.0.1", ""},
                      BadEndpoint{"EmptyHost", "http", "", ""},
                      BadEndpoint{"BlankInHost", "http", "127.0.0.1 ", ""},
                      BadEndpoint{"LineFeedInHost", "http", "a\nb", ""},
                      BadEndpoint{"NulInHost", "http", std::string("127.0.0.1\0x", 11), ""},
                      BadEndpoint{"UserInHost", "http", "user:secret@127.0.0.1", ""},
                      BadEndpoint{"UserOnlyInHost", "http", "secret@127.0.0.1", ""},
                      BadEndpoint{"PortInHost", "http", "127.0.0.1:1", ""},
                      BadEndpoint{"PathInHost", "http", "127.0.0.1/x", ""},
                      BadEndpoint{"QueryInHost", "http", "127.0.0.1?x", ""},
                      BadEndpoint{"BackslashInHost", "http", "127.0.0.1\\x", ""},
                      BadEndpoint{"UserInProxy", "http", "127.0.0.1", "user:secret@127.0.0.1:80"},
                      BadEndpoint{"PortOfProxyIsNoNumber", "http", "127.0.0.1", "p:x"},
                      BadEndpoint{"PortOfProxyTooLarge", "http", "127.0.0.1", "p:65536"},
                      BadEndpoint{"PortOfProxyEmpty", "http", "127.0.0.1", "p:"},
                      BadEndpoint{"ProtocolInProxy", "http", "127.0.0.1", "socks5://127.0.0.1:80"},
                      BadEndpoint{"ProxyWithoutName", "http", "127.0.0.1", ":8080"}),
    [](const ::testing::TestParamInfo<BadEndpoint>& row) { return row.param.name; });

TEST_F(HttpRequestTest, ProtocolCountsInAnyCase) {
  server_.Expect(RawScript());
  EXPECT_EQ(NewSession()->Open(u"HTTP", u"127.0.0.1", server_.Port(), u"", u"", u""), S_OK);
}

TEST_F(HttpRequestTest, NameAndAddressReachTheSameServer) {
  server_.Expect(RawScript());
  EXPECT_EQ(NewSession()->Open(u"http", u"LocalHost", server_.Port(), u"", u"", u""), S_OK) << ErrorWords();
}

TEST_F(HttpRequestTest, SecondSendIsRefusedAndNotSent) {
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = Sent();
  const std::string before = server_.AllReceived();
  EXPECT_EQ(request->Send(u"question", u""), E_UNEXPECTED);
  EXPECT_EQ(ErrorWords(), "The request was sent already");
  EXPECT_EQ(request->SendFile(u"/etc/hostname"), E_UNEXPECTED);
  EXPECT_EQ(request->SetHeader(u"X", u"y"), E_UNEXPECTED);
  EXPECT_EQ(server_.AllReceived(), before);
  EXPECT_EQ(ReadText(request, 2), WideString(u"ok"));
}

TEST_F(HttpRequestTest, AnswerIsNotThereBeforeSend) {
  server_.Expect(RawScript());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  WideString text;
  std::int32_t count = 0;
  std::uint32_t status = 99;
  EXPECT_EQ(request->Read(1, &text, &count), E_UNEXPECTED);
  EXPECT_EQ(ErrorWords(), "The request was not sent yet");
  EXPECT_EQ(request->GetHeader(u"StatusCode", &text), E_UNEXPECTED);
  EXPECT_EQ(request->ReadToFile(u"/nowhere/x", &count), E_UNEXPECTED);
  EXPECT_EQ(request->GetStatus(&status), S_OK);
  EXPECT_EQ(status, 0u);
}

TEST_F(HttpRequestTest, NothingWorksAfterCloseButClose) {
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(request->Close(), S_OK);
  EXPECT_EQ(request->Close(), S_OK);
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(1, &text, &count), E_UNEXPECTED);
  EXPECT_EQ(ErrorWords(), "The request is closed");
  EXPECT_EQ(request->GetHeader(u"StatusCode", &text), E_UNEXPECTED);
  EXPECT_EQ(request->Send(u"", u""), E_UNEXPECTED);
  EXPECT_EQ(request->SetHeader(u"X", u"y"), E_UNEXPECTED);
}

TEST_F(HttpRequestTest, SessionCloseEndsItsRequest) {
  Answer(RawAnswerText("ok"));
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr request = NewRequest(session);
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  EXPECT_EQ(session->Close(), S_OK);
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(2, &text, &count), E_UNEXPECTED);
}

TEST_F(HttpRequestTest, RequestOfAClosedSessionIsNotSent) {
  server_.Expect(RawScript());
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr request = NewRequest(session);
  EXPECT_EQ(session->Close(), S_OK);
  EXPECT_EQ(request->Send(u"", u""), E_UNEXPECTED);
  EXPECT_EQ(ErrorWords(), "The session of the request is closed");
  EXPECT_EQ(Open(session), S_OK);
  EXPECT_EQ(request->Send(u"", u""), E_UNEXPECTED);
  EXPECT_EQ(server_.AllReceived(), "");
}

TEST_F(HttpRequestTest, SecondRequestWaitsForTheFirstToClose) {
  server_.Expect(
      RawScript().ReadRequest().Write(RawAnswerText("one")).ReadRequest().Write(RawAnswerText("two")));
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr first = NewRequest(session);
  const IHttpRequestPtr second = NewRequest(session);
  EXPECT_EQ(first->Send(u"", u""), S_OK);
  EXPECT_EQ(second->Send(u"", u""), E_UNEXPECTED);
  EXPECT_EQ(ErrorWords(), "Another request of the session is under way");
  EXPECT_EQ(ReadText(first, 3), WideString(u"one"));
  EXPECT_EQ(first->Close(), S_OK);
  EXPECT_EQ(second->Send(u"", u""), S_OK);
  EXPECT_EQ(ReadText(second, 3), WideString(u"two"));
  EXPECT_EQ(server_.Connections(), 1u);
}

TEST_F(HttpRequestTest, SessionThatIsNotOpenMakesNoRequest) {
  IHttpRequest* request = nullptr;
  EXPECT_EQ(NewSession()->OpenRequest(u"GET", u"/", u"", 0, &request), E_UNEXPECTED);
  EXPECT_EQ(ErrorWords(), "The session is not open");
}

TEST_F(HttpRequestTest, OpenSessionIsNotOpenedTwice) {
  server_.Expect(RawScript());
  const IHttpSessionPtr session = OpenSession();
  EXPECT_EQ(Open(session), E_UNEXPECTED);
  EXPECT_EQ(ErrorWords(), "The session is open already");
  ASSERT_TRUE(server_.WaitForDone(1));
  EXPECT_EQ(server_.Connections(), 1u);
}

TEST_F(HttpRequestTest, NullOutPointersAreRefused) {
  Answer(RawAnswerText("ok"));
  const IHttpSessionPtr session = OpenSession();
  EXPECT_EQ(session->OpenRequest(u"GET", u"/", u"", 0, nullptr), E_POINTER);
  const IHttpRequestPtr request = NewRequest(session);
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->GetHeader(u"X", nullptr), E_POINTER);
  EXPECT_EQ(request->GetStatus(nullptr), E_POINTER);
  EXPECT_EQ(request->Read(1, nullptr, &count), E_POINTER);
  EXPECT_EQ(request->Read(1, &text, nullptr), E_POINTER);
  EXPECT_EQ(ReadText(request, 2), WideString(u"ok"));
}

TEST_F(HttpRequestTest, SuccessfulCallClearsAnOldErrorRecord) {
  server_.Expect(RawScript());
  ErrorInfo old;
  old.description = u"old";
  SetErrorInfo(old);
  const IHttpSessionPtr session = OpenSession();
  EXPECT_EQ(ErrorWords(), "<none>");
}

TEST_F(HttpRequestTest, RequestKeepsItsSessionAlive) {
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  EXPECT_EQ(ReadText(request, 2), WideString(u"ok"));
}

TEST_F(HttpRequestTest, BothObjectsSayThatTheyLeaveErrorRecords) {
  server_.Expect(RawScript());
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr request = NewRequest(session);
  void* object = nullptr;
  ASSERT_EQ(session->QueryInterface(ISupportErrorInfo::kIid, &object), S_OK);
  const ISupportErrorInfoPtr ofSession(static_cast<ISupportErrorInfo*>(object), false);
  EXPECT_EQ(ofSession->InterfaceSupportsErrorInfo(IHttpSession::kIid), S_OK);
  EXPECT_EQ(ofSession->InterfaceSupportsErrorInfo(IHttpRequest::kIid), S_FALSE);
  ASSERT_EQ(request->QueryInterface(ISupportErrorInfo::kIid, &object), S_OK);
  const ISupportErrorInfoPtr ofRequest(static_cast<ISupportErrorInfo*>(object), false);
  EXPECT_EQ(ofRequest->InterfaceSupportsErrorInfo(IHttpRequest::kIid), S_OK);
  EXPECT_EQ(request->QueryInterface(IHttpOptions::kIid, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(request->QueryInterface(IUnknown::kIid, nullptr), E_POINTER);
}

}  // namespace
}  // namespace qv::test
