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

class HttpConnectionTest : public HttpTest {
 protected:
  // How often "question" was sent.
  std::size_t Requests() const {
    const std::string all = server_.AllReceived();
    const std::string end = "\r\nContent-Length: 8\r\n\r\nquestion";
    std::size_t count = 0;
    for (std::size_t at = all.find(end); at != std::string::npos; at = all.find(end, at + 1)) ++count;
    return count;
  }
};

RawScript OneAndTwo() {
  return RawScript().Answer("one").Answer("two");
}

TEST_F(HttpConnectionTest, OpenConnectsBeforeAnythingIsSent) {
  server_.Expect(RawScript());
  const IHttpSessionPtr session = OpenSession();
  ASSERT_TRUE(server_.WaitForDone(1));
  EXPECT_EQ(server_.Connections(), 1U);
  EXPECT_EQ(server_.AllReceived(), "");
}

TEST_F(HttpConnectionTest, TwoCallsShareOneConnection) {
  server_.Expect(OneAndTwo());
  ExpectText("one");
  ExpectText("two");
  EXPECT_EQ(server_.Connections(), 1U);
  EXPECT_EQ(Requests(), 2U);
}

TEST_F(HttpConnectionTest, ReleaseWithoutCloseKeepsTheConnectionToo) {
  server_.Expect(OneAndTwo());
  EXPECT_EQ(ReadText(Sent(), 3), "one");
  EXPECT_EQ(ReadText(Sent(), 3), "two");
  EXPECT_EQ(server_.Connections(), 1U);
}

TEST_F(HttpConnectionTest, SessionThatSentNothingLeavesItsConnectionForTheNext) {
  Answer("ok");
  EXPECT_EQ(OpenSession()->Close(), S_OK);
  ExpectText("ok");
  EXPECT_EQ(server_.Connections(), 1U);
}

TEST_F(HttpConnectionTest, KeptConnectionThatTheServerClosedIsReplaced) {
  ReplyAndClose(RawAnswerText("one"));
  ExpectText("one");
  ASSERT_TRUE(server_.WaitForClosed(1));
  Answer("two");
  ExpectText("two");
  EXPECT_EQ(server_.Connections(), 2U);
  EXPECT_EQ(Requests(), 2U);
}

TEST_F(HttpConnectionTest, KeptConnectionWithUnaskedBytesIsReplaced) {
  server_.Expect(RawScript().Answer("one").Pause(30).Write("HTTP/1.1 408 Slow\r\n\r\n"));
  ExpectText("one");
  ASSERT_TRUE(server_.WaitForDone(1));
  Answer("two");
  ExpectText("two");
  EXPECT_EQ(server_.Connections(), 2U);
}

TEST_F(HttpConnectionTest, RequestIsSentOnceWhenAKeptConnectionEndsWithIt) {
  const struct {
    RawScript& (RawScript::*end)();
    const char* words;
  } rows[] = {{&RawScript::Close, "Empty reply from server"},
              {&RawScript::Reset, "Recv failure: Connection reset by peer"}};
  for (const auto& row : rows) {
    SCOPED_TRACE(row.words);
    StartAnew();
    const std::size_t connections = server_.Connections();
    const std::size_t requests = Requests();
    RawScript script = RawScript().Answer("one").ReadRequest();
    server_.Expect((script.*row.end)());
    ExpectText("one");
    ExpectFailure(3, "Send", kCutOff, row.words);
    EXPECT_EQ(Requests(), requests + 2);
    EXPECT_EQ(server_.Connections(), connections + 1);
    ExpectNextCallWorks();
  }
}

struct LastAnswer {
  std::string bytes;
  std::int32_t length = 2;  // that is read
};

