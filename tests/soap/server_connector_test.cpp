#include <gtest/gtest.h>

#include <ostream>

#include "fixtures/fake_http.h"
#include "fixtures/shown_text.h"
#include "fixtures/thrown.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/xml_library_hold.h"
#include "soap/server_connector.h"

namespace qv {
namespace {

using Lines = std::vector<std::string>;

constexpr char16_t kClosed[] =
    u"<soap:Envelope><soap:Body><CloseUserSessionResponse/></soap:Body></soap:Envelope>";

constexpr char kNoRequest[] = "_com_error 0x80004003 <null>";

class ServerConnector : public testing::Test {
 protected:
  CSOAPResponse Post(const CQvUrl& url, WideString& proxy, const WideString& cookie = WideString()) {
    WideTextStream stream;
    stream.Append(request_.view());
    return CServerConnector(cookie).Post(url, u"CloseUserSession", stream, proxy, 8080);
  }
  CSOAPResponse Post() {
    WideString proxy(u"");
    return Post(CQvUrl(u"http://srv/a/b?c=d"), proxy);
  }
  std::string PostThrows() {
    return Thrown([this] { Post(); });
  }
  // What is raised when the announced length of the answer is `length` and its body a good answer.
  std::string PostThrowsForLength(const WideString& length) {
    http_.AnswerAs({WideString(u"200"), length, WideString(kClosed)});
    return PostThrows();
  }
  Lines Closes() const { return http_.CallsNamed("Close"); }

  XmlLibraryHold hold_;
  FakeHttp http_;
  WideString request_{u"<x/>"};
};

TEST_F(ServerConnector, ExchangeMakesTheseCallsInThisOrder) {
  http_.Answer(kClosed);
  Post();
  EXPECT_EQ(http_.Calls(),
            (Lines{"CoCreate IUnknown", "Run", "Query IHttpSession", "Open(http, srv, 80, <null>, <null>, )",
                   "OpenRequest(POST, /a/b?c=d, text/xml, 0)", "SetHeader(Host, srv:80)",
                   "SetHeader(Content-Type, text/xml)",
                   "SetHeader(SOAPAction, "
                   "http://quorvane.example/dev/ns/ivarnel/scriptwells#CloseUserSession)",
                   "Send(body, )", "GetHeader(StatusCode)", "GetHeader(Content-Length)", "Read(81)",
                   "Close request", "Close session"}));
  EXPECT_EQ(http_.LiveObjects(), 0);
}

TEST_F(ServerConnector, ComponentWithoutStartOfItsOwnIsUsedAsItIs) {
  http_.OfferNoRunnable();
  http_.Answer(kClosed);
  EXPECT_EQ(PostThrows(), "nothing");
  EXPECT_TRUE(http_.CallsNamed("Run").empty());
}

TEST_F(ServerConnector, CookieIsTheLastHeader) {
  http_.Answer(kClosed);
  WideString proxy(u"");
  Post(CQvUrl(u"http://srv/a"), proxy, u"k=v");
  EXPECT_EQ(http_.CallsNamed("SetHeader("),
            (Lines{"SetHeader(Host, srv:80)", "SetHeader(Content-Type, text/xml)",
                   "SetHeader(SOAPAction, "
                   "http://quorvane.example/dev/ns/ivarnel/scriptwells#CloseUserSession)",
                   "SetHeader(Cookie, k=v)"}));
}

TEST_F(ServerConnector, EmptyCookieMakesNoHeader) {
  http_.Answer(kClosed);
  WideString proxy(u"");
  Post(CQvUrl(u"http://srv/a"), proxy, u"");
  EXPECT_TRUE(http_.CallsNamed("SetHeader(Cookie").empty());
}

TEST_F(ServerConnector, PortIsAlwaysInTheHostHeader) {
  http_.Answer(kClosed);
  WideString proxy(u"");
  Post(CQvUrl(u"https://srv:8080/a"), proxy);
  EXPECT_EQ(http_.CallsNamed("SetHeader(Host"), Lines{"SetHeader(Host, srv:8080)"});
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(https, srv, 8080, <null>, <null>, )"});
}

TEST_F(ServerConnector, LargePortIsCutForOpenAndWholeInTheHostHeader) {
  http_.Answer(kClosed);
  WideString proxy(u"");
  Post(CQvUrl(u"http://srv:70000/a"), proxy);
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 4464, <null>, <null>, )"});
  EXPECT_EQ(http_.CallsNamed("SetHeader(Host"), Lines{"SetHeader(Host, srv:70000)"});
}

TEST_F(ServerConnector, NegativePortIsCutForOpenAndWholeInTheHostHeader) {
  http_.Answer(kClosed);
  WideString proxy(u"");
  Post(CQvUrl(u"http://srv:-1/a"), proxy);
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 65535, <null>, <null>, )"});
  EXPECT_EQ(http_.CallsNamed("SetHeader(Host"), Lines{"SetHeader(Host, srv:-1)"});
}

