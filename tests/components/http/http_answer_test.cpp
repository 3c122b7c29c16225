// Heads and bodies of answers in all their forms, valid and hostile.
#include <string>

#include "http_fixture.h"

namespace qv::test {
namespace {

using HttpAnswerTest = HttpTest;

constexpr std::size_t kMoreThanSocketsHold = 20'000'000;

TEST_F(HttpAnswerTest, HeadersAreGivenAsTheyStand) {
  Reply(
      OkText("Content-Type:text/xml;charset=utf-8\r\nX-Two: first\r\nx-two: second\r\n"
             "X-Blank:  \t around \t\r\nX-Empty:\r\nX-New: \xC3\xA9\r\nX-Old: \xE9\r\nX-Joined: a\r\n\tb\r\n"
             "Content-Length: 2\r\n\r\nok"));
  const IHttpRequestPtr request = Sent();
  const struct {
    const char* name;
    const char* value;
  } rows[] = {
      {"StatusCode", "200"},     {"content-type", "text/xml;charset=utf-8"},
      {"X-Two", "first"},        {"X-Blank", "around"},
      {"X-Empty", ""},           {"X-None", "<null>"},
      {"not a token", "<null>"}, {"X-New", "\xC3\xA9"},  // UTF-8, else Latin-1
      {"X-Old", "\xC3\xA9"},     {"X-Joined", "a  \tb"},
  };
  for (const auto& row : rows) EXPECT_EQ(Header(request, row.name), row.value) << row.name;
}

TEST_F(HttpAnswerTest, StatusIsGivenAndNoFailure) {
  Reply("HTTP/1.1 500 Internal Server Error\r\nContent-Length: 5\r\n\r\nfault");
  const IHttpRequestPtr request = Sent();
  std::uint32_t status = 0;
  EXPECT_EQ(request->GetStatus(&status), S_OK);
  EXPECT_EQ(status, 500U);
  EXPECT_EQ(Header(request, "StatusCode"), "500");
  EXPECT_EQ(ReadText(request, 5), "fault");
}

TEST_F(HttpAnswerTest, RedirectIsAnAnswerLikeAnyOther) {
  Reply("HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:1/\r\nContent-Length: 5\r\n\r\nmoved");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "StatusCode"), "302");
  EXPECT_EQ(ReadText(request, 5), "moved");
  EXPECT_EQ(server_.Connections(), 1U);
}

TEST_F(HttpAnswerTest, CookieOfTheServerIsNotSentBack) {
  server_.Expect(RawScript().Answer("one", "Set-Cookie: a=b\r\n").Answer("two"));
  Exchange(3);
  ExpectText("two");
  EXPECT_EQ(server_.AllReceived().find("a=b"), std::string::npos);
}

TEST_F(HttpAnswerTest, ArrivesTheSameByteByByte) {
  server_.Expect(RawScript().ReadRequest().WriteByteByByte(
      "HTTP/1.1 100 Continue\r\nX: y\r\n\r\n" +
      OkText("Content-Type: text/xml\r\nContent-Length: 5\r\n\r\nh\xC3\xA9llo")));
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "StatusCode"), "200");
  EXPECT_EQ(Header(request, "Content-Type"), "text/xml");
  EXPECT_EQ(ReadText(request, 5), "h\xC3\xA9ll");
}

TEST_F(HttpAnswerTest, ChunksArriveTheSameByteByByte) {
  server_.Expect(RawScript().ReadRequest().WriteByteByByte(
      OkText("Transfer-Encoding: Chunked\r\n\r\n3;ext=\"a;b\"\r\nabc\r\n00A\r\ndefghijklm\r\n"
             "0\r\nTrailer: x\r\n\r\n")));
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "Content-Length"), "<null>");
  EXPECT_EQ(ReadText(request, 13), "abcdefghijklm");
}

TEST_F(HttpAnswerTest, LineFeedsAloneEndLinesTooAndTheStatusLineNeedsNoText) {
  Reply("HTTP/1.1 200\nX: y\nContent-Length: 2\n\nok");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "X"), "y");
  EXPECT_EQ(ReadText(request, 2), "ok");
  StartAnew();
  Reply("HTTP/1.1 200\r\nContent-Length: 2\r\n\r\nok");
  ExpectText("ok");
}

TEST_F(HttpAnswerTest, BodyWithoutLengthEndsWhereTheConnectionCloses) {
  server_.Expect(RawScript().Reply(OkText("\r\nabc")).Pause(20).Write("def").Close());
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "Content-Length"), "<null>");
  EXPECT_EQ(ReadText(request, 6), "abcdef");
  EXPECT_EQ(Read(request, 1), kCutOff);
}