TEST_F(HttpConnectionTest, ConnectionIsNotUsedAgainAfterTheseAnswers) {
  const LastAnswer rows[] = {
      {RawAnswerText("ok", "Connection: close\r\n")},
      {RawAnswerText("ok", "connection: x, CLOSE\r\n")},
      {"HTTP/1.0 200 OK\r\nContent-Length: 2\r\n\r\nok"},
      {OkText("Content-Length: 2\r\nContent-Length: 3\r\n\r\nok")},
      {OkText("Content-Length: 2\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nok\r\n0\r\n\r\n")},
      {SizedText(2, "ok!")},
      {OkText("Content-Length: -2\r\n\r\nok")},
      {OkText("Content-Length: two\r\n\r\nok")},
      {OkText("Content-Length: 2 bytes\r\n\r\nok")},
      {RawAnswerText("ok"), 1},
      {OkText("nonsense\r\nContent-Length: 2\r\n\r\nok")},
      {OkText("X: a\r\n b\r\nContent-Length: 2\r\n\r\nok")}};
  for (const LastAnswer& row : rows) {
    SCOPED_TRACE(row.bytes);
    StartAnew();
    Reply(row.bytes);
    const Outcome outcome = Exchange(row.length);
    EXPECT_EQ(outcome.failedStep, "") << outcome.words;
    ExpectNextCallWorks();
  }
}

TEST_F(HttpConnectionTest, ConnectionIsUsedAgainAfterTheseAnswers) {
  const LastAnswer rows[] = {{RawAnswerText("ok")},
                             {OkText("Content-Length: 2\r\nContent-Length: 2\r\n\r\nok")},
                             {RawAnswerText(""), 0},
                             {"HTTP/1.1 204 No Content\r\n\r\n", -1},
                             {"HTTP/1.1 304 Same\r\nContent-Length: 9\r\n\r\n", -1},
                             {ChunkedText("2\r\nok\r\n0\r\n\r\n")},
                             {"HTTP/1.0 200 OK\r\nConnection: Keep-Alive\r\nContent-Length: 2\r\n\r\nok", 2},
                             {"HTTP/1.1 100 Continue\r\n\r\n" + RawAnswerText("ok")},
                             {"HTTP/1.1 500 Error\r\nContent-Length: 2\r\n\r\nok"}};
  for (const LastAnswer& row : rows) {
    SCOPED_TRACE(row.bytes);
    StartAnew();
    const std::size_t before = server_.Connections();
    server_.Expect(RawScript().Reply(row.bytes).Answer("two"));
    const Outcome outcome = Exchange(row.length);
    EXPECT_EQ(outcome.failedStep, "") << outcome.words;
    ExpectText("two");
    EXPECT_EQ(server_.Connections(), before + 1);
  }
}

TEST_F(HttpConnectionTest, ThreadsDoNotShareConnections) {
  Answer("one");
  Answer("two");
  ExpectText("one");
  std::thread([&] { ExpectText("two"); }).join();
  EXPECT_EQ(server_.Connections(), 2U);
  EXPECT_TRUE(server_.WaitForClosed(1)) << "the ended thread's connection stays open";
}

TEST_F(HttpConnectionTest, CloseKeptConnectionsClosesThem) {
  Answer("one");
  ExpectText("one");
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
  server_.Expect(OneAndTwo());
  ExpectText("one");
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
  ASSERT_TRUE(server_.WaitForClosed(1)) << "the child made no connection";
  ExpectText("two");
  EXPECT_EQ(server_.Connections(), 2U);
}

TEST_F(HttpConnectionTest, NoDescriptorIsLeftAfterSuccessesAndFailures) {
  Answer("warm");
  Exchange(4);
  CloseKeptConnections();
  ASSERT_TRUE(server_.WaitForClosed(1));
  const std::size_t before = OpenDescriptors();
  for (int i = 0; i < 5; ++i) {
    server_.Expect(RawScript().ReadRequest().Close());
    EXPECT_EQ(Exchange(3).failedStep, "Send");
    ReplyAndClose(SizedText(9, "abc"));
    EXPECT_EQ(Exchange(9).failedStep, "Read");
    Answer("one");
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
  ASSERT_EQ(sockets.size(), 1U);
  EXPECT_EQ(fcntl(sockets[0], F_GETFD) & FD_CLOEXEC, FD_CLOEXEC);
}

}  // namespace
}  // namespace qv::test
