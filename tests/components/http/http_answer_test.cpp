// Heads and bodies of answers in all their forms, the good and the hostile.
#include <algorithm>
#include <string>

#include "http_fixture.h"

namespace qv::test {
namespace {

using HttpAnswerTest = HttpTest;

TEST_F(HttpAnswerTest, HeadersAreGivenAsTheyStand) {
  Answer(
      "HTTP/1.1 200 OK\r\nContent-Type:text/xml;charset=utf-8\r\nX-Two: first\r\nx-two: second\r\n"
      "X-Blank:  \t around \t\r\nX-Empty:\r\nContent-Length: 2\r\n\r\nok");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "StatusCode"), "200");
  EXPECT_EQ(Header(request, "content-type"), "text/xml;charset=utf-8");
  EXPECT_EQ(Header(request, "X-Two"), "first");
  EXPECT_EQ(Header(request, "X-Blank"), "around");
  EXPECT_EQ(Header(request, "X-Empty"), "");
  EXPECT_EQ(Header(request, "X-None"), "<null>");
  EXPECT_EQ(Header(request, "not a token"), "<null>");
}

TEST_F(HttpAnswerTest, HeaderBeyondAsciiIsUtf8ElseLatin1) {
  Answer("HTTP/1.1 200 OK\r\nX-New: \xC3\xA9\r\nX-Old: \xE9\r\nContent-Length: 0\r\n\r\n");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "X-New"), "\xC3\xA9");
  EXPECT_EQ(Header(request, "X-Old"), "\xC3\xA9");
}

TEST_F(HttpAnswerTest, StatusIsGivenAndNoFailure) {
  Answer("HTTP/1.1 500 Internal Server Error\r\nContent-Length: 5\r\n\r\nfault");
  const IHttpRequestPtr request = Sent();
  std::uint32_t status = 0;
  EXPECT_EQ(request->GetStatus(&status), S_OK);
  EXPECT_EQ(status, 500u);
  EXPECT_EQ(Header(request, "StatusCode"), "500");
  EXPECT_EQ(ReadText(request, 5), WideString(u"fault"));
}

TEST_F(HttpAnswerTest, RedirectIsAnAnswerLikeAnyOther) {
  Answer("HTTP/1.1 302 Found\r\nLocation: http://127.0.0.1:1/\r\nContent-Length: 5\r\n\r\nmoved");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "StatusCode"), "302");
  EXPECT_EQ(ReadText(request, 5), WideString(u"moved"));
  EXPECT_EQ(server_.Connections(), 1u);
}

TEST_F(HttpAnswerTest, CookieOfTheServerIsNotSentBack) {
  server_.Expect(RawScript()
                     .ReadRequest()
                     .Write(RawAnswerText("one", "Set-Cookie: a=b\r\n"))
                     .ReadRequest()
                     .Write(RawAnswerText("two")));
  Exchange(3);
  EXPECT_EQ(Exchange(3).text, WideString(u"two"));
  EXPECT_EQ(server_.AllReceived().find("a=b"), std::string::npos);
}

TEST_F(HttpAnswerTest, ArrivesTheSameByteByByte) {
  server_.Expect(RawScript().ReadRequest().WriteByteByByte(
      "HTTP/1.1 100 Continue\r\nX: y\r\n\r\nHTTP/1.1 200 OK\r\nContent-Type: text/xml\r\nContent-Length: "
      "5\r\n\r\nh\xC3\xA9llo"));
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "StatusCode"), "200");
  EXPECT_EQ(Header(request, "Content-Type"), "text/xml");
  EXPECT_EQ(ReadText(request, 5), WideString(u"h\u00E9ll"));
}

TEST_F(HttpAnswerTest, ChunksArriveTheSameByteByByte) {
  server_.Expect(RawScript().ReadRequest().WriteByteByByte(
      "HTTP/1.1 200 OK\r\nTransfer-Encoding: Chunked\r\n\r\n3;ext=\"a;b\"\r\nabc\r\n00A\r\ndefghijklm\r\n"
      "0\r\nTrailer: x\r\n\r\n"));
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "Content-Length"), "<null>");
  EXPECT_EQ(ReadText(request, 13), WideString(u"abcdefghijklm"));
}