TEST_F(ServerConnector, SpareTextsTravelSecondFirst) {
  http_.Answer(kClosed);
  CQvUrl url(u"http://srv/a");
  url.firstSpareText = u"one";
  url.secondSpareText = u"two";
  WideString proxy(u"");
  Post(url, proxy);
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 80, two, one, )"});
}

TEST_F(ServerConnector, ProxyGoesToTheComponentAsItStands) {
  http_.Answer(kClosed);
  WideString proxy(u"proxy");
  Post(CQvUrl(u"http://srv/a"), proxy);
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 80, <null>, <null>, proxy)"});
  EXPECT_EQ(Shown(proxy), "proxy");
}

TEST_F(ServerConnector, ProxyPlaceholderMeansNoneAndIsReplaced) {
  http_.Answer(kClosed);
  WideString proxy(u"@PROXY@");
  Post(CQvUrl(u"http://srv/a"), proxy);
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 80, <null>, <null>, )"});
  EXPECT_EQ(Shown(proxy), "");
}

TEST_F(ServerConnector, ProxyThatOnlyResemblesThePlaceholderStays) {
  for (const char16_t* text : {u"@proxy@", u"@PROXY@ ", u"@PROXY"}) {
    http_.Answer(kClosed);
    WideString proxy(text);
    Post(CQvUrl(u"http://srv/a"), proxy);
    EXPECT_EQ(http_.CallsNamed("Open(").back(), "Open(http, srv, 80, <null>, <null>, " + Shown(text) + ")");
  }
}

TEST_F(ServerConnector, RequestTextEndsAtItsFirstNull) {
  http_.Answer(kClosed);
  request_ = WideString(std::u16string_view(u"<x/>\0rest", 9));
  Post();
  EXPECT_EQ(http_.Bodies(), Lines{"<x/>"});
}

TEST_F(ServerConnector, RequestTextIsSentOnceAsItStands) {
  http_.Answer(kClosed);
  request_ = u"\u00E9 <>&";
  Post();
  EXPECT_EQ(http_.Bodies(), Lines{"\\u00E9 <>&"});
}

TEST_F(ServerConnector, StatusIsNeverLookedAt) {
  for (const char16_t* status : {u"404", u"500", u"302", u"0", u"nonsense"}) {
    http_.AnswerAs({WideString(status), WideString(u"81"), WideString(kClosed)});
    EXPECT_EQ(PostThrows(), "nothing") << Shown(status);
  }
  http_.AnswerAs({WideString(), WideString(u"81"), WideString(kClosed)});
  EXPECT_EQ(PostThrows(), "nothing");
}

TEST_F(ServerConnector, FaultWithStatus500KeepsItsWords) {
  const WideString body(
      u"<soap:Envelope><soap:Body><soap:Fault><faultstring>no such "
      u"user</faultstring></soap:Fault></soap:Body>"
      u"</soap:Envelope>");
  http_.AnswerAs({WideString(u"500"), WideString(u"118"), body});
  EXPECT_EQ(PostThrows(), "EQvException 0x00000000 no such user");
}

TEST_F(ServerConnector, HtmlPageWithStatus404IsNoValidResponse) {
  http_.AnswerAs({WideString(u"404"), WideString(u"26"), WideString(u"<html>not found<br></html>")});
  EXPECT_EQ(PostThrows(), "EQvException 0x00000000 The respone that arrived is not valid");
}

TEST_F(ServerConnector, LengthBelowOneIsAnUnknownProblem) {
  for (const char16_t* length : {u"", u"0", u"-5", u"abc", u"x81", u"+0", u"-0", u"."}) {
    EXPECT_EQ(PostThrowsForLength(length), "EQvException 0x00000000 Unknown Http problem.") << Shown(length);
  }
  EXPECT_TRUE(http_.CallsNamed("Read(").empty());
}

