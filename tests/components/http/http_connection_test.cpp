// One request on the wire per call, and connections that serve more than one.
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <string>
#include <thread>
#include <vector>

#include "http_fixture.h"

namespace qv::test {
namespace {

using HttpConnectionTest = HttpTest;

constexpr const char* kRequestEnd = "\r\nContent-Length: 8\r\n\r\nquestion";

std::size_t RequestsIn(const std::string& text) {
  std::size_t count = 0;
  for (std::size_t at = text.find(kRequestEnd); at != std::string::npos; at = text.find(kRequestEnd, at + 1))
    ++count;
  return count;
}

TEST_F(HttpConnectionTest, OpenConnectsBeforeAnythingIsSent) {
  server_.Expect(RawScript());
  const IHttpSessionPtr session = OpenSession();
  ASSERT_TRUE(server_.WaitForDone(1));
  EXPECT_EQ(server_.Connections(), 1u);
  EXPECT_EQ(server_.AllReceived(), "");
}

TEST_F(HttpConnectionTest, TwoCallsShareOneConnection) {
  server_.Expect(
      RawScript().ReadRequest().Write(RawAnswerText("one")).ReadRequest().Write(RawAnswerText("two")));
  EXPECT_EQ(Exchange(3).text, WideString(u"one"));
  EXPECT_EQ(Exchange(3).text, WideString(u"two"));
  EXPECT_EQ(server_.Connections(), 1u);
  EXPECT_EQ(RequestsIn(server_.AllReceived()), 2u);
}

TEST_F(HttpConnectionTest, ReleaseWithoutCloseKeepsTheConnectionToo) {
  server_.Expect(
      RawScript().ReadRequest().Write(RawAnswerText("one")).ReadRequest().Write(RawAnswerText("two")));
  EXPECT_EQ(ReadText(Sent(), 3), WideString(u"one"));
  EXPECT_EQ(ReadText(Sent(), 3), WideString(u"two"));
  EXPECT_EQ(server_.Connections(), 1u);
}

TEST_F(HttpConnectionTest, SessionThatSentNothingLeavesItsConnectionForTheNext) {
  Answer(RawAnswerText("ok"));
  EXPECT_EQ(OpenSession()->Close(), S_OK);
  EXPECT_EQ(Exchange(2).text, WideString(u"ok"));
  EXPECT_EQ(server_.Connections(), 1u);
}

TEST_F(HttpConnectionTest, KeptConnectionThatTheServerClosedIsReplaced) {
  server_.Expect(RawScript().ReadRequest().Write(RawAnswerText("one")).Close());
  EXPECT_EQ(Exchange(3).text, WideString(u"one"));
  ASSERT_TRUE(server_.WaitForClosed(1));
  Answer(RawAnswerText("two"));
  EXPECT_EQ(Exchange(3).text, WideString(u"two"));
  EXPECT_EQ(server_.Connections(), 2u);
  EXPECT_EQ(RequestsIn(server_.AllReceived()), 2u);
}

TEST_F(HttpConnectionTest, KeptConnectionWithUnaskedBytesIsReplaced) {
  server_.Expect(
      RawScript().ReadRequest().Write(RawAnswerText("one")).Pause(30).Write("HTTP/1.1 408 Slow\r\n\r\n"));
  EXPECT_EQ(Exchange(3).text, WideString(u"one"));
  ASSERT_TRUE(server_.WaitForDone(1));
  Answer(RawAnswerText("two"));
  EXPECT_EQ(Exchange(3).text, WideString(u"two"));
  EXPECT_EQ(server_.Connections(), 2u);
}

TEST_F(HttpConnectionTest, RequestIsSentOnceWhenAKeptConnectionDiesWithIt) {
  server_.Expect(RawScript().ReadRequest().Write(RawAnswerText("one")).ReadRequest().Close());
  EXPECT_EQ(Exchange(3).text, WideString(u"one"));
  const Outcome second = Exchange(3);
  EXPECT_EQ(second.failedStep, "Send");
  EXPECT_EQ(second.words, "Empty reply from server");
  EXPECT_EQ(RequestsIn(server_.AllReceived()), 2u);
  EXPECT_EQ(server_.Connections(), 1u);
  ExpectNextCallWorks();
}

TEST_F(HttpConnectionTest, RequestIsSentOnceWhenAKeptConnectionIsResetWithIt) {
  server_.Expect(RawScript().ReadRequest().Write(RawAnswerText("one")).ReadRequest().Reset());
  EXPECT_EQ(Exchange(3).text, WideString(u"one"));
  const Outcome second = Exchange(3);
  EXPECT_EQ(second.failedStep, "Send");
  EXPECT_EQ(second.words, "Recv failure: Connection reset by peer");
  EXPECT_EQ(RequestsIn(server_.AllReceived()), 2u);
  EXPECT_EQ(server_.Connections(), 1u);
  ExpectNextCallWorks();
}

struct LastAnswer {
  const char* name;
  std::string bytes;
  std::int32_t length;
};

class HttpConnectionNotReused : public HttpTest, public ::testing::WithParamInterface<LastAnswer> {};

TEST_P(HttpConnectionNotReused, AfterThisAnswer) {
  Answer(GetParam().bytes);
  const Outcome outcome = Exchange(GetParam().length);
  EXPECT_EQ(outcome.failedStep, "") << outcome.words;
  ExpectNextCallWorks();
}

INSTANTIATE_TEST_SUITE_P(
    , HttpConnectionNotReused,
    ::testing::Values(
        LastAnswer{"ConnectionClose", RawAnswerText("ok", "Connection: close\r\n"), 2},
        LastAnswer{"ConnectionCloseInAList", RawAnswerText("ok", "connection: x, CLOSE\r\n"), 2},
        LastAnswer{"Version10", "HTTP/1.0 200 OK\r\nContent-Length: 2\r\n\r\nok", 2},
        LastAnswer{"TwoDifferentLengths",
                   "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nContent-Length: 3\r\n\r\nok", 2},
        LastAnswer{
            "LengthBesideChunks",
            "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nok\r\n0\r\n\r\n",
            2},
        LastAnswer{"BytesBeyondTheEnd", "HTTP/1.1 200 OK\r\nContent-Length: 2\r\n\r\nok!", 2},
        LastAnswer{"NegativeLength", "HTTP/1.1 200 OK\r\nContent-Length: -2\r\n\r\nok", 2},
        LastAnswer{"LengthThatIsNoNumber", "HTTP/1.1 200 OK\r\nContent-Length: two\r\n\r\nok", 2},
        LastAnswer{"LengthWithWordsBehind", "HTTP/1.1 200 OK\r\nContent-Length: 2 bytes\r\n\r\nok", 2},
        LastAnswer{"UnreadBody", RawAnswerText("ok"), 1},
        LastAnswer{"LineWithoutColon", "HTTP/1.1 200 OK\r\nnonsense\r\nContent-Length: 2\r\n\r\nok", 2},
        LastAnswer{"ContinuationLine", "HTTP/1.1 200 OK\r\nX: a\r\n b\r\nContent-Length: 2\r\n\r\nok", 2}),
    [](const ::testing::TestParamInfo<LastAnswer>& row) { return row.param.name; });

struct KeptAnswer {
  const char* name;
  std::string bytes;
  std::int32_t length;
};

class HttpConnectionReused : public HttpTest, public ::testing::WithParamInterface<KeptAnswer> {};

TEST_P(HttpConnectionReused, AfterThisAnswer) {
  server_.Expect(RawScript().ReadRequest().Write(GetParam().bytes).ReadRequest().Write(RawAnswerText("two")));
  const Outcome outcome = Exchange(GetParam().length);
  EXPECT_EQ(outcome.failedStep, "") << outcome.words;
  EXPECT_EQ(Exchange(3).text, WideString(u"two"));
  EXPECT_EQ(server_.Connections(), 1u);
}

INSTANTIATE_TEST_SUITE_P(
    , HttpConnectionReused,
    ::testing::Values(
        KeptAnswer{"Length", RawAnswerText("ok"), 2},
        KeptAnswer{"EqualLengths", "HTTP/1.1 200 OK\r\nContent-Length: 2\r\nContent-Length: 2\r\n\r\nok", 2},
        KeptAnswer{"ZeroLength", RawAnswerText(""), 0},
        KeptAnswer{"NoContent", "HTTP/1.1 204 No Content\r\n\r\n", -1},
        KeptAnswer{"NotModifiedWithLength", "HTTP/1.1 304 Same\r\nContent-Length: 9\r\n\r\n", -1},
        KeptAnswer{"Chunks", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nok\r\n0\r\n\r\n", 2},
        KeptAnswer{"Version10KeepAlive",
                   "HTTP/1.0 200 OK\r\nConnection: Keep-Alive\r\nContent-Length: 2\r\n\r\nok", 2},
        KeptAnswer{"InterimFirst", "HTTP/1.1 100 Continue\r\n\r\n" + RawAnswerText("ok"), 2},
        KeptAnswer{"Fault", "HTTP/1.1 500 Error\r\nContent-Length: 2\r\n\r\nok", 2}),
    [](const ::testing::TestParamInfo<KeptAnswer>& row) { return row.param.name; });

TEST_F(HttpConnectionTest, ThreadsDoNotShareConnections) {
  server_.Expect(RawScript().ReadRequest().Write(RawAnswerText("one")));
  server_.Expect(RawScript().ReadRequest().Write(RawAnswerText("two")));
  EXPECT_EQ(Exchange(3).text, WideString(u"one"));
  std::thread other([&] { EXPECT_EQ(Exchange(3).text, WideString(u"two")); });
  other.join();
  EXPECT_EQ(server_.Connections(), 2u);
  EXPECT_TRUE(server_.WaitForClosed(1)) << "the ended thread's connection stays open";
}

TEST_F(HttpConnectionTest, CloseKeptConnectionsClosesThem) {
  server_.Expect(RawScript().ReadRequest().Write(RawAnswerText("one")));
  EXPECT_EQ(Exchange(3).text, WideString(u"one"));
  CloseKeptConnections();
  EXPECT_TRUE(server_.WaitForClosed(1));
}

TEST_F(HttpConnectionTest, AtMostEightConnectionsAreKept) {
  std::vector<IHttpSessionPtr> sessions;
  for (int i = 0; i < 9; ++i) {
    server_.Expect(RawScript());
    sessions.push_back(OpenSession());
  }
  for (const IHttpSessionPtr& session : sessions) EXPECT_EQ(session->Close(), S_OK);
  ASSERT_TRUE(server_.WaitForDone(9));
  EXPECT_TRUE(server_.WaitForClosed(1));
}

TEST_F(HttpConnectionTest, ForkedChildLeavesTheParentsConnectionAlone) {
  server_.Expect(
      RawScript().ReadRequest().Write(RawAnswerText("one")).ReadRequest().Write(RawAnswerText("two")));
  EXPECT_EQ(Exchange(3).text, WideString(u"one"));
  const pid_t child = fork();
  if (child == 0) {
    const IHttpSessionPtr session = NewSession();
    const bool opened = Open(session) == S_OK;
    CloseKeptConnections();
    _exit(opened ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  ASSERT_TRUE(server_.WaitForClosed(1)) << "the child made no connection of its own";
  EXPECT_EQ(Exchange(3).text, WideString(u"two"));
  EXPECT_EQ(server_.Connections(), 2u);
}

TEST_F(HttpConnectionTest, NoDescriptorIsLeftAfterSuccessesAndFailures) {
  Answer(RawAnswerText("warm"));
  Exchange(4);
  CloseKeptConnections();
  ASSERT_TRUE(server_.WaitForClosed(1));
  const std::size_t before = OpenDescriptors();
  for (int i = 0; i < 5; ++i) {
    server_.Expect(RawScript().ReadRequest().Close());
    EXPECT_EQ(Exchange(3).failedStep, "Send");
    server_.Expect(
        RawScript().ReadRequest().Write("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc").Close());
    EXPECT_EQ(Exchange(9).failedStep, "Read");
    Answer(RawAnswerText("one"));
    EXPECT_EQ(Exchange(3).failedStep, "");
    CloseKeptConnections();
  }
  ASSERT_TRUE(server_.WaitForClosed(16));
  EXPECT_EQ(OpenDescriptors(), before);
}

// Descriptors of this process that are connected to `port`.
std::vector<int> SocketsTo(std::uint16_t port) {
  std::vector<int> found;
  for (int descriptor = 0; descriptor < 1024; ++descriptor) {
    sockaddr_in peer{};
    socklen_t size = sizeof(peer);
    if (getpeername(descriptor, reinterpret_cast<sockaddr*>(&peer), &size) != 0) continue;
    if (peer.sin_family == AF_INET && ntohs(peer.sin_port) == port) found.push_back(descriptor);
  }
  return found;
}

TEST_F(HttpConnectionTest, ConnectionIsNotPassedOnToOtherPrograms) {
  server_.Expect(RawScript());
  const IHttpSessionPtr session = OpenSession();
  const std::vector<int> sockets = SocketsTo(server_.Port());
  ASSERT_EQ(sockets.size(), 1u);
  EXPECT_EQ(fcntl(sockets[0], F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

}  // namespace
}  // namespace qv::test