TEST_F(HttpAnswerTest, LineFeedsAloneEndLinesToo) {
  Answer("HTTP/1.1 200 OK\nX: y\nContent-Length: 2\n\nok");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "X"), "y");
  EXPECT_EQ(ReadText(request, 2), WideString(u"ok"));
}

TEST_F(HttpAnswerTest, ContinuationLineIsJoinedWithBlanks) {
  Answer("HTTP/1.1 200 OK\r\nX: a\r\n\tb\r\nContent-Length: 2\r\n\r\nok");
  EXPECT_EQ(Header(Sent(), "X"), "a  \tb");
}

TEST_F(HttpAnswerTest, StatusLineNeedsNoWords) {
  Answer("HTTP/1.1 200\r\nContent-Length: 2\r\n\r\nok");
  EXPECT_EQ(Exchange(2).text, WideString(u"ok"));
}

TEST_F(HttpAnswerTest, BodyWithoutLengthEndsWhereTheConnectionCloses) {
  server_.Expect(
      RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\n\r\nabc").Pause(20).Write("def").Close());
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "Content-Length"), "<null>");
  EXPECT_EQ(ReadText(request, 6), WideString(u"abcdef"));
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(1, &text, &count), MakeResult(0x80072EFE));
}

TEST_F(HttpAnswerTest, BodyIsReadInPieces) {
  Answer(RawAnswerText("abcdef"));
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(ReadText(request, 0), WideString(u""));
  EXPECT_EQ(ReadText(request, 2), WideString(u"ab"));
  EXPECT_EQ(ReadText(request, 4), WideString(u"cdef"));
}

TEST_F(HttpAnswerTest, CharacterCutBetweenTwoReadsComesWithTheSecond) {
  Answer(
      RawAnswerText("a\xE2\x82\xAC"
                    "b"));
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(ReadText(request, 2), WideString(u"a"));
  EXPECT_EQ(ReadText(request, 3), WideString(u"\u20ACb"));
}

TEST_F(HttpAnswerTest, LargeBodyArrivesWhole) {
  std::string body;
  while (body.size() < 3'000'000) body += "0123456789abcdefghijklmnopqrstuvwxyz\xC3\xA9";
  Answer(RawAnswerText(body));
  const IHttpRequestPtr request = Sent();
  const WideString text = ReadText(request, static_cast<std::int32_t>(body.size()));
  EXPECT_EQ(ToUtf8(text), body);
}

TEST_F(HttpAnswerTest, AnswerToHeadHasNoBody) {
  server_.Expect(RawScript()
                     .ReadRequest()
                     .Write("HTTP/1.1 200 OK\r\nContent-Length: 5\r\n\r\n")
                     .ReadRequest()
                     .Write(RawAnswerText("two")));
  const IHttpRequestPtr request = Sent("", "HEAD");
  EXPECT_EQ(Header(request, "Content-Length"), "5");
  WideString text;
  std::int32_t count = 0;
  EXPECT_EQ(request->Read(5, &text, &count), MakeResult(0x80072EFE));
  EXPECT_EQ(request->Close(), S_OK);
}

struct GivenLength {
  const char* name;
  const char* header;
  const char* value;
};

class HttpAnswerLength : public HttpTest, public ::testing::WithParamInterface<GivenLength> {};

TEST_P(HttpAnswerLength, IsHandedOnAsItStandsAndTheBodyCanBeRead) {
  server_.Expect(RawScript()
                     .ReadRequest()
                     .Write(std::string("HTTP/1.1 200 OK\r\n") + GetParam().header + "\r\nbody")
                     .Close());
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "Content-Length"), GetParam().value);
  EXPECT_EQ(ReadText(request, 4), WideString(u"body"));
}

INSTANTIATE_TEST_SUITE_P(
    , HttpAnswerLength,
    ::testing::Values(
        GivenLength{"Missing", "", "<null>"}, GivenLength{"Empty", "Content-Length:\r\n", ""},
        GivenLength{"Negative", "Content-Length: -4\r\n", "-4"},
        GivenLength{"Words", "Content-Length: many\r\n", "many"},
        GivenLength{"PlusSign", "Content-Length: +4\r\n", "+4"},
        GivenLength{"List", "Content-Length: 4, 4\r\n", "4, 4"},
        GivenLength{"Beyond64Bits", "Content-Length: 18446744073709551620\r\n", "18446744073709551620"},
        GivenLength{"LeadingZeros", "Content-Length: 00000000000000000000004\r\n", "00000000000000000000004"},
        GivenLength{"TwoLengths", "Content-Length: 4\r\nContent-Length: 9\r\n", "4"}),
    [](const ::testing::TestParamInfo<GivenLength>& row) { return row.param.name; });

