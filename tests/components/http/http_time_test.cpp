// Which slow servers are given time. A wait that has to end in a failure may take as long as the machine
// likes; one that has to succeed is never measured.
#include <chrono>
#include <string>
#include <thread>

#include "http_fixture.h"

namespace qv::test {
namespace {

constexpr char kTooSlow[] =
    "Operation too slow. Less than 1000 bytes/sec transferred the last 200 milliseconds";

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
  // After `start` one byte each 20 ms for as long as the client stays.
  void ReplyAndDrip(const std::string& start) {
    RawScript script;
    script.Reply(start);
    for (int i = 0; i < 3000; ++i) script.Write("x").Pause(20);
    server_.Expect(script);
  }
};

TEST_F(HttpTimeTest, AnswerThatDripsIsCut) {
  SetRate(1000, 200);
  ReplyAndDrip(OkText("X: "));
  ExpectFailure(9, "Send", kTimedOut, kTooSlow);
  ReplyAndDrip(SizedText(3000, ""));
  ExpectFailure(3000, "Read", kTimedOut, kTooSlow);
  ReplyAndDrip(ChunkedText("5;"));
  EXPECT_EQ(Exchange(5).code, kTimedOut);
  SetLimits(HttpOptions());
  ExpectNextCallWorks();
}

TEST_F(HttpTimeTest, BodyThatStopsAfterTheHeadsPacketIsCut) {
  SetRate(1000, 50);
  server_.Expect(RawScript().Reply(SizedText(9, "part")).Stall());
  EXPECT_EQ(Exchange(9).code, kTimedOut);
}

// The window is far shorter than the pauses: only what is under way counts.
TEST_F(HttpTimeTest, PauseOutsideHeadAndBodyIsTheServersRight) {
  SetRate(1'000'000, 1);
  const RawScript rows[] = {
      RawScript().ReadRequest().Pause(100).Write(RawAnswerText("ninebytes")),
      RawScript().Reply(SizedText(9, "")).Pause(100).Write("ninebytes"),
      RawScript().Reply("HTTP/1.1 100 Continue\r\n\r\n").Pause(100).Write(RawAnswerText("ninebytes"))};
  for (const RawScript& script : rows) {
    StartAnew();
    server_.Expect(script);
    ExpectText("ninebytes");
  }
}

TEST_F(HttpTimeTest, PauseOfTheHostDoesNotCount) {
  SetRate(1'000'000, 1);
  Answer("ninebytes");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(ReadText(request, 4), "nine");
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_EQ(ReadText(request, 5), "bytes");
}

TEST_F(HttpTimeTest, UploadThatNobodyTakesIsCut) {
  SetRate(1000, 200);
  server_.Expect(RawScript().ReadBytes(1).Stall());
  EXPECT_EQ(SendMany(32'000'000), kTimedOut);
  EXPECT_EQ(ErrorWords(), kTooSlow);
}

TEST_F(HttpTimeTest, TotalTimeEndsAServerThatIsSilent) {
  SetTotal(100);
  server_.Expect(RawScript().ReadRequest().Stall());
  const Outcome outcome = Exchange(2);
  EXPECT_EQ(outcome.failedStep, "Send");
  EXPECT_EQ(outcome.code, kTimedOut);
  EXPECT_NE(outcome.words.find(" milliseconds in total"), std::string::npos) << outcome.words;
}

TEST_F(HttpTimeTest, TotalTimeEndsAServerThatKeepsSending) {
  SetTotal(200);
  ReplyAndDrip(SizedText(3000, ""));
  EXPECT_EQ(Exchange(3000).code, kTimedOut);
}

// The server takes the connection and sends nothing, so the handshake never ends.
TEST_F(HttpTimeTest, TotalTimeHoldsForTheHandshakeToo) {
  HttpOptions options;
  options.connectTimeout = 0;
  options.totalTimeout = 100;
  SetLimits(options);
  server_.Expect(RawScript().Stall());
  EXPECT_EQ(OpenAt("https", "127.0.0.1", server_.Port()), kTimedOut);
}

TEST_F(HttpTimeTest, TimeOfOpenCountsForTheFirstRequestOnly) {
  server_.Expect(RawScript().Answer("one").Answer("two"));
  SetTotal(60'000);
  const IHttpSessionPtr session = OpenSession();
  for (const char* text : {"one", "two"}) {
    const IHttpRequestPtr request = NewRequest(session);
    EXPECT_EQ(request->Send(u"question", u""), S_OK) << ErrorWords();
    EXPECT_EQ(ReadText(request, 3), text);
    EXPECT_EQ(request->Close(), S_OK);
  }
}

}  // namespace
}  // namespace qv::test
