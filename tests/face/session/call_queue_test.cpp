#include "face/session/call_queue.h"

#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "scriptwells/error.h"

namespace scriptwells {
namespace {

// Notes what happened to it in a list that all calls of a test share.
class NotedCall final : public QueuedCall {
 public:
  NotedCall(std::vector<std::string>& notes, std::string name) : notes_(notes), name_(std::move(name)) {}

  void Run() noexcept override { notes_.push_back(name_); }
  void Fail(std::exception_ptr reason) noexcept override {
    try {
      std::rethrow_exception(reason);
    } catch (const std::exception& error) {
      notes_.push_back(name_ + " failed: " + error.what());
    }
  }

 private:
  std::vector<std::string>& notes_;
  std::string name_;
};

// Keeps the work until the test runs it.
struct LateExecutor {
  std::vector<std::function<void()>> works;
  Executor Get() {
    return [this](std::function<void()> work) { works.push_back(std::move(work)); };
  }
  void RunFirst() {
    const std::function<void()> work = std::move(works.front());
    works.erase(works.begin());
    work();
  }
};

TEST(CallQueue, RunsCallsInTheirOrderOneAtATime) {
  std::vector<std::string> notes;
  LateExecutor executor;
  CallQueue queue(executor.Get());
  for (const char* name : {"first", "second", "third"}) queue.Post(std::make_shared<NotedCall>(notes, name));
  EXPECT_EQ(executor.works.size(), 1U) << "the others wait for the first";
  while (!executor.works.empty()) executor.RunFirst();
  EXPECT_EQ(notes, (std::vector<std::string>{"first", "second", "third"}));
}

TEST(CallQueue, RunsAtOnceWhatAnExecutorRunsAtOnce) {
  std::vector<std::string> notes;
  CallQueue queue([](const std::function<void()>& work) { work(); });
  queue.Post(std::make_shared<NotedCall>(notes, "first"));
  queue.Post(std::make_shared<NotedCall>(notes, "second"));
  EXPECT_EQ(notes, (std::vector<std::string>{"first", "second"}));
}

TEST(CallQueue, FailsWithWhatTheExecutorThrows) {
  std::vector<std::string> notes;
  CallQueue queue([](const std::function<void()>&) { throw std::runtime_error("no thread"); });
  queue.Post(std::make_shared<NotedCall>(notes, "first"));
  queue.Post(std::make_shared<NotedCall>(notes, "second"));
  EXPECT_EQ(notes, (std::vector<std::string>{"first failed: no thread", "second failed: no thread"}));
  queue.WaitUntilIdle();
}

TEST(CallQueue, FailsWhatTheExecutorDrops) {
  std::vector<std::string> notes;
  LateExecutor executor;
  CallQueue queue(executor.Get());
  queue.Post(std::make_shared<NotedCall>(notes, "first"));
  queue.Post(std::make_shared<NotedCall>(notes, "second"));
  while (!executor.works.empty()) executor.works.erase(executor.works.begin());
  EXPECT_EQ(notes, (std::vector<std::string>{"first failed: the executor dropped the call",
                                             "second failed: the executor dropped the call"}));
  queue.WaitUntilIdle();
}

TEST(CallQueue, LetsAThreadWaitForItsTurn) {
  std::vector<std::string> notes;
  LateExecutor executor;
  CallQueue queue(executor.Get());
  queue.Post(std::make_shared<NotedCall>(notes, "posted"));
  std::promise<void> begun;
  std::thread waiter([&] {
    begun.set_value();
    const CallQueue::Turn turn(queue);
    notes.emplace_back("waited");
  });
  begun.get_future().wait();
  executor.RunFirst();
  waiter.join();
  EXPECT_EQ(notes, (std::vector<std::string>{"posted", "waited"}));
}

TEST(CallQueue, GivesTurnsToManyThreadsOneAtATime) {
  CallQueue queue(nullptr);
  std::atomic<int> inside{0};
  std::atomic<bool> overlapped{false};
  int turns = 0;  // guarded by the turns
  std::vector<std::thread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i)
    threads.emplace_back([&] {
      for (int j = 0; j < 500; ++j) {
        const CallQueue::Turn turn(queue);
        if (++inside != 1) overlapped = true;
        ++turns;
        --inside;
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(turns, 2000);
  EXPECT_FALSE(overlapped);
}

}  // namespace
}  // namespace scriptwells
