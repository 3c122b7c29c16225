// Options of sessions and calls.
#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "face/session/refusal.h"
#include "face/session/session_fixture.h"

namespace scriptwells {
namespace {

using std::chrono::milliseconds;
using test::RefusalOf;
using test::SessionTest;

TEST_F(SessionTest, ChecksEverythingBeforeTheFirstRequest) {
  const auto refused = [](Phase phase, const std::string& server, const Credentials& user,
                          const Options& options) {
    std::string reason = RefusalOf(phase, [&] { Session::Check(server, user, options); });
    EXPECT_EQ(RefusalOf(phase, [&] { Session(server, user, options); }), reason);
    return reason;
  };
  EXPECT_EQ(refused(Phase::kAddress, "srv:8080", {}, {}),
            "server 'srv:8080' does not begin with http:// or https://");
  EXPECT_EQ(refused(Phase::kAddress, Url(), {"a;b"}, {}),
            "the user name holds ';' or '=', which a connection string cannot carry");
  EXPECT_EQ(refused(Phase::kAddress, Url(), {"joe", "se\ncret"}, {}),
            "the password holds a control character");
  Options options;
  options.proxy = "http://px";
  EXPECT_EQ(refused(Phase::kAddress, Url(), {"joe"}, options),
            "proxy 'http://px' is not of the form host or host:port");
  options = Options();
  options.authorities = "/none.pem";
  EXPECT_EQ(refused(Phase::kLocalFile, Url(), {"joe"}, options),
            "cannot read the authorities' file /none.pem: No such file or directory");
  options = Options();
  options.connectTimeout = milliseconds(-1);
  EXPECT_EQ(refused(Phase::kAddress, Url(), {"joe"}, options), "the connect timeout is negative");
  options = Options();
  options.mostAnswerBytes = -1;
  EXPECT_EQ(refused(Phase::kAddress, Url(), {"joe"}, options), "a limit of bytes is negative");
  EXPECT_EQ(RefusalOf(Phase::kAddress, [] { Session::Adopt("http://s", "a b"); }),
            "the session's id is empty, or holds a character that no header carries");
  EXPECT_EQ(Seen("CreateUserSession"), 0);
}

TEST_F(SessionTest, NamesTheServerOfAFile) {
  EXPECT_EQ(Session::ServerOf("HTTP://srv/a?b=/c"), "http://srv:80");
  EXPECT_EQ(Session::ServerOf("https://srv:8443/a/b"), "https://srv:8443");
  EXPECT_EQ(RefusalOf(Phase::kAddress, [] { Session::ServerOf("http://srv"); }),
            "URL 'http://srv' names no file after its host");
}

TEST_F(SessionTest, CancelsFromAnotherThread) {
  Options options;
  options.cancel.emplace();
  CancelToken token = *options.cancel;
  Session session = Open(options);
  std::thread other([token]() mutable {
    std::this_thread::sleep_for(milliseconds(50));
    token.Cancel();
  });
  EXPECT_THROW(session.Run("for (;;) {}"), CancelledError);
  other.join();
  EXPECT_THROW(session.Run("1"), CancelledError) << "later calls, too";
  token.Reset();
  EXPECT_EQ(session.Run("1").As<int>(), 1);
}

TEST_F(SessionTest, ClosesACancelledSession) {
  Options options;
  options.cancel.emplace();
  {
    Session session = Open(options);
    options.cancel->Cancel();
  }
  EXPECT_EQ(Seen("CloseUserSession"), 1);
}

TEST_F(SessionTest, LimitsTheTimeOfACall) {
  Session session = Open();
  RunOptions call;
  call.totalTimeout = milliseconds(100);
  try {
    session.Run("for (;;) {}", {}, call);
    ADD_FAILURE() << "ran";
  } catch (const TimeoutError& error) {
    EXPECT_EQ(error.phase(), Phase::kWait);
    EXPECT_EQ(error.remedy(), Remedy::kTotalTime);
  }
}

TEST_F(SessionTest, RefusesALimitThatIsNone) {
  Session session = Open();
  RunOptions call;
  call.totalTimeout = milliseconds(-1);
  EXPECT_EQ(RefusalOf(Phase::kAddress, [&] { session.Run("1", {}, call); }), "the total timeout is negative");
}

TEST_F(SessionTest, NamesTheLimitOfAnAnswer) {
  Options options;
  options.mostAnswerBytes = 2000;
  Session session = Open(options);
  const std::string reason = RefusalOf(Phase::kAnswer, [&] { session.Run("'x'.repeat(5000)"); });
  EXPECT_NE(reason.find("is longer than 2000 bytes"), std::string::npos) << reason;
}

TEST_F(SessionTest, MovedTokensKeepTheirState) {
  CancelToken token;
  CancelToken moved = std::move(token);  // NOLINT(performance-move-const-arg): the same
  moved.Cancel();
  EXPECT_TRUE(token.IsCancelled());  // NOLINT(bugprone-use-after-move): what is tested
}

TEST_F(SessionTest, PassesOnWhatListenersThrow) {
  Options options;
  bool armed = false;
  options.listener = [&armed](const Exchange&) {
    if (armed) throw std::out_of_range("enough");
  };
  Session session = Open(options);
  armed = true;
  EXPECT_THROW(session.Run("1"), std::out_of_range);
  armed = false;
  EXPECT_EQ(session.Run("1").As<int>(), 1);
  RunOptions call;
  call.progress = [](const Progress&) { throw std::out_of_range("stop"); };
  EXPECT_THROW(session.Run("1", {}, call), std::out_of_range);
}

TEST_F(SessionTest, ClosesASessionWhoseOpeningAListenerEnds) {
  Options options;
  options.listener = [](const Exchange& exchange) {
    if (exchange.purpose == Purpose::kOpenSession) throw std::out_of_range("enough");
  };
  EXPECT_THROW(Open(options), std::out_of_range);
  EXPECT_EQ(Seen("CreateUserSession"), 1);
  EXPECT_EQ(Seen("CloseUserSession"), 1);
}

TEST_F(SessionTest, ShowsExchangesWithoutSecrets) {
  std::vector<Exchange> seen;
  Options options;
  options.listener = [&seen](const Exchange& exchange) { seen.push_back(exchange); };
  std::string id;
  {
    Session session = Open(options);
    id = session.Id();
    session.Run("'an answer'");
  }
  ASSERT_EQ(seen.size(), 3U);
  EXPECT_EQ(seen[0].purpose, Purpose::kOpenSession);
  EXPECT_EQ(seen[1].purpose, Purpose::kExecute);
  EXPECT_EQ(seen[2].purpose, Purpose::kCloseSession);
  EXPECT_EQ(seen[1].status, 200);
  EXPECT_EQ(seen[1].requestHead.rfind("POST ", 0), 0U);
  EXPECT_NE(seen[1].answerBody.find("an answer"), std::string::npos);
  for (const Exchange& exchange : seen)
    for (const std::string& text :
         {exchange.requestHead, exchange.requestBody, exchange.answerHead, exchange.answerBody}) {
      EXPECT_EQ(text.find("secret"), std::string::npos) << text;
      EXPECT_EQ(text.find(id), std::string::npos) << text;
    }
}

}  // namespace
}  // namespace scriptwells