TEST_F(HttpAnswerTest, ZeroLengthIsHandedOnAndHasNoBody) {
  Answer("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n");
  const IHttpRequestPtr request = Sent();
  EXPECT_EQ(Header(request, "Content-Length"), "0");
  EXPECT_EQ(ReadText(request, 0), WideString(u""));
}

struct BadAnswer {
  const char* name;
  std::string bytes;
  const char* failedStep;
  HRESULT code;
  const char* words;
};

class HttpAnswerBad : public HttpTest, public ::testing::WithParamInterface<BadAnswer> {};

// Served, then closed by the server; four bytes are read.
TEST_P(HttpAnswerBad, FailsWithItsWordsAndTheNextCallWorks) {
  server_.Expect(RawScript().ReadRequest().Write(GetParam().bytes).Close());
  const Outcome outcome = Exchange(4);
  EXPECT_EQ(outcome.failedStep, GetParam().failedStep);
  EXPECT_EQ(outcome.code, GetParam().code);
  EXPECT_EQ(outcome.words, GetParam().words);
  ExpectNextCallWorks();
}

constexpr HRESULT kCutOff = MakeResult(0x80072EFE);
constexpr HRESULT kMalformed = MakeResult(0x80072F78);
constexpr HRESULT kTooLarge = MakeResult(0x800700DF);
constexpr HRESULT kTimedOut = MakeResult(0x80072EE2);

INSTANTIATE_TEST_SUITE_P(
    , HttpAnswerBad,
    ::testing::Values(
        BadAnswer{"Nothing", "", "Send", kCutOff, "Empty reply from server"},
        BadAnswer{"HalfAHead", "HTTP/1.1 200 OK\r\nX:", "Send", kCutOff,
                  "transfer closed in the head of the answer"},
        BadAnswer{"InterimOnly", "HTTP/1.1 100 Continue\r\n\r\n", "Send", kCutOff,
                  "transfer closed in the head of the answer"},
        BadAnswer{"HalfABody", "HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nab", "Read", kCutOff,
                  "transfer closed with 2 bytes remaining to read"},
        BadAnswer{"LengthShorterThanRead", "HTTP/1.1 200 OK\r\nContent-Length: 3\r\n\r\nabc", "Read", kCutOff,
                  "transfer closed with 1 bytes remaining to read"},
        BadAnswer{"HalfAChunk", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\nab", "Read",
                  kCutOff, "transfer closed with outstanding read data remaining"},
        BadAnswer{"ChunksShorterThanRead",
                  "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nab\r\n0\r\n\r\n", "Read",
                  kCutOff, "transfer closed with 2 bytes remaining to read"},
        BadAnswer{"NoHttp", "220 ftp.example ready\r\n\r\n", "Send", kMalformed,
                  "Received HTTP/0.9 or another answer that is no HTTP/1"},
        BadAnswer{"Version2", "HTTP/2 200 OK\r\n\r\n", "Send", kMalformed,
                  "Received HTTP/0.9 or another answer that is no HTTP/1"},
        BadAnswer{"StatusOfTwoDigits", "HTTP/1.1 20 OK\r\n\r\n", "Send", kMalformed,
                  "Received HTTP/0.9 or another answer that is no HTTP/1"},
        BadAnswer{"StatusOfFourDigits", "HTTP/1.1 2000 OK\r\n\r\n", "Send", kMalformed,
                  "Received HTTP/0.9 or another answer that is no HTTP/1"},
        BadAnswer{"EmptyLineFirst", "\r\n\r\n", "Send", kMalformed,
                  "Received HTTP/0.9 or another answer that is no HTTP/1"},
        BadAnswer{"NulInHead", std::string("HTTP/1.1 200 OK\r\nX: \0\r\n\r\n", 25), "Send", kMalformed,
                  "Nul byte in header"},
        BadAnswer{"LoneReturnInHeader", "HTTP/1.1 200 OK\r\nX: a\rb\r\n\r\n", "Send", kMalformed,
                  "Weird server reply: lone CR in a header"},
        BadAnswer{"ContinuationOfNothing", "HTTP/1.1 200 OK\r\n X: a\r\n\r\n", "Send", kMalformed,
                  "Weird server reply: continuation of nothing"},
        BadAnswer{"SwitchedProtocol", "HTTP/1.1 101 Switching\r\n\r\n", "Send", kMalformed,
                  "Weird server reply: another protocol"},
        BadAnswer{"UnknownCoding", "HTTP/1.1 200 OK\r\nTransfer-Encoding: gzip, chunked\r\n\r\n", "Send",
                  kMalformed, "Unsupported transfer encoding"},
        BadAnswer{"ChunkedTwice",
                  "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nTransfer-Encoding: chunked\r\n\r\n",
                  "Send", kMalformed, "Unsupported transfer encoding"},
        BadAnswer{"ChunkWithoutSize", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n\r\nabcd\r\n",
                  "Read", kMalformed, "Illegal or missing hexadecimal sequence in chunked-encoding"},
        BadAnswer{"ChunkSizeTooLong",
                  "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n10000000000000000\r\nabcd", "Read",
                  kMalformed, "Too long hexadecimal number in chunked-encoding"},
        BadAnswer{"ChunkLongerThanItsSize",
                  "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nabcd\r\n0\r\n\r\n", "Read",
                  kMalformed, "Malformed encoding found in chunked-encoding"},
        BadAnswer{"LengthBeyondTheBodyLimit", "HTTP/1.1 200 OK\r\nContent-Length: 4294967300\r\n\r\nabcd",
                  "Read", kTooLarge, "Maximum file size exceeded"}),
    [](const ::testing::TestParamInfo<BadAnswer>& row) { return row.param.name; });