TEST_F(ServerConnector, MissingLengthIsAnUnknownProblemAndClosesBoth) {
  EXPECT_EQ(PostThrowsForLength(WideString()), "EQvException 0x00000000 Unknown Http problem.");
  EXPECT_EQ(Closes(), (Lines{"Close request", "Close session"}));
  EXPECT_EQ(http_.LiveObjects(), 0);
}

TEST_F(ServerConnector, LengthIsReadAsFarAsItsDigitsGo) {
  for (const char16_t* length : {u"81abc", u" 81", u"\t81", u"+81", u"0081", u"81.9", u"4294967377"}) {
    EXPECT_EQ(PostThrowsForLength(length), "nothing") << Shown(length);
    EXPECT_EQ(http_.CallsNamed("Read(").back(), "Read(81)") << Shown(length);
  }
}

TEST_F(ServerConnector, AnnouncedLengthIsReadEvenWhenTheBodyIsLonger) {
  http_.AnswerAs({WideString(u"200"), WideString(u"16"), WideString(u"<soap:Envelope/><junk>")});
  EXPECT_EQ(PostThrows(), "nothing");
  EXPECT_EQ(http_.CallsNamed("Read("), Lines{"Read(16)"});
}

TEST_F(ServerConnector, ResponseCarriesTheValue) {
  http_.Answer(kClosed);
  const CSOAPResponse response = Post();
  EXPECT_EQ(response.Value().Tag(), VT_EMPTY);
  EXPECT_TRUE(response.Cookie().IsNull());
}

// One row for each operation that can fail.
struct FailingStep {
  const char* name;
  HttpStep step;
  int nth;
  const char* thrown;
  Lines closes;
};
void PrintTo(const FailingStep& row, std::ostream* out) {
  *out << row.name;
}

class FailingExchange : public ServerConnector, public testing::WithParamInterface<FailingStep> {};

TEST_P(FailingExchange, RaisesTheseWordsAfterTheseCloses) {
  const FailingStep& row = GetParam();
  http_.Answer(kClosed);
  http_.Fail(row.step, E_FAIL, u"its words", row.nth);
  WideString proxy(u"");
  EXPECT_EQ(Thrown([&] { Post(CQvUrl(u"http://srv/a"), proxy, u"k=v"); }), row.thrown);
  EXPECT_EQ(Closes(), row.closes);
  EXPECT_EQ(http_.LiveObjects(), 0);
}

constexpr char kItsWords[] = "EQvException 0x00000000 its words";
const Lines kBoth{"Close request", "Close session"};

INSTANTIATE_TEST_SUITE_P(
    Steps, FailingExchange,
    testing::Values(FailingStep{"Create", HttpStep::kCreate, 1, kNoRequest, {}},
                    FailingStep{"Run", HttpStep::kRun, 1, kNoRequest, {}},
                    FailingStep{"QuerySession", HttpStep::kQuerySession, 1, kNoRequest, {}},
                    FailingStep{"Open", HttpStep::kOpen, 1, kNoRequest, {}},
                    FailingStep{"OpenRequest", HttpStep::kOpenRequest, 1, kNoRequest, {}},
                    FailingStep{"HostHeader", HttpStep::kSetHeader, 1, kItsWords, kBoth},
                    FailingStep{"ContentTypeHeader", HttpStep::kSetHeader, 2, kItsWords, kBoth},
                    FailingStep{"ActionHeader", HttpStep::kSetHeader, 3, kItsWords, kBoth},
                    FailingStep{"CookieHeader", HttpStep::kSetHeader, 4, kItsWords, kBoth},
                    FailingStep{"Send", HttpStep::kSend, 1, kItsWords, kBoth},
                    FailingStep{"StatusCode", HttpStep::kGetHeader, 1, kItsWords, kBoth},
                    FailingStep{"ContentLength", HttpStep::kGetHeader, 2, kItsWords, kBoth},
                    FailingStep{"Read", HttpStep::kRead, 1, kItsWords, kBoth},
                    FailingStep{"CloseRequest",
                                HttpStep::kCloseRequest,
                                1,
                                kItsWords,
                                {"Close request", "Close request", "Close session"}},
                    FailingStep{"CloseSession",
                                HttpStep::kCloseSession,
                                1,
                                kItsWords,
                                {"Close request", "Close session", "Close request", "Close session"}}),
    [](const testing::TestParamInfo<FailingStep>& row) { return std::string(row.param.name); });