TEST_F(HttpAnswerTest, BodyIsReadInPieces) {
  Answer("abcdef");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(ReadText(request, 0), "");
  EXPECT_EQ(ReadText(request, 2), "ab");
  EXPECT_EQ(ReadText(request, 4), "cdef");
}

TEST_F(HttpAnswerTest, CharacterCutBetweenTwoReadsComesWithTheSecond) {
  Answer("a\xE2\x82\xAC-");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(ReadText(request, 2), "a");
  EXPECT_EQ(ReadText(request, 3), "\xE2\x82\xAC-");
}

TEST_F(HttpAnswerTest, LargeBodyArrivesWhole) {
  std::string body;
  while (body.size() < 3'000'000) body += "0123456789abcdefghijklmnopqrstuvwxyz\xC3\xA9";
  Answer(body);
  EXPECT_EQ(ReadText(Sent(), static_cast<std::int32_t>(body.size())), body);
}

// The pieces split characters, pairs and units at all places: each piece is odd in size, and the text has no
// period that fits it.
TEST_F(HttpAnswerTest, LongBodyInPiecesGivesTheSameTextInEachCharset) {
  struct Row {
    const char* charset;
    const char* period;
    std::size_t size;
    std::u16string_view text;
  };
  const Row rows[] = {
      {"utf-8", "ab\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80\xE2\x82z", 14, u"ab\u00E9\u20AC\U0001F600\uFFFDz"},
      {"utf-16le", "a\0\xAC\x20\x3D\xD8\x00\xDE\x3D\xD8", 10, u"a\u20AC\U0001F600\uFFFD"},
      {"utf-16be", "\0a\x20\xAC\xD8\x3D\xDE\x00\xDE\x00", 10, u"a\u20AC\U0001F600\uFFFD"},
      {"iso-8859-1", "ab\xE9", 3, u"ab\u00E9"},
      {"shift_jis", "a\x82\xA0z", 4, u"a\u3042z"},
  };
  constexpr std::size_t kPeriods = 600;
  for (const Row& row : rows) {
    StartAnew();
    std::string body;
    std::u16string text;
    for (std::size_t i = 0; i < kPeriods; ++i) {
      body.append(row.period, row.size);
      text += row.text;
    }
    RawScript script;
    script.ReadRequest().Write(OkText("Content-Type: text/xml; charset=" + std::string(row.charset) +
                                      "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n"));
    for (std::size_t at = 0; at < body.size(); at += 497) script.Write(body.substr(at, 497)).Pause(1);
    server_.Expect(script);
    EXPECT_EQ(ReadText(Sent(), static_cast<std::int32_t>(body.size())), ToUtf8(text)) << row.charset;
  }
}

TEST_F(HttpAnswerTest, LongBodyThatEndsInsideACharacterHasAReplacementThere) {
  const std::string plain(5000, 'x');
  server_.Expect(RawScript()
                     .ReadRequest()
                     .Write(SizedText(plain.size() + 2, plain.substr(0, 2000)))
                     .Pause(20)
                     .Write(plain.substr(2000) + "\xE2")
                     .Pause(20)
                     .Write("\x82"));
  EXPECT_EQ(ReadText(Sent(), static_cast<std::int32_t>(plain.size() + 2)), plain + "\xEF\xBF\xBD");
}

