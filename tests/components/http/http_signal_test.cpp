// Signals that interrupt system calls change nothing.
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <thread>

#include "http_fixture.h"
#include "system_calls.h"

namespace qv::test {
namespace {

using HttpSignalTest = HttpTest;

// A signal interrupts the waiting system call again and again.
TEST_F(HttpSignalTest, SignalsDoNotDisturbAWait) {
  struct sigaction before {};
  struct sigaction quiet {};
  quiet.sa_handler = [](int) {};
  sigaction(SIGUSR1, &quiet, &before);
  server_.Expect(RawScript().ReadRequest().Pause(100).Write(RawAnswerText("ok")));
  const pthread_t self = pthread_self();
  std::atomic<bool> ended{false};
  std::thread other([&] {
    while (!ended) {
      pthread_kill(self, SIGUSR1);
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
    }
  });
  ExpectText("ok");
  ended = true;
  other.join();
  sigaction(SIGUSR1, &before, nullptr);
}

TEST_F(HttpSignalTest, ConnectThatASignalInterruptsIsTriedAgain) {
  Answer("ok");
  SystemCalls calls;
  calls.Fail("connect", EINTR, 3);
  ExpectText("ok");
  EXPECT_EQ(calls.Left("connect"), 0);
  EXPECT_EQ(server_.Connections(), 1U);
}

TEST_F(HttpSignalTest, EndlessSignalsEndWithTheTimeToConnect) {
  Limit(&HttpOptions::connectTimeout, 50);
  SystemCalls calls;
  calls.Fail("connect", EINTR, 1'000'000'000);
  EXPECT_EQ(Exchange(2).code, HTTP_E_TIMED_OUT);
}

TEST_F(HttpSignalTest, ConnectThatIsRefusedIsNotTriedAgain) {
  SystemCalls calls;
  calls.Fail("connect", ECONNREFUSED, 2);
  EXPECT_EQ(Exchange(2).code, HTTP_E_NOT_CONNECTED);
  EXPECT_EQ(calls.Left("connect"), 1);
}

}  // namespace
}  // namespace qv::test