TEST_F(ServerConnector, FailureWithoutWordsRaisesNoWords) {
  http_.Fail(HttpStep::kSend, E_FAIL);
  const std::string thrown = PostThrows();
  EXPECT_EQ(thrown, "EQvException 0x00000000 ");
}

TEST_F(ServerConnector, CodeOfTheComponentIsNotHandedOn) {
  http_.Fail(HttpStep::kSend, E_OUTOFMEMORY, u"no room");
  EXPECT_EQ(PostThrows(), "EQvException 0x00000000 no room");
}

TEST_F(ServerConnector, ComponentWithoutSessionInterfaceLeavesNothingToClose) {
  http_.Fail(HttpStep::kQuerySession, E_NOINTERFACE);
  EXPECT_EQ(PostThrows(), kNoRequest);
  EXPECT_EQ(http_.LiveObjects(), 0);
}

TEST_F(ServerConnector, ClassThatIsNotRegisteredLeavesNothingToClose) {
  const ClassCreator fake = RegisterClassCreator(CLSID_HttpComponent, nullptr);
  EXPECT_EQ(PostThrows(), kNoRequest);
  RegisterClassCreator(CLSID_HttpComponent, fake);
}

TEST_F(ServerConnector, NullRequestLeavesNothingToClose) {
  http_.GiveNullRequest();
  EXPECT_EQ(PostThrows(), kNoRequest);
  EXPECT_TRUE(Closes().empty());
  EXPECT_EQ(http_.LiveObjects(), 0);
}

// Given back, but neither used nor closed.
TEST_F(ServerConnector, RequestThatComesWithAFailureIsNoRequest) {
  http_.Fail(HttpStep::kOpenRequest, E_FAIL, u"its words");
  http_.GiveRequestWithTheFailure();
  EXPECT_EQ(PostThrows(), kNoRequest);
  EXPECT_TRUE(Closes().empty());
  EXPECT_EQ(http_.LiveObjects(), 0);
}

TEST_F(ServerConnector, RequestThatFailsToCloseAfterAFailureTakesItsPlace) {
  http_.Fail(HttpStep::kSend, E_FAIL, u"send words");
  http_.Fail(HttpStep::kCloseRequest, E_UNEXPECTED, u"close words");
  EXPECT_EQ(PostThrows(), "_com_error 0x8000FFFF close words");
  EXPECT_EQ(Closes(), Lines{"Close request"});
  EXPECT_EQ(http_.LiveObjects(), 0);
}

TEST_F(ServerConnector, SessionThatFailsToCloseAfterAFailureTakesItsPlace) {
  http_.Fail(HttpStep::kSend, E_FAIL, u"send words");
  http_.Fail(HttpStep::kCloseSession, E_UNEXPECTED, u"close words");
  EXPECT_EQ(PostThrows(), "_com_error 0x8000FFFF close words");
  EXPECT_EQ(Closes(), kBoth);
  EXPECT_EQ(http_.LiveObjects(), 0);
}

TEST_F(ServerConnector, CloseThatFailsAgainAfterAMissingLengthTakesItsPlace) {
  http_.Fail(HttpStep::kCloseSession, E_UNEXPECTED, u"close words");
  EXPECT_EQ(PostThrowsForLength(WideString()), "_com_error 0x8000FFFF close words");
  EXPECT_EQ(Closes(), kBoth);
}

TEST_F(ServerConnector, RequestThatFailsToCloseTwiceRaisesTheSecondFailure) {
  http_.Answer(kClosed);
  http_.Fail(HttpStep::kCloseRequest, E_FAIL, u"first", 1);
  http_.Fail(HttpStep::kCloseRequest, E_UNEXPECTED, u"second", 2);
  EXPECT_EQ(PostThrows(), "_com_error 0x8000FFFF second");
  EXPECT_EQ(Closes(), (Lines{"Close request", "Close request"}));
  EXPECT_EQ(http_.LiveObjects(), 0);
}

TEST_F(ServerConnector, BadAnswerIsParsedAfterBothAreClosedOnce) {
  http_.Answer(u"<soap:Envelope>");
  EXPECT_EQ(
      PostThrows(),
      "EQvException 0x00000000 Error at file application/xml, line 1, char 16  Message: application/xml");
  EXPECT_EQ(Closes(), kBoth);
  EXPECT_EQ(http_.LiveObjects(), 0);
}

}  // namespace
}  // namespace qv
