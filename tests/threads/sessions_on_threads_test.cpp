// Sessions of the C++ library on several threads at once, against the development service, which counts the
// requests.
//   QV_THREAD_CALLS=10000 sessions_on_threads_tests
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <thread>
#include <vector>

#include "devservice/service.h"
#include "raw_client.h"
#include "scriptwells/scriptwells.h"
#include "service_fixture.h"

namespace scriptwells {
namespace {

constexpr int kThreads = 8;
constexpr int kSessions = 64;

int Calls() {
  const char* calls = std::getenv("QV_THREAD_CALLS");
  return calls != nullptr ? static_cast<int>(std::strtol(calls, nullptr, 10)) : 800;
}

// The thread sanitizer does not know the locks of the script engine, which runs in other processes.
qv::devservice::ServiceOptions QuietWorkers() {
  qv::devservice::ServiceOptions options = qv::devservice::testing::TestOptions();
  options.workerCommand.insert(options.workerCommand.begin(), {"/usr/bin/env", "TSAN_OPTIONS=report_bugs=0"});
  return options;
}

class SessionsOnThreads : public testing::Test {
 protected:
  SessionsOnThreads() : service_(QuietWorkers()) { service_.Start(); }

  // How often the service saw the action.
  int Seen(const char* action) {
    using namespace qv::devservice::testing;
    const std::string body = RawClient(service_.Port(), Request("GET /stats")).Receive().body;
    return nlohmann::json::parse(body)["actions"][action].get<int>();
  }

  // Each thread opens and closes its share of sessions, some of which live side by side. Returns the sum of
  // answers.
  long RunShare(int calls) const {
    constexpr int kShare = kSessions / kThreads;
    std::vector<std::unique_ptr<Session>> sessions;
    sessions.reserve(kThreads);
    long sum = 0;
    for (int i = 0; i < kShare; ++i) {
      sessions.push_back(std::make_unique<Session>(service_.Url(), Credentials{"joe", "secret"}));
      for (int j = 0; j < calls / kShare; ++j) {
        Session& session = *sessions[static_cast<std::size_t>(j) % sessions.size()];
        sum += session.Run("parameters.a", {{"a", j % 7}}).As<int>() == j % 7 ? 1 : 0;
      }
      if (i % 3 == 2) sessions.erase(sessions.begin());
    }
    return sum;
  }

  qv::devservice::Service service_;
};

TEST_F(SessionsOnThreads, ComeAndGoAndSendOneRequestForEachCall) {
  const int calls = Calls() / kSessions * kSessions;
  std::vector<std::thread> threads;
  std::vector<std::string> failures(kThreads);
  std::vector<long> sums(kThreads);
  for (std::size_t i = 0; i < kThreads; ++i)
    threads.emplace_back([&, i] {
      try {
        sums[i] = RunShare(calls / kThreads);
      } catch (const std::exception& error) {
        failures[i] = error.what();
      }
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(failures, std::vector<std::string>(kThreads));
  EXPECT_EQ(sums, std::vector<long>(kThreads, calls / kThreads)) << "right answers";
  EXPECT_EQ(Seen("CreateUserSession"), kSessions);
  EXPECT_EQ(Seen("Execute"), calls);
  EXPECT_EQ(Seen("CloseUserSession"), kSessions);
}

TEST_F(SessionsOnThreads, QueueTheirCallsOnOnePool) {
  Options options;
  options.executor = ThreadPool(kThreads);
  std::vector<std::future<Value>> futures;
  {
    std::vector<std::unique_ptr<Session>> sessions;
    sessions.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i)
      sessions.push_back(std::make_unique<Session>(service_.Url(), Credentials{"joe"}, options));
    for (int i = 0; i < 10 * kThreads; ++i)
      futures.push_back(
          sessions[static_cast<std::size_t>(i) % kThreads]->RunAsync("parameters.i", {{"i", i}}));
  }
  for (std::size_t i = 0; i < futures.size(); ++i) EXPECT_EQ(futures[i].get().As<std::size_t>(), i);
}

TEST_F(SessionsOnThreads, ReadOneTableTogether) {
  Session session(service_.Url(), {"joe"});
  const Table table =
      session.Run("Array.from({length: 100}, (_, i) => ({name: 'n' + i, value: i}))").AsTable();
  std::vector<long> sums(kThreads);
  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (long& sum : sums)
    threads.emplace_back([table, &sum] {
      for (const auto& row : table)
        if (row["name"].As<std::string>() == "n" + std::to_string(row.Index())) sum += row["value"].As<int>();
    });
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(sums, std::vector<long>(kThreads, 4950));
}

}  // namespace
}  // namespace scriptwells
