// RunAsync: order, results, errors and the end of a session.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <future>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "face/session/session_fixture.h"

namespace scriptwells {
namespace {

using test::SessionTest;

Options WithPool(unsigned threads) {
  Options options;
  options.executor = ThreadPool(threads);
  return options;
}

TEST_F(SessionTest, NeedsAnExecutor) {
  Session session = Open();
  EXPECT_THROW(session.RunAsync("1"), std::logic_error);
}

TEST_F(SessionTest, RunsInOrderOnThePool) {
  Session session = Open(WithPool(3));
  std::vector<std::future<Value>> futures;
  futures.reserve(10);
  for (int i = 0; i < 10; ++i)
    futures.push_back(session.RunAsync("globalThis.n = (globalThis.n || 0) + 1; parameters.i", {{"i", i}}));
  for (int i = 0; i < 10; ++i) EXPECT_EQ(futures[static_cast<std::size_t>(i)].get().As<int>(), i);
  EXPECT_EQ(Seen("Execute"), 10);
}

TEST_F(SessionTest, OwnsTheArgumentsOfACall) {
  Session session = Open(WithPool(1));
  std::future<Value> future;
  {
    std::string script = "parameters.a.length";
    Arguments arguments{{"a", std::string(1000, 'x')}};
    future = session.RunAsync(script, arguments);
    script.assign("0");
  }
  EXPECT_EQ(future.get().As<int>(), 1000);
}

TEST_F(SessionTest, DeliversErrorsThroughTheFuture) {
  Session session = Open(WithPool(1));
  std::future<Value> failed = session.RunAsync("throw new ScriptError(5, 'no such customer')");
  std::future<Value> next = session.RunAsync("2");
  EXPECT_THROW(failed.get(), ScriptError);
  EXPECT_EQ(next.get().As<int>(), 2);
}

TEST_F(SessionTest, TakesTurnsWithBlockingCalls) {
  Session session = Open(WithPool(1));
  std::future<Value> first = session.RunAsync("1");
  EXPECT_EQ(session.Run("2").As<int>(), 2);
  EXPECT_EQ(first.wait_for(std::chrono::seconds(0)), std::future_status::ready);
}

TEST_F(SessionTest, EndsTheWaitForATurn) {
  Session session = Open(WithPool(1));
  RunOptions stopping;
  stopping.cancel.emplace();
  std::future<Value> running = session.RunAsync("for (;;) {}", {}, stopping);
  RunOptions late;
  late.totalTimeout = std::chrono::milliseconds(50);
  try {
    session.Run("1", {}, late);
    ADD_FAILURE() << "ran";
  } catch (const TimeoutError& error) {
    EXPECT_EQ(error.phase(), Phase::kWait);
    EXPECT_EQ(error.remedy(), Remedy::kTotalTime);
  }
  RunOptions cancelled;
  cancelled.cancel.emplace().Cancel();
  EXPECT_THROW(session.Run("1", {}, cancelled), CancelledError);
  EXPECT_THROW(session.Close(std::chrono::milliseconds(50)), TimeoutError);
  stopping.cancel->Cancel();
  EXPECT_THROW(running.get(), CancelledError);
  EXPECT_EQ(session.Run("2").As<int>(), 2) << "its turn comes all the same";
}

TEST_F(SessionTest, WaitsForQueuedCallsAtItsEnd) {
  std::vector<std::future<Value>> futures;
  {
    Session session = Open(WithPool(1));
    for (int i = 0; i < 3; ++i) futures.push_back(session.RunAsync("1"));
  }
  for (std::future<Value>& future : futures) EXPECT_EQ(future.get().As<int>(), 1);
  EXPECT_EQ(Seen("CloseUserSession"), 1);
}

TEST_F(SessionTest, CancelsQueuedCallsAtItsEndIfAsked) {
  Options options = WithPool(1);
  options.cancelQueued = true;
  std::future<Value> running;
  std::future<Value> queued;
  {
    Session session = Open(options);
    running = session.RunAsync("for (;;) {}");
    queued = session.RunAsync("1");
  }
  EXPECT_THROW(running.get(), CancelledError);
  EXPECT_THROW(queued.get(), CancelledError);
  EXPECT_EQ(Seen("CloseUserSession"), 1) << "it is closed all the same";
}

TEST_F(SessionTest, MovesWithQueuedCalls) {
  std::optional<Session> kept;
  std::future<Value> future;
  {
    Session session = Open(WithPool(1));
    future = session.RunAsync("3");
    kept.emplace(std::move(session));
  }
  EXPECT_EQ(future.get().As<int>(), 3);
}

TEST_F(SessionTest, UsesTheExecutorOfTheHost) {
  std::vector<std::function<void()>> works;
  Options options;
  options.executor = [&works](std::function<void()> work) { works.push_back(std::move(work)); };
  Session session = Open(options);
  std::future<Value> future = session.RunAsync("4");
  ASSERT_EQ(works.size(), 1U);
  EXPECT_EQ(Seen("Execute"), 0);
  works.front()();
  EXPECT_EQ(future.get().As<int>(), 4);
}

}  // namespace
}  // namespace scriptwells
