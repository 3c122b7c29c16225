// What a listener for exchanges gets.
#include <algorithm>

#include "qvscriptwells/com_call.h"
#include "tests/face/exchange/call_fixture.h"

namespace scriptwells::test {
namespace {

using qv::test::RawScript;

class Listener : public CallTest {
 protected:
  Listener() { Listen(); }

  std::string Purposes() const {
    std::string purposes;
    for (const Exchange& exchange : exchanges_) purposes += std::string(ToString(exchange.purpose)) + ";";
    return purposes;
  }
  std::string AllTexts() const {
    std::string all;
    for (const Exchange& exchange : exchanges_)
      all += exchange.server + exchange.proxy + exchange.requestHead + exchange.requestBody +
             exchange.answerHead + exchange.answerBody + exchange.file + exchange.failure + "\n";
    return all;
  }
};

TEST_F(Listener, SeesTheBytesOfTheConnection) {
  const std::string answer = ScriptAnswer("done");
  Answer({answer, answer});
  EXPECT_EQ(Run().shown, "ok");
  EXPECT_EQ(Run().shown, "ok");
  ASSERT_EQ(exchanges_.size(), 2U);
  const Exchange& first = exchanges_[0];
  EXPECT_EQ(first.purpose, Purpose::kExecute);
  EXPECT_EQ(first.server, server_.Url());
  EXPECT_EQ(first.proxy, "");
  EXPECT_EQ(first.requestHead + first.requestBody + exchanges_[1].requestHead + exchanges_[1].requestBody,
            server_.AllReceived());
  EXPECT_EQ(first.requestHead.substr(0, 5), "POST ");
  EXPECT_EQ(first.answerHead + first.answerBody, answer);
  EXPECT_EQ(first.status, 200);
  EXPECT_EQ(first.sentBytes, static_cast<std::int64_t>(first.requestBody.size()));
  EXPECT_EQ(first.receivedBytes, static_cast<std::int64_t>(first.answerBody.size()));
  EXPECT_EQ(first.failure, "");
  EXPECT_GT(first.connecting.count(), 0);
  EXPECT_EQ(exchanges_[1].connecting.count(), 0);
  EXPECT_GE(first.total, first.connecting + first.waiting);
  EXPECT_LT(std::chrono::system_clock::now() - first.begin, std::chrono::minutes(1));
}

TEST_F(Listener, MayDoWithoutHeadsAndBodies) {
  settings_.listenerBodies = false;
  Answer({ScriptAnswer("done")});
  EXPECT_EQ(Run().shown, "ok");
  ASSERT_EQ(exchanges_.size(), 1U);
  const Exchange& told = exchanges_[0];
  EXPECT_EQ(told.requestHead + told.requestBody + told.answerHead + told.answerBody, "");
  EXPECT_EQ(told.status, 200);
  EXPECT_GT(told.sentBytes, 0);
  EXPECT_GT(told.receivedBytes, 0);
  EXPECT_GT(told.waiting.count(), 0);
}

TEST_F(Listener, MeasuresTheWait) {
  server_.Expect(RawScript().ReadRequest().Pause(150).Write(ScriptAnswer("done")));
  EXPECT_EQ(Run().shown, "ok");
  ASSERT_EQ(exchanges_.size(), 1U);
  EXPECT_GE(exchanges_[0].waiting, std::chrono::milliseconds(140));
  EXPECT_GE(exchanges_[0].total, exchanges_[0].waiting);
}

TEST_F(Listener, SeesChunksJoinedAndInterimAnswers) {
  const std::string interim = "HTTP/1.1 100 Continue\r\n\r\n";
  const std::string head = "HTTP/1.1 404 Not Found\r\nContent-Length: 6\r\n\r\n";
  Answer({interim + head + "<html>"});
  EXPECT_EQ(Run().shown.substr(0, 13), "Error answer:");
  ASSERT_EQ(exchanges_.size(), 1U);
  EXPECT_EQ(exchanges_[0].answerHead, interim + head);
  EXPECT_EQ(exchanges_[0].answerBody, "<html>");
  EXPECT_EQ(exchanges_[0].status, 404);
}

TEST_F(Listener, SeesFailuresAsFarAsTheyGot) {
  server_.Expect(RawScript().Reply("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\n<so").Close());
  EXPECT_EQ(Run().shown.substr(0, 15), "ConnectionError");
  server_.Expect(RawScript().Reply("no HTTP at all\r\n\r\n").Close());
  EXPECT_EQ(Run().shown.substr(0, 13), "Error answer:");
  UseServer("http://no-such-host.invalid:80");
  EXPECT_EQ(Run().shown.substr(0, 15), "ConnectionError");
  ASSERT_EQ(exchanges_.size(), 3U);
  EXPECT_EQ(exchanges_[0].answerBody, "<so");
  EXPECT_EQ(exchanges_[0].receivedBytes, 3);
  EXPECT_EQ(exchanges_[0].failure, "transfer closed with 6 bytes remaining to read");
  EXPECT_EQ(exchanges_[1].answerHead.substr(0, 14), "no HTTP at all");
  EXPECT_EQ(exchanges_[1].status, 0);
  EXPECT_EQ(exchanges_[2].requestHead, "");
  EXPECT_NE(exchanges_[2].failure, "");
}

TEST_F(Listener, SeesEachExchangeOfACallWithFiles) {
  MakeHome();
  const std::string one = folder_.Write("one.txt", "content of one");
  const std::string two = folder_.Write("two.txt", "2");
  const std::string address = server_.Url() + "/up?ticket=T";
  Answer({ScriptAnswer(address + "1"), StatusAnswer("200 OK"), ScriptAnswer(address + "2"),
          StatusAnswer("200 OK"), ScriptAnswer("done"), FileAnswer("saved.txt", "12345")});
  EXPECT_EQ(Run({one, two}).shown, "ok");
  EXPECT_EQ(Download(server_.Url() + "/f?t=1").shown, "ok");
  EXPECT_EQ(Purposes(), "upload address;upload;upload address;upload;execute;download;");
  ASSERT_EQ(exchanges_.size(), 6U);
  EXPECT_EQ(exchanges_[1].file, one);
  EXPECT_EQ(exchanges_[1].requestBody, "");
  EXPECT_EQ(exchanges_[1].sentBytes, 14);
  EXPECT_EQ(exchanges_[4].file, "");
  EXPECT_EQ(exchanges_[5].file, folder_.Path("saved.txt"));
  EXPECT_EQ(exchanges_[5].answerBody, "");
  EXPECT_EQ(exchanges_[5].receivedBytes, 5);
  EXPECT_EQ(Summary(exchanges_[5]).substr(0, 4), "GET ");
}

TEST_F(Listener, ProgressNamesTheFile) {
  MakeHome();
  const std::string file = folder_.Write("a.txt", std::string(300'000, 'x'));
  std::vector<std::string> files;
  std::int64_t most = 0;
  settings_.progress = [&](const Progress& progress) {
    if (!progress.sending || progress.file.empty()) return;
    files.emplace_back(progress.file);
    most = std::max(most, progress.done);
    EXPECT_EQ(progress.total, 300'000);
  };
  Answer({ScriptAnswer(server_.Url() + "/up?ticket=T1"), StatusAnswer("200 OK"), ScriptAnswer("done")});
  EXPECT_EQ(Run({file}).shown, "ok");
  EXPECT_EQ(most, 300'000);
  EXPECT_GT(files.size(), 2U);
  EXPECT_EQ(std::count(files.begin(), files.end(), file), static_cast<std::ptrdiff_t>(files.size()));
}

// A secret is searched in all that a listener gets, in each form that the wire may have.
TEST_F(Listener, CanaryNoSecretIsTold) {
  const std::string password = "pw<&>\"'%+/\xC3\xA9";
  settings_.secrets = {password, "session-1"};
  MakeHome();
  const std::string file = folder_.Write("session-1.txt", "x");
  const std::string echo =
      "pw&lt;&amp;&gt;&quot;&apos;%+/&#233; pw%3C%26%3E%22%27%25%2B%2F%C3%A9 cHc8Jj4iJyUrL8Op ";
  Answer({SessionAnswer("new&lt;id&gt;"), ScriptAnswer(server_.Url() + "/up?ticket=T&lt;i&gt;c=ket"),
          "HTTP/1.1 200 OK\r\nX-Echo: T<i>c=ket session-1\r\nContent-Length: 0\r\n\r\n",
          ScriptAnswer(echo + "T%3Ci%3Ec"), SessionAnswer("")});
  EXPECT_EQ(
      Observed(
          Purpose::kOpenSession,
          [&] { return model_->CreateUserSession(qv::FromUtf8("Username=joe;Password=" + password + ";")); })
          .shown,
      "ok");
  EXPECT_EQ(model_->SetUSID(u"session-1"), qv::S_OK);
  EXPECT_EQ(Run({file}).shown, "ok");
  const std::string all = AllTexts();
  for (const char* form : {"session-1", "new&lt;id", "new<id", "pw<&", "pw&lt;", "pw%3C", "cHc8", "T&lt;i",
                           "T%3C", "T<i", "c=ket"})
    EXPECT_EQ(all.find(form), std::string::npos) << form << "\n" << all;
  // Everything else stays.
  EXPECT_NE(all.find("Username=joe;Password=***;"), std::string::npos) << all;
  EXPECT_NE(all.find("/up?ticket=***"), std::string::npos);
  EXPECT_EQ(exchanges_[2].file, folder_.Path("***.txt"));
  // The server got all of it.
  EXPECT_NE(server_.AllReceived().find("session-1"), std::string::npos);

  exchanges_.clear();
  settings_.showSecrets = true;
  settings_.files = 0;
  Answer({ScriptAnswer(echo)});
  qv::CloseKeptConnections();
  EXPECT_EQ(Run().shown, "ok");
  EXPECT_NE(AllTexts().find("session-1"), std::string::npos);
}

// Another call of the session may answer with it.
TEST_F(Listener, TicketsOfEarlierCallsAreMasked) {
  std::vector<std::string> tickets;
  settings_.tickets = &tickets;
  MakeHome();
  const std::string file = folder_.Write("a.txt", "x");
  for (int i = 10; i < 28; ++i) {
    Answer({ScriptAnswer(server_.Url() + "/up?ticket=T-" + std::to_string(i)), StatusAnswer("200 OK"),
            ScriptAnswer("done")});
    EXPECT_EQ(Run({file}).shown, "ok");
    qv::CloseKeptConnections();
  }
  EXPECT_EQ(tickets.size(), 16U);
  exchanges_.clear();
  Answer({ScriptAnswer("T-11 T-12 T-27")});
  EXPECT_EQ(Run().shown, "ok");
  EXPECT_NE(AllTexts().find("T-11 *** ***"), std::string::npos) << AllTexts();
}

}  // namespace
}  // namespace scriptwells::test
