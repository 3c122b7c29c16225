// Requests on the wire, arguments that are refused before anything is sent, and the order of calls.
#include <string>

#include "http_fixture.h"
#include "qvscriptwells/com_call.h"

namespace qv::test {
namespace {

class HttpRequestTest : public HttpTest {
 protected:
  // The server sends nothing.
  IHttpSessionPtr OpenSilentSession() {
    server_.Expect(RawScript());
    return OpenSession();
  }
  void ExpectStart(const std::string& bytes) const {
    EXPECT_EQ(server_.AllReceived().substr(0, bytes.size()), bytes);
  }
  void ExpectEnd(const std::string& bytes) const {
    const std::string all = server_.AllReceived();
    EXPECT_EQ(all.substr(all.size() - bytes.size()), bytes);
  }
  // The call was made out of order.
  static void ExpectUnexpected(HRESULT code, const std::string& words) {
    EXPECT_EQ(code, E_UNEXPECTED);
    EXPECT_EQ(ErrorWords(), words);
  }
};

TEST_F(HttpRequestTest, HeadersAreSentInOrderOfCallsAndLengthLast) {
  Answer("ok");
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
  Answer("ok");
  const IHttpRequestPtr request = NewRequest(OpenSession(), "GET", "/f");
  EXPECT_EQ(request->SetHeader(u"usid", u"7"), S_OK);
  EXPECT_EQ(request->Send(WideString(), WideString()), S_OK);
  EXPECT_EQ(server_.AllReceived(),
            "GET /f HTTP/1.1\r\nHost: " + server_.Address() + "\r\nusid: 7\r\nContent-Length: 0\r\n\r\n");
}

TEST_F(HttpRequestTest, BodyIsSentAsUtf8WithItsLengthInBytes) {
  Answer("ok");
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->SetHeader(u"Host", u"h"), S_OK);
  const char16_t units[] = {u'a', 0xE9, 0x20AC, 0xD83D, 0xDE00, 0xD800, u'z', 0};
  EXPECT_EQ(request->Send(units, u"+\u00E9"), S_OK);
  EXPECT_EQ(server_.AllReceived(),
            "POST /x HTTP/1.1\r\nHost: h\r\nContent-Length: 17\r\n\r\n"
            "a\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xEF\xBF\xBDz+\xC3\xA9");
}

TEST_F(HttpRequestTest, PathBeyondAsciiIsPercentEncodedUtf8) {
  Answer("ok");
  EXPECT_EQ(NewRequest(OpenSession(), "POST", "/\xE9\\%20")->Send(u"", u""), S_OK);
  ExpectStart("POST /%C3%A9\\%20 HTTP/1.1\r\n");
}

TEST_F(HttpRequestTest, EmptyPathIsTheRoot) {
  Answer("ok");
  EXPECT_EQ(NewRequest(OpenSession(), "POST", "")->Send(u"", u""), S_OK);
  ExpectStart("POST / HTTP/1.1\r\n");
}

TEST_F(HttpRequestTest, LargeBodyArrivesWhole) {
  Answer("ok");
  const IHttpRequestPtr request = Sent(std::string(5'000'000, 'b'));
  ExpectEnd("\r\nContent-Length: 5000000\r\n\r\n" + std::string(5'000'000, 'b'));
}

TEST_F(HttpRequestTest, EmbeddedNullIsSent) {
  Answer("ok");
  EXPECT_EQ(NewRequest(OpenSession())->Send(Wide(std::string("a\0b", 3)), u""), S_OK);
  ExpectEnd(std::string("a\0b", 3));
}

TEST_F(HttpRequestTest, BadHeaderIsRefusedAndNothingIsSent) {
  const struct {
    const char* name;
    std::string value;
  } rows[] = {{"X", "a\nInjected: 1"},
              {"X", "a\rb"},
              {"X", std::string("a\0b", 3)},
              {"", "a"},
              {"X Y", "a"},
              {"X:", "a"},
              {"X\n", "a"},
              {"\xE9", "a"},
              {"Content-Length", "5"},
              {"transfer-encoding", "chunked"}};
  for (const auto& row : rows) {
    const IHttpRequestPtr request = NewRequest(OpenSilentSession());
    EXPECT_EQ(request->SetHeader(Wide(row.name), Wide(row.value)), E_INVALIDARG) << row.name << row.value;
    EXPECT_NE(ErrorWords(), "<none>");
    EXPECT_EQ(server_.AllReceived(), "");
  }
}

TEST_F(HttpRequestTest, BadRequestLineIsRefused) {
  const struct {
    const char* verb;
    std::string path;
  } rows[] = {{"GET", "/a b"},   {"GET", "/a\nb"}, {"GET", std::string("/a\0b", 4)},
              {"GET", "/a\x7F"}, {"GET", "a"},     {"GET", "@evil.example/"},
              {"", "/"},         {"GET /x", "/"},  {"GET\n", "/"},
              {"CONNECT", "/"}};
  for (const auto& row : rows) {
    const IHttpSessionPtr session = OpenSilentSession();
    IHttpRequest* request = nullptr;
    EXPECT_EQ(session->OpenRequest(Wide(row.verb), Wide(row.path), u"", 0, &request), E_INVALIDARG)
        << row.verb << row.path;
    EXPECT_EQ(request, nullptr);
    EXPECT_NE(ErrorWords(), "<none>");
  }
}

TEST_F(HttpRequestTest, BadEndpointIsRefusedWithoutAConnection) {
  const char* const here = "127.0.0.1";
  const struct {
    const char* protocol;
    std::string host;
    const char* proxy;
  } rows[] = {{"ftp", here, ""},
              {"", here, ""},
              {"file", here, ""},
              {"http", "", ""},
              {"http", "127.0.0.1 ", ""},
              {"http", "a\nb", ""},
              {"http", std::string("127.0.0.1\0x", 11), ""},
              {"http", "user:secret@127.0.0.1", ""},
              {"http", "secret@127.0.0.1", ""},
              {"http", "127.0.0.1:1", ""},
              {"http", "127.0.0.1/x", ""},
              {"http", "127.0.0.1?x", ""},
              {"http", "127.0.0.1\\x", ""},
              {"http", here, "user:secret@127.0.0.1:80"},
              {"http", here, "p:x"},
              {"http", here, "p:65536"},
              {"http", here, "p:"},
              {"http", here, "socks5://127.0.0.1:80"},
              {"http", here, ":8080"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.protocol + (" " + row.host) + " " + row.proxy);
    EXPECT_EQ(OpenAt(row.protocol, row.host, server_.Port(), row.proxy), E_INVALIDARG);
    const std::string words = ErrorWords();
    EXPECT_NE(words, "<none>");
    EXPECT_EQ(words.find("secret"), std::string::npos);
    EXPECT_EQ(server_.Connections(), 0U);
  }
}

TEST_F(HttpRequestTest, ProtocolCountsInAnyCaseAndAHostMayBeAName) {
  server_.Expect(RawScript());
  EXPECT_EQ(OpenAt("HTTP", "127.0.0.1", server_.Port()), S_OK);
  server_.Expect(RawScript());
  EXPECT_EQ(OpenAt("http", "LocalHost", server_.Port()), S_OK) << ErrorWords();
}

TEST_F(HttpRequestTest, SecondSendIsRefusedAndNotSent) {
  Answer("ok");
  const IHttpRequestPtr request = Sent();
  const std::string before = server_.AllReceived();
  ExpectUnexpected(request->Send(u"question", u""), "The request was sent already");
  EXPECT_EQ(request->SendFile(u"/etc/hostname"), E_UNEXPECTED);
  EXPECT_EQ(request->SetHeader(u"X", u"y"), E_UNEXPECTED);
  EXPECT_EQ(server_.AllReceived(), before);
  EXPECT_EQ(ReadText(request, 2), "ok");
}

TEST_F(HttpRequestTest, AnswerIsNotThereBeforeSend) {
  const IHttpRequestPtr request = NewRequest(OpenSilentSession());
  WideString text;
  std::int32_t count = 0;
  std::uint32_t status = 99;
  ExpectUnexpected(Read(request, 1), "The request was not sent yet");
  EXPECT_EQ(request->GetHeader(u"StatusCode", &text), E_UNEXPECTED);
  EXPECT_EQ(request->ReadToFile(u"/nowhere/x", &count), E_UNEXPECTED);
  EXPECT_EQ(request->GetStatus(&status), S_OK);
  EXPECT_EQ(status, 0U);
}

TEST_F(HttpRequestTest, NothingWorksAfterCloseButClose) {
  Answer("ok");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(request->Close(), S_OK);
  EXPECT_EQ(request->Close(), S_OK);
  WideString text;
  ExpectUnexpected(Read(request, 1), "The request is closed");
  EXPECT_EQ(request->GetHeader(u"StatusCode", &text), E_UNEXPECTED);
  EXPECT_EQ(request->Send(u"", u""), E_UNEXPECTED);
  EXPECT_EQ(request->SetHeader(u"X", u"y"), E_UNEXPECTED);
}

TEST_F(HttpRequestTest, SessionCloseEndsItsRequest) {
  Answer("ok");
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr request = NewRequest(session);
  EXPECT_EQ(request->Send(u"", u""), S_OK);
  EXPECT_EQ(session->Close(), S_OK);
  EXPECT_EQ(Read(request, 2), E_UNEXPECTED);
}

TEST_F(HttpRequestTest, RequestOfAClosedSessionIsNotSent) {
  const IHttpSessionPtr session = OpenSilentSession();
  const IHttpRequestPtr request = NewRequest(session);
  EXPECT_EQ(session->Close(), S_OK);
  ExpectUnexpected(request->Send(u"", u""), "The session of the request is closed");
  EXPECT_EQ(Open(session), S_OK);
  EXPECT_EQ(request->Send(u"", u""), E_UNEXPECTED);
  EXPECT_EQ(server_.AllReceived(), "");
}

TEST_F(HttpRequestTest, SecondRequestWaitsForTheFirstToClose) {
  server_.Expect(RawScript().Answer("one").Answer("two"));
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr first = NewRequest(session);
  const IHttpRequestPtr second = NewRequest(session);
  EXPECT_EQ(first->Send(u"", u""), S_OK);
  ExpectUnexpected(second->Send(u"", u""), "Another request of the session is under way");
  EXPECT_EQ(ReadText(first, 3), "one");
  EXPECT_EQ(first->Close(), S_OK);
  EXPECT_EQ(second->Send(u"", u""), S_OK);
  EXPECT_EQ(ReadText(second, 3), "two");
  EXPECT_EQ(server_.Connections(), 1U);
}

TEST_F(HttpRequestTest, SessionThatIsNotOpenMakesNoRequest) {
  IHttpRequest* request = nullptr;
  ExpectUnexpected(NewSession()->OpenRequest(u"GET", u"/", u"", 0, &request), "The session is not open");
}

TEST_F(HttpRequestTest, OpenSessionIsNotOpenedTwice) {
  const IHttpSessionPtr session = OpenSilentSession();
  ExpectUnexpected(Open(session), "The session is open already");
  ASSERT_TRUE(server_.WaitForDone(1));
  EXPECT_EQ(server_.Connections(), 1U);
}

TEST_F(HttpRequestTest, NullOutPointersAreRefused) {
  Answer("ok");
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
  EXPECT_EQ(ReadText(request, 2), "ok");
}

TEST_F(HttpRequestTest, SuccessfulCallClearsAnOldErrorRecord) {
  ErrorInfo old;
  old.description = u"old";
  SetErrorInfo(old);
  const IHttpSessionPtr session = OpenSilentSession();
  EXPECT_EQ(ErrorWords(), "<none>");
}

TEST_F(HttpRequestTest, RequestKeepsItsSessionAlive) {
  Answer("ok");
  EXPECT_EQ(ReadText(Sent(), 2), "ok");
}

TEST_F(HttpRequestTest, BothObjectsSayThatTheyLeaveErrorRecords) {
  const IHttpSessionPtr session = OpenSilentSession();
  const IHttpRequestPtr request = NewRequest(session);
  const ISupportErrorInfoPtr ofSession = As<ISupportErrorInfo>(session);
  ASSERT_NE(ofSession, nullptr);
  EXPECT_EQ(ofSession->InterfaceSupportsErrorInfo(IHttpSession::kIid), S_OK);
  EXPECT_EQ(ofSession->InterfaceSupportsErrorInfo(IHttpRequest::kIid), S_FALSE);
  const ISupportErrorInfoPtr ofRequest = As<ISupportErrorInfo>(request);
  ASSERT_NE(ofRequest, nullptr);
  EXPECT_EQ(ofRequest->InterfaceSupportsErrorInfo(IHttpRequest::kIid), S_OK);
  void* object = session.get();
  EXPECT_EQ(request->QueryInterface(IHttpOptions::kIid, &object), E_NOINTERFACE);
  EXPECT_EQ(object, nullptr);
  EXPECT_EQ(request->QueryInterface(IUnknown::kIid, nullptr), E_POINTER);
}

}  // namespace
}  // namespace qv::test
