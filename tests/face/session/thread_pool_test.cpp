#include <gtest/gtest.h>

#include <atomic>
#include <future>
#include <mutex>
#include <set>
#include <thread>

#include "scriptwells/options.h"

namespace scriptwells {
namespace {

TEST(ThreadPool, RunsEverythingOnItsThreads) {
  std::atomic<int> done{0};
  std::mutex mutex;
  std::set<std::thread::id> threads;
  {
    const Executor pool = ThreadPool(3);
    for (int i = 0; i < 100; ++i)
      pool([&] {
        const std::lock_guard<std::mutex> lock(mutex);
        threads.insert(std::this_thread::get_id());
        ++done;
      });
  }
  EXPECT_EQ(done, 100) << "the last copy waits";
  EXPECT_LE(threads.size(), 3U);
  EXPECT_EQ(threads.count(std::this_thread::get_id()), 0U);
}

TEST(ThreadPool, HasAsManyThreadsAsItIsAskedFor) {
  const Executor pool = ThreadPool(2);
  std::promise<void> first;
  std::promise<void> second;
  pool([&] {
    second.get_future().wait();
    first.set_value();
  });
  pool([&] { second.set_value(); });
  EXPECT_EQ(first.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

TEST(ThreadPool, OfNoThreadsHasOne) {
  std::promise<int> answer;
  ThreadPool(0)([&] { answer.set_value(42); });
  EXPECT_EQ(answer.get_future().get(), 42);
}

TEST(ThreadPool, MayEndOnOneOfItsThreads) {
  auto pool = std::make_shared<Executor>(ThreadPool(1));
  std::promise<void> released;
  std::promise<void> done;
  (*pool)([&, kept = pool]() mutable {
    released.get_future().wait();
    kept.reset();
    done.set_value();
  });
  pool.reset();
  released.set_value();
  EXPECT_EQ(done.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
}

}  // namespace
}  // namespace scriptwells