TEST_F(HttpAnswerTest, HeadUpToTheLimitIsReadAndOneByteMoreIsNot) {
  const std::string start = "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nX: ";
  const std::size_t limit = 300 * 1024;
  const std::string filling(limit - start.size() - 4, 'x');
  Answer(start + filling + "\r\n\r\nok");
  EXPECT_EQ(Exchange(2).text, WideString(u"ok"));
  CloseKeptConnections();
  Answer(start + filling + "x\r\n\r\nok");
  const Outcome outcome = Exchange(2);
  EXPECT_EQ(outcome.failedStep, "Send");
  EXPECT_EQ(outcome.code, kTooLarge);
  EXPECT_EQ(outcome.words.substr(0, 27), "Too large response headers:");
  ExpectNextCallWorks();
}

TEST_F(HttpAnswerTest, EndlessInterimAnswersReachTheHeadLimit) {
  std::string many;
  while (many.size() < 400 * 1024) many += "HTTP/1.1 100 Continue\r\n\r\n";
  Answer(many);
  EXPECT_EQ(Exchange(2).code, kTooLarge);
  ExpectNextCallWorks();
}

TEST_F(HttpAnswerTest, EndlessTrailersReachTheHeadLimit) {
  std::string trailers;
  while (trailers.size() < 400 * 1024) trailers += "T: x\r\n";
  Answer("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nok\r\n0\r\n" + trailers);
  EXPECT_EQ(Exchange(3).code, kTooLarge);
  ExpectNextCallWorks();
}

