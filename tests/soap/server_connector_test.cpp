// One exchange with the server: the calls of the HTTP component, and what becomes of their failures.
#include "soap/server_connector.h"

#include <gtest/gtest.h>

#include "fixtures/fake_http.h"
#include "fixtures/known_failures.h"
#include "fixtures/shown_text.h"
#include "fixtures/soap_texts.h"
#include "fixtures/thrown.h"
#include "fixtures/transfer_calls.h"
#include "qvscriptwells/com_error.h"
#include "qvscriptwells/xml_library_hold.h"

namespace qv {
namespace {

using Lines = std::vector<std::string>;

class ServerConnector : public testing::Test {
 protected:
  void TearDown() override { EXPECT_EQ(http_.LiveObjects(), 0); }

  CSOAPResponse Post(const CQvUrl& url, WideString& proxy, const WideString& cookie = WideString()) {
    WideTextStream stream;
    stream.Append(request_.view());
    return CServerConnector(cookie).Post(url, u"CloseUserSession", stream, proxy, 8080);
  }
  CSOAPResponse Post(const CQvUrl& url = CQvUrl(u"http://srv/a/b?c=d"),
                     const WideString& cookie = WideString()) {
    WideString proxy(u"");
    return Post(url, proxy, cookie);
  }
  std::string PostThrows() {
    return Thrown([this] { Post(); });
  }
  // What is thrown when the announced length of the answer is `length` and its body a good answer.
  std::string PostThrowsForLength(const WideString& length) {
    http_.AnswerAs({u"200", length, WideString(kSessionClosed)});
    return PostThrows();
  }