TEST_F(HttpAnswerTest, LongBodyMayAnnounceFarMoreThanItHas) {
  ReplyAndClose(SizedText(500'000'000, std::string(300'000, 'x')));
  ExpectFailure(500'000'000, "Read", kCutOff, "transfer closed with 499700000 bytes remaining to read");
}

TEST_F(HttpAnswerTest, AnswerToHeadHasNoBody) {
  server_.Expect(RawScript().Reply(SizedText(5, "")).Answer("two"));
  const IHttpRequestPtr request = Sent("", "HEAD");
  EXPECT_EQ(Header(request, "Content-Length"), "5");
  EXPECT_EQ(Read(request, 5), kCutOff);
  EXPECT_EQ(request->Close(), S_OK);
}

TEST_F(HttpAnswerTest, LengthIsGivenAsItStandsAndTheBodyCanBeRead) {
  const struct {
    const char* headers;
    const char* value;
  } rows[] = {
      {"", "<null>"},
      {"Content-Length:\r\n", ""},
      {"Content-Length: -4\r\n", "-4"},
      {"Content-Length: many\r\n", "many"},
      {"Content-Length: +4\r\n", "+4"},
      {"Content-Length: 4, 4\r\n", "4, 4"},
      {"Content-Length: 18446744073709551620\r\n", "18446744073709551620"},  // beyond 64 bits
      {"Content-Length: 00000000000000000000004\r\n", "00000000000000000000004"},
      {"Content-Length: 4\r\nContent-Length: 9\r\n", "4"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.headers);
    StartAnew();
    ReplyAndClose(OkText(std::string(row.headers) + "\r\nbody"));
    const IHttpRequestPtr request = Sent();
    EXPECT_EQ(Header(request, "Content-Length"), row.value);
    EXPECT_EQ(ReadText(request, 4), "body");
  }
}

TEST_F(HttpAnswerTest, ZeroLengthIsGivenAndHasNoBody) {
  Answer("");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "Content-Length"), "0");
  EXPECT_EQ(ReadText(request, 0), "");
}

struct BadAnswer {
  std::string bytes;
  const char* failedStep;
  HRESULT code;
  const char* words;
};

// Each is served, then the server closes; four bytes are read.
std::vector<BadAnswer> BadAnswers() {
  const char* const inHead = "transfer closed in the head of the answer";
  const char* const oneByte = "transfer closed with 1 bytes remaining to read";
  const char* const twoBytes = "transfer closed with 2 bytes remaining to read";
  const char* const noHttp = "Received HTTP/0.9 or another answer that is no HTTP/1";
  const char* const coding = "Unsupported transfer encoding";
  return {
      {"", "Send", kCutOff, "Empty reply from server"},
      {OkText("X:"), "Send", kCutOff, inHead},
      {"HTTP/1.1 100 Continue\r\n\r\n", "Send", kCutOff, inHead},
      {SizedText(4, "ab"), "Read", kCutOff, twoBytes},
      {SizedText(3, "abc"), "Read", kCutOff, oneByte},
      {ChunkedText("4\r\nab"), "Read", kCutOff, "transfer closed with outstanding read data remaining"},
      {ChunkedText("2\r\nab\r\n0\r\n\r\n"), "Read", kCutOff, twoBytes},
      {"220 ftp.example ready\r\n\r\n", "Send", kMalformed, noHttp},
      {"HTTP/2 200 OK\r\n\r\n", "Send", kMalformed, noHttp},
      {"HTTP/1.1 20 OK\r\n\r\n", "Send", kMalformed, noHttp},
      {"HTTP/1.1 2000 OK\r\n\r\n", "Send", kMalformed, noHttp},
      {"\r\n\r\n", "Send", kMalformed, noHttp},
      {OkText(std::string("X: \0\r\n\r\n", 8)), "Send", kMalformed, "Nul byte in header"},
      {OkText("X: a\rb\r\n\r\n"), "Send", kMalformed, "Weird server reply: lone CR in a header"},
      {OkText(" X: a\r\n\r\n"), "Send", kMalformed, "Weird server reply: continuation of nothing"},
      {"HTTP/1.1 101 Switching\r\n\r\n", "Send", kMalformed, "Weird server reply: another protocol"},
      {OkText("Transfer-Encoding: gzip, chunked\r\n\r\n"), "Send", kMalformed, coding},
      {OkText("Transfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n\r\n"), "Send", kMalformed,
       coding},
      {ChunkedText("\r\nabcd\r\n"), "Read", kMalformed,
       "Illegal or missing hexadecimal sequence in chunked-encoding"},
      {ChunkedText("10000000000000000\r\nabcd"), "Read", kMalformed,
       "Too long hexadecimal number in chunked-encoding"},
      {ChunkedText("2\r\nabcd\r\n0\r\n\r\n"), "Read", kMalformed,
       "Malformed encoding found in chunked-encoding"},
      {SizedText(4294967300, "abcd"), "Read", kTooLarge, "Maximum file size exceeded"},
  };
}

TEST_F(HttpAnswerTest, BadAnswerFailsWithItsMessageAndTheNextCallWorks) {
  for (const BadAnswer& row : BadAnswers()) {
    SCOPED_TRACE(row.bytes);
    StartAnew();
    ReplyAndClose(row.bytes);
    ExpectFailure(4, row.failedStep, row.code, row.words);
    ExpectNextCallWorks();
  }
}

TEST_F(HttpAnswerTest, HeadUpToTheLimitIsReadAndOneByteMoreIsNot) {
  const std::string start = OkText("Content-Length: 2\r\nX: ");
  const std::string filling(std::size_t{300} * 1024 - start.size() - 4, 'x');
  Reply(start + filling + "\r\n\r\nok");
  ExpectText("ok");
  StartAnew();
  Reply(start + filling + "x\r\n\r\nok");
  const Outcome outcome = Exchange(2);
  EXPECT_EQ(outcome.failedStep, "Send");
  EXPECT_EQ(outcome.code, kTooLarge);
  EXPECT_EQ(outcome.words.substr(0, 27), "Too large response headers:");
  ExpectNextCallWorks();
}

TEST_F(HttpAnswerTest, EndlessInterimAnswersAndTrailersReachTheHeadLimit) {
  std::string many;
  std::string trailers;
  while (many.size() < std::size_t{400} * 1024) many += "HTTP/1.1 100 Continue\r\n\r\n";
  while (trailers.size() < std::size_t{400} * 1024) trailers += "T: x\r\n";
  for (const std::string& bytes : {many, ChunkedText("2\r\nok\r\n0\r\n" + trailers)}) {
    StartAnew();
    Reply(bytes);
    EXPECT_EQ(Exchange(3).code, kTooLarge);
    ExpectNextCallWorks();
  }
}

TEST_F(HttpAnswerTest, BodyBeyondTheLimitIsNotRead) {
  Limit(&HttpOptions::maxBodyBytes, 5);
  Answer("12345");
  ExpectText("12345");
  StartAnew();
  Answer("123456");
  const Outcome outcome = Exchange(1);
  EXPECT_EQ(outcome.failedStep, "Read");
  EXPECT_EQ(outcome.code, kTooLarge);
  StartAnew();
  ReplyAndClose(OkText("\r\n123456"));
  EXPECT_EQ(Exchange(6).code, kTooLarge);
}

TEST_F(HttpAnswerTest, NegativeLengthIsRefusedAndTheBodyStaysReadable) {
  Answer("ok");
  const IHttpRequestPtr request = Sent();
  WideString text;
  std::int32_t count = 7;
  EXPECT_EQ(request->Read(-1, &text, &count), E_INVALIDARG);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(ReadText(request, 2), "ok");
}

TEST_F(HttpAnswerTest, HugeAnnouncementAllocatesNothing) {
  Limit(&HttpOptions::maxBodyBytes, 0);
  ReplyAndClose(SizedText(2147483647, "ab"));
  ExpectFailure(2147483647, "Read", kCutOff, "transfer closed with 2147483645 bytes remaining to read");
}

TEST_F(HttpAnswerTest, StallTimesOut) {
  Limit(&HttpOptions::idleTimeout, 100);
  const struct {
    std::string start;
    const char* failedStep;
  } rows[] = {{OkText(""), "Send"}, {SizedText(4, "ab"), "Read"}};
  for (const auto& row : rows) {
    StartAnew();
    server_.Expect(RawScript().Reply(row.start).Stall());
    const Outcome outcome = Exchange(4);
    EXPECT_EQ(outcome.failedStep, row.failedStep);
    EXPECT_EQ(outcome.code, kTimedOut);
    EXPECT_EQ(outcome.words.substr(0, 26), "Operation timed out after ");
    ExpectNextCallWorks();
  }
  StartAnew();
  server_.Expect(RawScript().Stall());
  EXPECT_EQ(SendMany(kMoreThanSocketsHold), kTimedOut);
}

TEST_F(HttpAnswerTest, SlowAnswerWithinTheIdleTimeArrives) {
  Limit(&HttpOptions::idleTimeout, 400);
  RawScript script;
  script.ReadRequest();
  for (const char* part : {"HTTP/1.1 200 OK\r\n", "Content-Length: 3\r\n", "\r\n", "a", "b", "c"})
    script.Pause(150).Write(part);
  server_.Expect(script);
  ExpectText("abc");
}

TEST_F(HttpAnswerTest, AnswerBeforeTheBodyWasReadCounts) {
  server_.Expect(
      RawScript().ReadBytes(100).Write("HTTP/1.1 413 Too Large\r\nContent-Length: 2\r\n\r\nno").Stall());
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr request = NewRequest(session);
  EXPECT_EQ(request->Send(WideString(std::u16string(kMoreThanSocketsHold, u'x')), u""), S_OK) << ErrorWords();
  EXPECT_EQ(Header(request, "StatusCode"), "413");
  EXPECT_EQ(ReadText(request, 2), "no");
  EXPECT_EQ(request->Close(), S_OK);
  EXPECT_EQ(session->Close(), S_OK);
  ExpectNextCallWorks();
}

TEST_F(HttpAnswerTest, ResetWhileSendingFailsOnce) {
  server_.Expect(RawScript().ReadBytes(100).Reset());
  EXPECT_EQ(SendMany(kMoreThanSocketsHold), kCutOff);
  EXPECT_NE(ErrorWords(), "<none>");
  EXPECT_EQ(server_.Connections(), 1U);
}

TEST_F(HttpAnswerTest, FailureNeverShowsWhatTheCallerOrTheServerSent) {
  ReplyAndClose(OkText("X: secret\rsecret\r\n\r\nsecret"));
  const IHttpRequestPtr request = NewRequest(OpenSession(), "POST", "/secret");
  EXPECT_EQ(request->SetHeader(u"Cookie", u"secret"), S_OK);
  EXPECT_EQ(request->Send(u"secret", u""), kMalformed);
  EXPECT_EQ(ErrorWords().find("secret"), std::string::npos);
}

}  // namespace
}  // namespace qv::test
