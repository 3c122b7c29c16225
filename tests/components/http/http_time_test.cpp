// Servers that take their time: which of them are given it. A wait of a test that has to end in a failure may
// take as long as the machine likes; one that has to succeed is never measured.
#include <chrono>
#include <string>
#include <thread>

#include "http_fixture.h"

namespace qv::test {
namespace {

constexpr char kHeadOfNine[] = "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n";

class HttpTimeTest : public HttpTest {
 protected:
  // No limit but these.
  static void SetRate(std::int64_t bytesPerSecond, std::int64_t window) {
    HttpOptions options;
    options.idleTimeout = 0;
    options.minBytesPerSecond = bytesPerSecond;
    options.rateWindow = window;
    SetLimits(options);
  }
  static void SetTotal(std::int64_t milliseconds) {
    HttpOptions options;
    options.idleTimeout = 0;
    options.totalTimeout = milliseconds;
    SetLimits(options);
  }
  // One byte each 20 ms for as long as the client stays.
  static RawScript& Drip(RawScript& script) {
    for (int i = 0; i < 3000; ++i) script.Write("x").Pause(20);
    return script;
  }
};

TEST_F(HttpTimeTest, HeadThatDripsIsCut) {
  SetRate(1000, 200);
  RawScript script;
  script.ReadRequest().Write("HTTP/1.1 200 OK\r\nX: ");
  server_.Expect(Drip(script));
  const Outcome outcome = Exchange(9);
  EXPECT_EQ(outcome.failedStep, "Send");
  EXPECT_EQ(outcome.code, HTTP_E_TIMED_OUT);
  EXPECT_EQ(outcome.words,
            "Operation too slow. Less than 1000 bytes/sec transferred the last 200 milliseconds");
  SetLimits(HttpOptions());
  ExpectNextCallWorks();
}

TEST_F(HttpTimeTest, BodyThatDripsIsCut) {
  SetRate(1000, 200);
  RawScript script;
  script.ReadRequest().Write("HTTP/1.1 200 OK\r\nContent-Length: 3000\r\n\r\n");
  server_.Expect(Drip(script));
  const Outcome outcome = Exchange(3000);
  EXPECT_EQ(outcome.failedStep, "Read");
  EXPECT_EQ(outcome.code, HTTP_E_TIMED_OUT);
  EXPECT_EQ(outcome.words,
            "Operation too slow. Less than 1000 bytes/sec transferred the last 200 milliseconds");
}

TEST_F(HttpTimeTest, ChunksThatDripAreCut) {
  SetRate(1000, 200);
  RawScript script;
  script.ReadRequest().Write("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n5;");
  server_.Expect(Drip(script));
  EXPECT_EQ(Exchange(5).code, HTTP_E_TIMED_OUT);
}

TEST_F(HttpTimeTest, BodyThatStopsBehindTheHeadsPacketIsCut) {
  SetRate(1000, 50);
  server_.Expect(RawScript().ReadRequest().Write(std::string(kHeadOfNine) + "part").Stall());
  EXPECT_EQ(Exchange(9).code, HTTP_E_TIMED_OUT);
}

// The window is far shorter than the pauses: what is not under way does not count.
TEST_F(HttpTimeTest, PauseBeforeTheHeadIsTheServersRight) {
  SetRate(1'000'000, 1);
  server_.Expect(RawScript().ReadRequest().Pause(100).Write(RawAnswerText("ok")));
  const Outcome outcome = Exchange(2);
  EXPECT_EQ(outcome.failedStep, "") << outcome.words;
}

TEST_F(HttpTimeTest, PauseBetweenHeadAndBodyIsTheServersRight) {
  SetRate(1'000'000, 1);
  server_.Expect(RawScript().ReadRequest().Write(kHeadOfNine).Pause(100).Write("ninebytes"));
  const Outcome outcome = Exchange(9);
  EXPECT_EQ(outcome.failedStep, "") << outcome.words;
}

TEST_F(HttpTimeTest, PauseBehindAnInterimAnswerIsTheServersRight) {
  SetRate(1'000'000, 1);
  server_.Expect(
      RawScript().ReadRequest().Write("HTTP/1.1 100 Continue\r\n\r\n").Pause(100).Write(RawAnswerText("ok")));
  const Outcome outcome = Exchange(2);
  EXPECT_EQ(outcome.failedStep, "") << outcome.words;
}

TEST_F(HttpTimeTest, PauseOfTheHostDoesNotCount) {
  SetRate(1'000'000, 1);
  Answer(RawAnswerText("ninebytes"));
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(ReadText(request, 4), WideString(u"nine"));
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_EQ(ReadText(request, 5), WideString(u"bytes"));
}

TEST_F(HttpTimeTest, UploadThatNobodyTakesIsCut) {
  SetRate(1000, 200);
  server_.Expect(RawScript().ReadBytes(1).Stall());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(WideString(std::u16string(32'000'000, u'x')), u""), HTTP_E_TIMED_OUT);
  EXPECT_EQ(ErrorWords(),
            "Operation too slow. Less than 1000 bytes/sec transferred the last 200 milliseconds");
}

TEST_F(HttpTimeTest, TotalTimeEndsAServerThatIsSilent) {
  SetTotal(100);
  server_.Expect(RawScript().ReadRequest().Stall());
  const Outcome outcome = Exchange(2);
  EXPECT_EQ(outcome.failedStep, "Send");
  EXPECT_EQ(outcome.code, HTTP_E_TIMED_OUT);
  EXPECT_NE(outcome.words.find(" milliseconds in total"), std::string::npos) << outcome.words;
}

TEST_F(HttpTimeTest, TotalTimeEndsAServerThatKeepsSending) {
  SetTotal(200);
  RawScript script;
  script.ReadRequest().Write("HTTP/1.1 200 OK\r\nContent-Length: 3000\r\n\r\n");
  server_.Expect(Drip(script));
  EXPECT_EQ(Exchange(3000).code, HTTP_E_TIMED_OUT);
}

// The server takes the connection and says nothing, so the handshake never ends.
TEST_F(HttpTimeTest, TotalTimeHoldsForTheHandshakeToo) {
  HttpOptions options;
  options.connectTimeout = 0;
  options.totalTimeout = 100;
  SetLimits(options);
  server_.Expect(RawScript().Stall());
  EXPECT_EQ(NewSession()->Open(u"https", u"127.0.0.1", server_.Port(), u"", u"", u""), HTTP_E_TIMED_OUT);
}

TEST_F(HttpTimeTest, TimeOfOpenCountsForTheFirstRequestOnly) {
  server_.Expect(
      RawScript().ReadRequest().Write(RawAnswerText("one")).ReadRequest().Write(RawAnswerText("two")));
  SetTotal(60'000);
  const IHttpSessionPtr session = OpenSession();
  for (const char16_t* text : {u"one", u"two"}) {
    const IHttpRequestPtr request = NewRequest(session);
    EXPECT_EQ(request->Send(u"question", u""), S_OK) << ErrorWords();
    EXPECT_EQ(ReadText(request, 3), WideString(text));
    EXPECT_EQ(request->Close(), S_OK);
  }
}

}  // namespace
}  // namespace qv::test