  XmlLibraryHold hold_;
  FakeHttp http_;
  WideString request_{u"<x/>"};
};

TEST_F(ServerConnector, ExchangeMakesTheseCallsInThisOrder) {
  http_.Answer(kSessionClosed);
  const CSOAPResponse response = Post();
  EXPECT_EQ(http_.PlainCalls(), ExchangeCalls("srv", "80", "/a/b?c=d", "CloseUserSession", 81));
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 80, <null>, <null>, )"});
  EXPECT_EQ(response.Value().Tag(), VT_EMPTY);
  EXPECT_TRUE(response.Cookie().IsNull());
}

TEST_F(ServerConnector, ComponentThatNeedsNoStartIsUsedAsItIs) {
  http_.OfferNoRunnable();
  http_.Answer(kSessionClosed);
  EXPECT_EQ(PostThrows(), "nothing");
  EXPECT_TRUE(http_.CallsNamed("Run").empty());
}

TEST_F(ServerConnector, CookieIsTheLastHeaderUnlessItIsEmpty) {
  http_.Answer(kSessionClosed);
  Post(CQvUrl(u"http://srv/a"), u"");
  EXPECT_TRUE(http_.CallsNamed("SetHeader(Cookie").empty());
  http_.Answer(kSessionClosed);
  Post(CQvUrl(u"http://srv/a"), u"k=v");
  const Lines headers = http_.CallsNamed("SetHeader(");
  EXPECT_EQ(Lines(headers.begin() + 3, headers.end()),
            (Lines{"SetHeader(Host, srv:80)", "SetHeader(Content-Type, text/xml)",
                   ActionHeader("CloseUserSession"), "SetHeader(Cookie, k=v)"}));
}

TEST_F(ServerConnector, PortIsCutForOpenAndWholeInTheHostHeader) {
  const struct {
    const char16_t* url;
    const char* open;
    const char* host;
  } rows[] = {{u"https://srv:8080/a", "https, srv, 8080", "srv:8080"},
              {u"http://srv:70000/a", "http, srv, 4464", "srv:70000"},
              {u"http://srv:-1/a", "http, srv, 65535", "srv:-1"}};
  for (const auto& row : rows) {
    http_.Answer(kSessionClosed);
    Post(CQvUrl(row.url));
    EXPECT_EQ(http_.CallsNamed("Open(").back(), "Open(" + std::string(row.open) + ", <null>, <null>, )");
    EXPECT_EQ(http_.CallsNamed("SetHeader(Host").back(), "SetHeader(Host, " + std::string(row.host) + ")");
  }
}

TEST_F(ServerConnector, SecondSpareTextIsSentFirst) {
  http_.Answer(kSessionClosed);
  CQvUrl url(u"http://srv/a");
  url.firstSpareText = u"one";
  url.secondSpareText = u"two";
  Post(url);
  EXPECT_EQ(http_.CallsNamed("Open("), Lines{"Open(http, srv, 80, two, one, )"});
}

TEST_F(ServerConnector, ProxyIsPassedAsItIsAndThePlaceholderIsReplaced) {
  const struct {
    const char16_t* proxy;
    const char* passed;
  } rows[] = {{u"proxy", "proxy"},
              {u"@PROXY@", ""},
              {u"@proxy@", "@proxy@"},
              {u"@PROXY@ ", "@PROXY@ "},
              {u"@PROXY", "@PROXY"}};
  for (const auto& row : rows) {
    http_.Answer(kSessionClosed);
    WideString proxy(row.proxy);
    Post(CQvUrl(u"http://srv/a"), proxy);
    EXPECT_EQ(http_.Opens().back(), "Open(http, srv, 80, , , " + std::string(row.passed) + ")");
    EXPECT_EQ(Shown(proxy), row.passed);
  }
}

TEST_F(ServerConnector, RequestTextIsSentOnceUpToItsFirstNull) {
  http_.Answer(kSessionClosed);
  http_.Answer(kSessionClosed);
  request_ = std::u16string_view(u"<x/>\0rest", 9);
  Post();
  request_ = u"\u00E9 <>&";
  Post();
  EXPECT_EQ(http_.Bodies(), (Lines{"<x/>", "\\u00E9 <>&"}));
}

TEST_F(ServerConnector, StatusIsNeverLookedAt) {
  for (const WideString& status : {WideString(u"404"), WideString(u"500"), WideString(u"302"),
                                   WideString(u"0"), WideString(u"nonsense"), WideString()}) {
    http_.AnswerAs({status, u"81", WideString(kSessionClosed)});
    EXPECT_EQ(PostThrows(), "nothing") << Shown(status);
  }
  http_.AnswerAs({u"500", u"118", WideString(FaultAnswer(u"no such user"))});
  EXPECT_EQ(PostThrows(), Refused("no such user"));
  http_.AnswerAs({u"404", u"26", u"<html>not found<br></html>"});
  EXPECT_EQ(PostThrows(), kNotValid);
}

TEST_F(ServerConnector, LengthBelowOneIsAnUnknownProblem) {
  for (const WideString& length :
       {WideString(), WideString(u""), WideString(u"0"), WideString(u"-5"), WideString(u"abc"),
        WideString(u"x81"), WideString(u"+0"), WideString(u"-0"), WideString(u".")})
    EXPECT_EQ(PostThrowsForLength(length), kUnknownProblem) << Shown(length);
  EXPECT_TRUE(http_.CallsNamed("Read(").empty());
  EXPECT_EQ(http_.Closes(), "RSRSRSRSRSRSRSRSRS");
}

TEST_F(ServerConnector, LengthIsReadAsFarAsItsDigitsGo) {
  for (const char16_t* length : {u"81abc", u" 81", u"\t81", u"+81", u"0081", u"81.9", u"4294967377"}) {
    EXPECT_EQ(PostThrowsForLength(length), "nothing") << Shown(length);
    EXPECT_EQ(http_.CallsNamed("Read(").back(), "Read(81)") << Shown(length);
  }
}

TEST_F(ServerConnector, AnnouncedLengthIsReadEvenWhenTheBodyIsLonger) {
  http_.AnswerAs({u"200", u"16", u"<soap:Envelope/><junk>"});
  EXPECT_EQ(PostThrows(), "nothing");
  EXPECT_EQ(http_.CallsNamed("Read("), Lines{"Read(16)"});
}

TEST_F(ServerConnector, EachFailedCallEndsTheExchange) {
  http_.Answer(kSessionClosed);
  Post(CQvUrl(u"http://srv/a"), u"k=v");
  const Lines calls = http_.Calls();
  ASSERT_EQ(calls.size(), 15U);
  for (std::size_t i = 0; i < calls.size(); ++i) {
    FakeHttp http;
    http.Answer(kSessionClosed);
    http.FailCall(i, E_FAIL, u"its words");
    EXPECT_EQ(Thrown([&] { Post(CQvUrl(u"http://srv/a"), u"k=v"); }),
              i < kOpeningCalls ? kNoPointer : Refused("its words"))
        << calls[i];
    EXPECT_EQ(http.Closes(), ClosesAfterFailure(calls, i)) << calls[i];
    EXPECT_EQ(http.LiveObjects(), 0) << calls[i];
  }
}

TEST_F(ServerConnector, FailureHasTheMessageOfTheComponentAndNotItsCode) {
  http_.Fail(HttpStep::kSend, E_FAIL);
  EXPECT_EQ(PostThrows(), Refused(""));
  http_.Fail(HttpStep::kSend, E_OUTOFMEMORY, u"no room", 2);
  EXPECT_EQ(PostThrows(), Refused("no room"));
}

TEST_F(ServerConnector, WithoutARequestThereIsNothingToClose) {
  http_.Fail(HttpStep::kQuerySession, E_NOINTERFACE);
  EXPECT_EQ(PostThrows(), kNoPointer);
  const ClassCreator fake = RegisterClassCreator(CLSID_HttpComponent, nullptr);
  EXPECT_EQ(PostThrows(), kNoPointer);
  RegisterClassCreator(CLSID_HttpComponent, fake);
  // Given back, but neither used nor closed.
  http_.Fail(HttpStep::kOpenRequest, E_FAIL, u"its words");
  http_.GiveRequestWithTheFailure();
  EXPECT_EQ(PostThrows(), kNoPointer);
  http_.GiveNullRequest();
  EXPECT_EQ(PostThrows(), kNoPointer);
  EXPECT_EQ(http_.Closes(), "");
}

TEST_F(ServerConnector, CloseThatFailsAfterAFailureTakesItsPlace) {
  const struct {
    HttpStep first;
    HttpStep second;
    int nth;  // of the second
    const char* closes;
  } rows[] = {{HttpStep::kSend, HttpStep::kCloseRequest, 1, "R"},
              {HttpStep::kSend, HttpStep::kCloseSession, 1, "RS"},
              {HttpStep::kGetHeader, HttpStep::kCloseSession, 1, "RS"},
              {HttpStep::kCloseRequest, HttpStep::kCloseRequest, 2, "RR"}};
  for (const auto& row : rows) {
    FakeHttp http;
    http.Answer(kSessionClosed);
    http.Fail(row.first, E_FAIL, u"first");
    http.Fail(row.second, E_UNEXPECTED, u"second", row.nth);
    EXPECT_EQ(PostThrows(), "_com_error 0x8000FFFF second") << row.closes;
    EXPECT_EQ(http.Closes(), row.closes);
    EXPECT_EQ(http.LiveObjects(), 0) << row.closes;
  }
  http_.Fail(HttpStep::kCloseSession, E_UNEXPECTED, u"second");
  EXPECT_EQ(PostThrowsForLength(WideString()), "_com_error 0x8000FFFF second");
  EXPECT_EQ(http_.Closes(), "RS");
}

TEST_F(ServerConnector, BadAnswerIsParsedAfterBothAreClosedOnce) {
  http_.Answer(u"<soap:Envelope>");
  EXPECT_EQ(PostThrows(),
            Refused("Error at file application/xml, line 1, char 16  Message: application/xml"));
  EXPECT_EQ(http_.Closes(), "RS");
}

}  // namespace
}  // namespace qv