TEST_F(HttpAnswerTest, BodyBeyondTheLimitIsNotRead) {
  HttpOptions options;
  options.maxBodyBytes = 5;
  SetLimits(options);
  Answer(RawAnswerText("12345"));
  EXPECT_EQ(Exchange(5).text, WideString(u"12345"));
  CloseKeptConnections();
  Answer(RawAnswerText("123456"));
  const Outcome outcome = Exchange(1);
  EXPECT_EQ(outcome.failedStep, "Read");
  EXPECT_EQ(outcome.code, kTooLarge);
  CloseKeptConnections();
  server_.Expect(RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\n\r\n123456").Close());
  EXPECT_EQ(Exchange(6).code, kTooLarge);
}

TEST_F(HttpAnswerTest, NegativeLengthIsRefusedAndTheBodyStaysReadable) {
  Answer(RawAnswerText("ok"));
  const IHttpRequestPtr request = Sent();
  WideString text;
  std::int32_t count = 7;
  EXPECT_EQ(request->Read(-1, &text, &count), E_INVALIDARG);
  EXPECT_EQ(count, 0);
  EXPECT_EQ(ReadText(request, 2), WideString(u"ok"));
}

TEST_F(HttpAnswerTest, HugeAnnouncementAllocatesNothing) {
  HttpOptions options;
  options.maxBodyBytes = 0;
  SetLimits(options);
  server_.Expect(
      RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\nContent-Length: 2147483647\r\n\r\nab").Close());
  const Outcome outcome = Exchange(2147483647);
  EXPECT_EQ(outcome.failedStep, "Read");
  EXPECT_EQ(outcome.words, "transfer closed with 2147483645 bytes remaining to read");
}

TEST_F(HttpAnswerTest, StallInTheHeadTimesOut) {
  HttpOptions options;
  options.idleTimeout = 100;
  SetLimits(options);
  server_.Expect(RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\n").Stall());
  const Outcome outcome = Exchange(4);
  EXPECT_EQ(outcome.failedStep, "Send");
  EXPECT_EQ(outcome.code, kTimedOut);
  EXPECT_EQ(outcome.words.substr(0, 26), "Operation timed out after ");
  ExpectNextCallWorks();
}

TEST_F(HttpAnswerTest, StallInTheBodyTimesOut) {
  HttpOptions options;
  options.idleTimeout = 100;
  SetLimits(options);
  server_.Expect(RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\nContent-Length: 4\r\n\r\nab").Stall());
  const Outcome outcome = Exchange(4);
  EXPECT_EQ(outcome.failedStep, "Read");
  EXPECT_EQ(outcome.code, kTimedOut);
  ExpectNextCallWorks();
}

TEST_F(HttpAnswerTest, ServerThatReadsNothingTimesOut) {
  HttpOptions options;
  options.idleTimeout = 100;
  SetLimits(options);
  server_.Expect(RawScript().Stall());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(WideString(std::u16string(20'000'000, u'x')), u""), kTimedOut);
}

TEST_F(HttpAnswerTest, SlowAnswerWithinTheIdleTimeArrives) {
  HttpOptions options;
  options.idleTimeout = 400;
  SetLimits(options);
  RawScript script;
  script.ReadRequest();
  for (const char* part : {"HTTP/1.1 200 OK\r\n", "Content-Length: 3\r\n", "\r\n", "a", "b", "c"})
    script.Pause(150).Write(part);
  server_.Expect(script);
  EXPECT_EQ(Exchange(3).text, WideString(u"abc"));
}

TEST_F(HttpAnswerTest, AnswerBeforeTheBodyWasReadCounts) {
  server_.Expect(
      RawScript().ReadBytes(100).Write("HTTP/1.1 413 Too Large\r\nContent-Length: 2\r\n\r\nno").Stall());
  const IHttpSessionPtr session = OpenSession();
  const IHttpRequestPtr request = NewRequest(session);
  EXPECT_EQ(request->Send(WideString(std::u16string(20'000'000, u'x')), u""), S_OK) << ErrorWords();
  EXPECT_EQ(Header(request, "StatusCode"), "413");
  EXPECT_EQ(ReadText(request, 2), WideString(u"no"));
  EXPECT_EQ(request->Close(), S_OK);
  EXPECT_EQ(session->Close(), S_OK);
  ExpectNextCallWorks();
}

TEST_F(HttpAnswerTest, ResetWhileSendingFailsOnce) {
  server_.Expect(RawScript().ReadBytes(100).Reset());
  const IHttpRequestPtr request = NewRequest(OpenSession());
  EXPECT_EQ(request->Send(WideString(std::u16string(20'000'000, u'x')), u""), kCutOff);
  EXPECT_NE(ErrorWords(), "<none>");
  EXPECT_EQ(server_.Connections(), 1u);
}

TEST_F(HttpAnswerTest, FailureNeverShowsWhatTheCallerOrTheServerSaid) {
  server_.Expect(
      RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\nX: secret\rsecret\r\n\r\nsecret").Close());
  const IHttpRequestPtr request = NewRequest(OpenSession(), "POST", "/secret");
  EXPECT_EQ(request->SetHeader(u"Cookie", u"secret"), S_OK);
  EXPECT_EQ(request->Send(u"secret", u""), kMalformed);
  EXPECT_EQ(ErrorWords().find("secret"), std::string::npos);
}

}  // namespace
}  // namespace qv::test
